#include "Models/IterationRate.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

Date at(double seconds) {
    return Date() +
           std::chrono::duration_cast<Date::duration>(std::chrono::duration<double>(seconds));
}

TEST(IterationRate, isTheMeanSinceTheFirstIterationSeen) {
    IterationRate rate;
    rate.record(std::nullopt, at(0));
    rate.record(5, at(0));
    rate.record(6, at(10));
    rate.record(7, at(20));
    EXPECT_EQ(rate.secondsPerIteration(), 10.0);
    EXPECT_EQ(rate.anchorIteration, 5);
    EXPECT_EQ(rate.anchorDate, at(0));
    EXPECT_EQ(rate.latestIteration, 7);
    EXPECT_EQ(rate.latestDate, at(20));
}

TEST(IterationRate, isAbsentWithOneIterationOnly) {
    IterationRate rate;
    EXPECT_EQ(rate.secondsPerIteration(), std::nullopt);
    rate.record(5, at(3));
    EXPECT_EQ(rate.secondsPerIteration(), std::nullopt);
    EXPECT_EQ(rate.remainingSeconds(10, at(4)), std::nullopt);
}

TEST(IterationRate, keepsTheDateAtWhichAnIterationWasFirstSeen) {
    IterationRate rate;
    rate.record(0, at(0));
    rate.record(4, at(8));
    rate.record(4, at(100));
    EXPECT_EQ(rate.latestDate, at(8));
    EXPECT_EQ(rate.secondsPerIteration(), 2.0);
}

TEST(IterationRate, beginsAnewAtALowerIteration) {
    IterationRate rate;
    rate.record(50, at(0));
    rate.record(60, at(10));
    rate.record(1, at(12));
    EXPECT_EQ(rate, (IterationRate{at(12), 1, at(12), 1}));
    EXPECT_EQ(rate.secondsPerIteration(), std::nullopt);
    rate.record(2, at(15));
    EXPECT_EQ(rate.secondsPerIteration(), 3.0);
}

TEST(IterationRate, isResetByAnAbsentIteration) {
    IterationRate rate;
    rate.record(5, at(0));
    rate.record(6, at(1));
    rate.record(std::nullopt, at(2));
    EXPECT_EQ(rate, IterationRate());
}

TEST(IterationRate, countsTheRemainingTimeDown) {
    IterationRate rate;
    rate.record(5, at(0));
    rate.record(6, at(10));
    rate.record(7, at(20));
    EXPECT_EQ(rate.remainingSeconds(10, at(20)), 30.0);
    EXPECT_EQ(rate.remainingSeconds(10, at(24)), 26.0);
    EXPECT_EQ(rate.remainingSeconds(10, at(60)), 0.0);
}

TEST(IterationRate, hasNothingToWaitForBeyondTheLimit) {
    IterationRate rate;
    rate.record(5, at(0));
    rate.record(12, at(7));
    EXPECT_EQ(rate.remainingSeconds(10, at(7)), 0.0);
}

} // namespace
} // namespace ostrella
