#include "Views/Format/SteppedValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ostrella {
namespace {

using SteppedValue::Counts;
using SteppedValue::Factors;

constexpr Counts iterations{50, 50000, 50};
constexpr Factors inlet{0.1, 3.0, 0.05};
constexpr Factors wake{0.5, 10.0, 0.1};

TEST(SteppedCounts, goByAStepUpAndDown) {
    EXPECT_EQ(iterations.stepped(200, 1), 250);
    EXPECT_EQ(iterations.stepped(200, -1), 150);
    EXPECT_EQ(iterations.stepped(200, 10), 700);
}

TEST(SteppedCounts, stayInTheRange) {
    EXPECT_EQ(iterations.stepped(49990, 1), 50000);
    EXPECT_EQ(iterations.stepped(60, -1), 50);
    EXPECT_EQ(iterations.stepped(200, -10), 50);
}

TEST(SteppedCounts, tellWhetherAStepChangesAnything) {
    EXPECT_FALSE(iterations.canStep(50000, 1));
    EXPECT_TRUE(iterations.canStep(50000, -1));
    EXPECT_TRUE(iterations.canStep(49990, 1));
    EXPECT_FALSE(iterations.canStep(50, -1));
    EXPECT_TRUE(iterations.canStep(50, 1));
}

TEST(SteppedCounts, bringAValueFromOutsideIntoTheRange) {
    EXPECT_EQ(iterations.stepped(1'000'000, 1), 50000);
    EXPECT_EQ(iterations.stepped(1'000'000, -1), 50000);
    EXPECT_TRUE(iterations.canStep(1'000'000, 1));
    EXPECT_EQ(iterations.stepped(-7, -1), 50);
    EXPECT_EQ(iterations.stepped(std::numeric_limits<int>::max(), 1), 50000);
    EXPECT_EQ(iterations.stepped(std::numeric_limits<int>::min(), -1), 50);
}

TEST(SteppedFactors, goByAStepWithoutTheNoiseOfAdding) {
    double value = 0.1;
    for (int i = 0; i < 8; ++i) {
        value = inlet.stepped(value, 1);
    }
    EXPECT_EQ(value, 0.5);
    EXPECT_EQ(wake.stepped(2.0, -1), 1.9);
    EXPECT_EQ(wake.stepped(2.0, 3), 2.3);
}

TEST(SteppedFactors, stayInTheRange) {
    EXPECT_EQ(inlet.stepped(2.98, 1), 3.0);
    EXPECT_EQ(inlet.stepped(0.1, -1), 0.1);
    EXPECT_EQ(wake.stepped(99.0, 1), 10.0);
    EXPECT_EQ(wake.stepped(99.0, -1), 10.0);
    EXPECT_EQ(wake.stepped(-std::numeric_limits<double>::infinity(), 1), 0.5);
    EXPECT_EQ(wake.stepped(std::nan(""), 1), 0.5);
}

TEST(SteppedFactors, snapToTheNearestStep) {
    EXPECT_EQ(inlet.snapped(0.52), 0.5);
    EXPECT_EQ(inlet.snapped(0.53), 0.55);
    EXPECT_EQ(inlet.snapped(2.999), 3.0);
    EXPECT_EQ(inlet.snapped(-1), 0.1);
    EXPECT_EQ(wake.snapped(7.04), 7.0);
    EXPECT_EQ(wake.snapped(1e9), 10.0);
    EXPECT_EQ(wake.snapped(std::nan("")), 0.5);
}

} // namespace
} // namespace ostrella
