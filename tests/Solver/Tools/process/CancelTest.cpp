#include "ProcessRun.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <csignal>
#include <system_error>

namespace ostrella {
namespace {

using test::exists;
using test::program;
using test::texts;
using test::waitForLine;
using testing::ElementsAre;
using testing::IsEmpty;

class CancelTest : public testing::Test {
protected:
    LogStore log;
    test::ManualTimers timers;
    CancellationSource cancellation;
};

TEST_F(CancelTest, neverStartsAChildOfACancelledRun) {
    cancellation.cancel();
    test::ProcessRun run(log, timers, program("say"), {"x\\n"}, cancellation.token());
    EXPECT_THROW(run.finish(), CancellationError);
    EXPECT_THAT(texts(log), IsEmpty());
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(CancelTest, reportsTheCancellationAndNotThatThereIsNoProgram) {
    cancellation.cancel();
    test::ProcessRun run(log, timers, program("nothing"), {}, cancellation.token());
    EXPECT_THROW(run.finish(), CancellationError);
}

TEST_F(CancelTest, stopsARunningChild) {
    test::ProcessRun run(log, timers, program("slow"), {}, cancellation.token());
    const pid_t child = std::stoi(waitForLine(log, "ready "));
    cancellation.cancel();
    EXPECT_THROW(run.finish(), CancellationError);
    EXPECT_FALSE(exists(child));
    EXPECT_THAT(timers.pending(), IsEmpty()) << "the kill that was not needed is withdrawn";
}

TEST_F(CancelTest, showsWhatTheChildStillSays) {
    test::ProcessRun run(log, timers, program("polite"), {}, cancellation.token());
    waitForLine(log, "ready");
    cancellation.cancel();
    EXPECT_THROW(run.finish(), CancellationError);
    EXPECT_THAT(texts(log),
        ElementsAre("ready", "writing what I have", "All convergence criteria satisfied."));
}

TEST_F(CancelTest, killsADeafChildThreeSecondsLater) {
    test::ProcessRun run(log, timers, program("deaf"), {}, cancellation.token());
    const pid_t child = std::stoi(waitForLine(log, "ready "));
    cancellation.cancel();
    EXPECT_THAT(timers.pending(), ElementsAre(3.0));
    timers.advance(2.999);
    EXPECT_FALSE(run.isDone());
    EXPECT_TRUE(exists(child));
    timers.advance(0.001);
    EXPECT_THROW(run.finish(), CancellationError);
    EXPECT_FALSE(exists(child));
}

TEST_F(CancelTest, sendsNothingToAChildThatHasEnded) {
    test::ProcessRun run(log, timers, program("daemon"), {}, cancellation.token());
    const pid_t descendant = std::stoi(waitForLine(log, "descendant "));
    // The wait for the pipe has begun, so the child has ended and is reaped.
    ASSERT_TRUE(test::waitUntil([&] { return !timers.pending().empty(); }));
    cancellation.cancel();
    EXPECT_THAT(timers.pending(), ElementsAre(2.0)) << "no kill is planned";
    timers.advance(2.0);
    EXPECT_THROW(run.finish(), CancellationError);
    EXPECT_TRUE(exists(descendant));
    ::kill(descendant, SIGKILL);
}

TEST_F(CancelTest, throwsWhenTheChildEndsInTheSameInstant) {
    for (int round = 0; round < 100; ++round) {
        const CancellationSource source;
        const auto cancelAtTheLastLine = [&](const std::string& line) {
            if (line == "bye") {
                source.cancel();
            }
            return false;
        };
        test::ProcessRun run(
            log, timers, program("say"), {"bye\\n"}, source.token(), cancelAtTheLastLine);
        ASSERT_THROW(run.finish(), CancellationError);
    }
    EXPECT_EQ(log.count(), 100);
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(CancelTest, mayComeAtAnyMoment) {
    for (int round = 0; round < 100; ++round) {
        const CancellationSource source;
        test::ProcessRun run(log, timers, program("slow"), {}, source.token());
        std::thread([&] { source.cancel(); }).join();
        ASSERT_THROW(run.finish(), CancellationError);
    }
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(CancelTest, hasNoEffectAfterTheRun) {
    test::ProcessRun run(log, timers, program("say"), {"x\\n"}, cancellation.token());
    EXPECT_EQ(run.finish().status, 0);
    cancellation.cancel();
    EXPECT_THAT(timers.pending(), IsEmpty());
}

} // namespace
} // namespace ostrella
