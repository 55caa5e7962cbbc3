#include "Models/Timers.h"

#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <atomic>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace ostrella {
namespace {

using std::chrono::duration;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SystemTimers, performActionsInTheOrderOfTheirTimesOnAnotherThread) {
    std::mutex mutex;
    std::vector<int> order;
    std::thread::id thread;
    std::atomic<int> done = 0;
    const auto note = [&](int number) {
        const std::lock_guard lock(mutex);
        order.push_back(number);
        thread = std::this_thread::get_id();
        ++done;
    };
    TimerService& timers = TimerService::system();
    const Timer late = timers.after(milliseconds(60), [&] { note(2); });
    const Timer early = timers.after(milliseconds(5), [&] { note(1); });
    const Timer overdue = timers.after(milliseconds(-5), [&] { note(0); });
    ASSERT_TRUE(test::waitUntil([&] { return done == 3; }));
    const std::lock_guard lock(mutex);
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(SystemTimers, performNothingBeforeItsTime) {
    const auto start = std::chrono::steady_clock::now();
    std::atomic<bool> done = false;
    const Timer timer = TimerService::system().after(duration<double>(0.02), [&] { done = true; });
    ASSERT_TRUE(test::waitUntil([&] { return done.load(); }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(20));
}

TEST(SystemTimers, withdrawAnActionWithItsTimer) {
    const auto owned = std::make_shared<int>(0);
    std::atomic<bool> done = false;
    TimerService& timers = TimerService::system();
    {
        Timer dropped = timers.after(milliseconds(10), [owned] { ++*owned; });
        Timer cancelled = timers.after(milliseconds(10), [owned] { ++*owned; });
        cancelled.cancel();
        cancelled.cancel();
        Timer replaced = timers.after(milliseconds(10), [owned] { ++*owned; });
        replaced = timers.after(milliseconds(10), [owned] { ++*owned; });
    }
    EXPECT_EQ(owned.use_count(), 1) << "what the actions held is let go at once";
    const Timer after = timers.after(milliseconds(30), [&] { done = true; });
    ASSERT_TRUE(test::waitUntil([&] { return done.load(); }));
    EXPECT_EQ(*owned, 0);
}

TEST(SystemTimers, performADetachedAction) {
    std::atomic<bool> done = false;
    TimerService::system().after(milliseconds(1), [&] { done = true; }).detach();
    EXPECT_TRUE(test::waitUntil([&] { return done.load(); }));
}

TEST(SystemTimers, takeAnEndlessDelay) {
    const auto never = TimerService::system().after(
        duration<double>(std::numeric_limits<double>::infinity()), [] { FAIL(); });
    std::atomic<bool> done = false;
    const Timer soon = TimerService::system().after(milliseconds(1), [&] { done = true; });
    EXPECT_TRUE(test::waitUntil([&] { return done.load(); }));
}

TEST(SystemTimers, mayAskForMoreInAnAction) {
    std::atomic<int> count = 0;
    std::function<void()> again = [&] {
        if (++count < 5) {
            TimerService::system().after(milliseconds(1), again).detach();
        }
    };
    TimerService::system().after(milliseconds(1), again).detach();
    EXPECT_TRUE(test::waitUntil([&] { return count == 5; }));
}

TEST(SystemTimers, putAWorkerToSleep) {
    const auto start = std::chrono::steady_clock::now();
    bool whole = false;
    test::onWorker([&] { whole = TimerService::system().sleep(milliseconds(20), {}); });
    EXPECT_TRUE(whole);
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(20));
}

TEST(SystemTimers, wakeASleeperWhoseWorkIsCancelled) {
    const CancellationSource source;
    std::atomic<bool> whole = true;
    std::thread sleeper(
        [&] { whole = TimerService::system().sleep(std::chrono::hours(1), source.token()); });
    source.cancel();
    sleeper.join();
    EXPECT_FALSE(whole);
    EXPECT_FALSE(TimerService::system().sleep(std::chrono::hours(1), source.token()))
        << "cancelled before";
}

TEST(ManualTimers, standStillUntilTheyAreMoved) {
    test::ManualTimers timers;
    std::vector<double> times;
    const auto note = [&] { times.push_back(timers.now()); };
    const Timer second = timers.after(duration<double>(2), note);
    const Timer first = timers.after(duration<double>(1), note);
    const Timer third = timers.after(duration<double>(3.5), note);
    timers.advance(0.5);
    EXPECT_THAT(times, IsEmpty());
    EXPECT_THAT(timers.pending(), ElementsAre(0.5, 1.5, 3.0));
    timers.advance(2.5);
    EXPECT_THAT(times, ElementsAre(1.0, 2.0));
    EXPECT_DOUBLE_EQ(timers.now(), 3.0);
}

TEST(ManualTimers, performWhatIsAskedForOnTheWay) {
    test::ManualTimers timers;
    std::vector<double> times;
    std::function<void()> every = [&] {
        times.push_back(timers.now());
        timers.after(duration<double>(0.25), every).detach();
    };
    timers.after(duration<double>(0.25), every).detach();
    timers.advance(1.0);
    EXPECT_THAT(times, ElementsAre(0.25, 0.5, 0.75, 1.0));
}

TEST(ManualTimers, withdrawAnActionWithItsTimer) {
    test::ManualTimers timers;
    bool done = false;
    {
        const Timer timer = timers.after(duration<double>(1), [&] { done = true; });
    }
    EXPECT_THAT(timers.pending(), IsEmpty());
    timers.advance(2);
    EXPECT_FALSE(done);
}

TEST(ManualTimers, wakeSleepersByHand) {
    test::ManualTimers timers;
    std::atomic<int> woken = 0;
    std::thread sleeper([&] {
        EXPECT_TRUE(timers.sleep(duration<double>(0.25), {}));
        ++woken;
    });
    ASSERT_TRUE(test::waitUntil([&] { return !timers.pending().empty(); }));
    timers.advance(0.24);
    EXPECT_EQ(woken, 0);
    timers.advance(0.01);
    sleeper.join();
    EXPECT_EQ(woken, 1);
    EXPECT_THAT(timers.pending(), IsEmpty());
}

} // namespace
} // namespace ostrella
