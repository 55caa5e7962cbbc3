#include "Solver/Tools/Background.h"

#include "Models/MainThread.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <vector>

namespace ostrella {
namespace {

TEST(Background, performsAChoreOffTheMainThread) {
    std::atomic<bool> onMainThread = true;
    const auto chore = Background::run([&] { onMainThread = MainThread::isCurrent(); });
    test::onWorker([&] { chore.wait(); });
    EXPECT_TRUE(chore.isDone());
    EXPECT_FALSE(onMainThread);
}

TEST(Background, handsOverWhatAChoreThrows) {
    const auto chore = Background::run([] { throw std::runtime_error("disk on fire"); });
    EXPECT_THROW(test::onWorker([&] { chore.wait(); }), std::runtime_error);
}

TEST(Background, nothingIsDoneAtOnce) {
    const Background::Chore none;
    EXPECT_TRUE(none.isDone());
    test::onWorker([&] { none.wait(); });
}

TEST(Background, choresOfTheUserDoNotQueueBehindTheOthers) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::vector<Background::Chore> utilities;
    for (int i = 0; i < 16; ++i) {
        utilities.push_back(Background::run([released] { released.wait(); }));
    }
    const auto urgent = Background::run([] {}, Background::Priority::userInitiated);
    test::onWorker([&] { urgent.wait(); });
    EXPECT_FALSE(utilities.front().isDone());
    release.set_value();
    test::onWorker([&] {
        for (const Background::Chore& chore : utilities) {
            chore.wait();
        }
    });
}

TEST(Background, postsItsResultToTheMainThread) {
    int result = 0;
    Background::run([&] { MainThread::post([&] { result = 42; }); });
    EXPECT_TRUE(test::waitUntil([&] { return result == 42; }));
}

} // namespace
} // namespace ostrella
