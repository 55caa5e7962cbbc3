#include "Solver/Tools/TimeLimit.h"

#include "support/ManualTimers.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(TimeLimit, cancelsItsTokenWhenTheTimeHasPassed) {
    test::ManualTimers timers;
    const CancellationSource outer;
    const TimeLimit limit(outer.token(), 25, timers);
    timers.advance(24.9);
    EXPECT_FALSE(limit.token().isCancelled());
    EXPECT_FALSE(limit.isOver());
    timers.advance(0.2);
    EXPECT_TRUE(limit.token().isCancelled());
    EXPECT_TRUE(limit.isOver());
    EXPECT_FALSE(outer.isCancelled());
}

TEST(TimeLimit, cancelsItsTokenWithTheOuterOne) {
    test::ManualTimers timers;
    const CancellationSource outer;
    const TimeLimit limit(outer.token(), 25, timers);
    outer.cancel();
    EXPECT_TRUE(limit.token().isCancelled());
    EXPECT_FALSE(limit.isOver()) << "somebody asked for it";
    timers.advance(30);
    EXPECT_FALSE(limit.isOver());
}

TEST(TimeLimit, isCancelledFromTheStartWithinACancelledRun) {
    test::ManualTimers timers;
    const CancellationSource outer;
    outer.cancel();
    const TimeLimit limit(outer.token(), 25, timers);
    EXPECT_TRUE(limit.token().isCancelled());
    EXPECT_FALSE(limit.isOver());
}

TEST(TimeLimit, mayBeNone) {
    test::ManualTimers timers;
    const TimeLimit limit({}, std::nullopt, timers);
    EXPECT_TRUE(timers.pending().empty());
    EXPECT_FALSE(limit.token().isCancelled());
}

TEST(TimeLimit, leavesNothingBehind) {
    test::ManualTimers timers;
    const CancellationSource outer;
    {
        const TimeLimit limit(outer.token(), 25, timers);
        EXPECT_EQ(timers.pending().size(), 1U);
    }
    EXPECT_TRUE(timers.pending().empty());
    outer.cancel();
}

} // namespace
} // namespace ostrella
