#include "Views/Format/ChartTicks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

namespace ostrella {
namespace {

using namespace ChartTicks;
using Labels = std::vector<std::string>;

TEST(ChartTicks, RoundNumbersAroundTheRange) {
    EXPECT_EQ(values(ChartRange{-7.1, -0.2}).labels, (Labels{"-8", "-6", "-4", "-2", "0"}));
    EXPECT_EQ(values(ChartRange{-0.03, 0.75}).labels,
        (Labels{"-0.2", "0.0", "0.2", "0.4", "0.6", "0.8"}));
    EXPECT_EQ(values(ChartRange{0, 10}).labels, (Labels{"0", "2", "4", "6", "8", "10"}));
}

TEST(ChartTicks, AHalfStepWhereAWholeOneLeavesFarMoreRoomEmpty) {
    // By 50 the axis would be 150 wide, by 20 it would have 7 ticks.
    EXPECT_EQ(values(ChartRange{-1, 99}).labels, (Labels{"-25", "0", "25", "50", "75", "100"}));
    EXPECT_EQ(values(ChartRange{1, 99}).labels, (Labels{"0", "20", "40", "60", "80", "100"}));
}

TEST(ChartTicks, TheEndsOfTheAxisAreTicks) {
    const ChartAxis axis = values(ChartRange{-7.1, -0.2});
    EXPECT_EQ(axis.from, -8);
    EXPECT_EQ(axis.to, 0);
    EXPECT_EQ(axis.ticks, (std::vector<double>{-8, -6, -4, -2, 0}));
}

void expectSound(const ChartAxis& axis, const ChartRange& range) {
    EXPECT_GE(axis.ticks.size(), 4U) << range.min << " " << range.max;
    EXPECT_LE(axis.ticks.size(), 6U) << range.min << " " << range.max;
    EXPECT_EQ(axis.labels.size(), axis.ticks.size());
    EXPECT_EQ(
        std::set<std::string>(axis.labels.begin(), axis.labels.end()).size(), axis.labels.size())
        << range.min << " " << range.max << " " << axis.labels.front();
    const double slack = 1e-6 * (range.max - range.min);
    EXPECT_LE(axis.from, range.min + slack);
    EXPECT_GE(axis.to, range.max - slack);
    for (const double tick : axis.ticks) {
        EXPECT_TRUE(std::isfinite(tick));
    }
}

TEST(ChartTicks, EveryRangeHas4To6TicksWithLabelsOfTheirOwn) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> power(-12, 12);
    std::uniform_real_distribution<double> sign(-1, 1);
    for (int i = 0; i < 20000; ++i) {
        const double a = sign(random) * std::pow(10.0, power(random));
        const double b = sign(random) * std::pow(10.0, power(random));
        const ChartRange range{std::min(a, b), std::max(a, b)};
        expectSound(values(range), range);
    }
}

TEST(ChartTicks, ARangeOfNoWidthGetsSome) {
    const ChartAxis axis = values(ChartRange{0.25, 0.25});
    EXPECT_LT(axis.from, 0.25);
    EXPECT_GT(axis.to, 0.25);
    EXPECT_GT(axis.from, 0.2);
    EXPECT_LT(axis.to, 0.3);
    EXPECT_EQ(values(ChartRange{0, 0}).from, -1);
    EXPECT_EQ(values(ChartRange{0, 0}).to, 1);
    EXPECT_LT(values(ChartRange{-3, -3}).from, -3);
    // Closer together than their digits tell.
    expectSound(values(ChartRange{1e16, 1e16 + 2}), {1e16, 1e16 + 2});
}

TEST(ChartTicks, WhatIsNoRangeIsZeroToOne) {
    const double nan = std::nan("");
    const Labels unit{"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"};
    EXPECT_EQ(values(std::nullopt).labels, unit);
    EXPECT_EQ(values(ChartRange{nan, 1}).labels, unit);
    EXPECT_EQ(values(ChartRange{0, nan}).labels, unit);
}

TEST(ChartTicks, HugeAndTinyNumbersAreWrittenAsPowersOfTen) {
    EXPECT_EQ(values(ChartRange{0, 1e9}).labels,
        (Labels{"0", "2.0e+08", "4.0e+08", "6.0e+08", "8.0e+08", "1.0e+09"}));
    const double most = std::numeric_limits<double>::max();
    expectSound(values(ChartRange{-most, most}), {-1e300, 1e300});
    const double infinity = std::numeric_limits<double>::infinity();
    expectSound(values(ChartRange{-infinity, infinity}), {-1e300, 1e300});
    expectSound(values(ChartRange{0, 3e-9}), {0, 3e-9});
    expectSound(values(ChartRange{0, 5e-324}), {0, 0});
}

TEST(ChartTicks, TheEndsMayComeInAnyOrder) {
    EXPECT_EQ(values(ChartRange{10, 0}), values(ChartRange{0, 10}));
}

TEST(ChartTicks, ResidualsOfNumericalZeroHaveAnAxisOfTheirOwn) {
    EXPECT_EQ(residuals(ChartRange{-7.1, -0.2}, std::nullopt), values(ChartRange{-7.1, -0.2}));
    EXPECT_EQ(
        residuals(std::nullopt, std::nullopt).labels, (Labels{"-20", "-19", "-18", "-17", "-16"}));
}

TEST(ChartTicks, AStartFarBelowAllThatFollowsIsOffTheAxis) {
    const ChartAxis bounded = values(ChartRange{-7.1, 1.1});
    EXPECT_EQ(residuals(ChartRange{-13.7, 1.1}, ChartRange{-7.1, -0.2}), bounded);
    EXPECT_EQ(residuals(ChartRange{-9.11, 1.1}, ChartRange{-7.1, -0.2}), bounded);
    // Not so far below, it is on the axis with all others.
    EXPECT_EQ(
        residuals(ChartRange{-9.09, 1.1}, ChartRange{-7.1, -0.2}), values(ChartRange{-9.09, 1.1}));
    EXPECT_EQ(
        residuals(ChartRange{-13.7, 1.1}, ChartRange{-13.7, -0.2}), values(ChartRange{-13.7, 1.1}))
        << "what came later is never left out";
    EXPECT_EQ(residuals(ChartRange{-13.7, 1.1}, std::nullopt), values(ChartRange{-13.7, 1.1}))
        << "nothing came later yet";
}

TEST(ChartTicks, Joined) {
    EXPECT_EQ(joined(std::nullopt, std::nullopt), std::nullopt);
    EXPECT_EQ(joined(ChartRange{1, 2}, std::nullopt), (ChartRange{1, 2}));
    EXPECT_EQ(joined(std::nullopt, ChartRange{1, 2}), (ChartRange{1, 2}));
    EXPECT_EQ(joined(ChartRange{1, 2}, ChartRange{-1, 1.5}), (ChartRange{-1, 2}));
}

TEST(ChartTicks, IterationsAreRoundWholeNumbersWithinTheAxis) {
    const ChartAxis axis = iterations(0, 118);
    EXPECT_EQ(axis.from, 0);
    EXPECT_EQ(axis.to, 118);
    EXPECT_EQ(axis.labels, (Labels{"0", "20", "40", "60", "80", "100"}));
    EXPECT_EQ(iterations(0, 49999).labels, (Labels{"0", "10000", "20000", "30000", "40000"}));
    EXPECT_EQ(iterations(3, 5).labels, (Labels{"3", "4", "5"}));
}

TEST(ChartTicks, OneIterationHasAnAxisToo) {
    EXPECT_EQ(iterations(0, 0).labels, Labels{"0"});
    EXPECT_EQ(iterations(0, 0).to, 1);
    EXPECT_EQ(iterations(7, 7).from, 7);
}

TEST(ChartTicks, NoTickOfAnIterationThatIsYetToCome) {
    for (std::int64_t last = 0; last < 2000; ++last) {
        const ChartAxis axis = iterations(0, last);
        ASSERT_FALSE(axis.ticks.empty()) << last;
        EXPECT_LE(axis.ticks.back(), static_cast<double>(last));
    }
}

TEST(ChartTicks, NoLabelOfAnIterationComesTwice) {
    for (std::int64_t last = 1; last < 200000; last = last * 3 / 2 + 1) {
        const ChartAxis axis = iterations(0, last);
        EXPECT_GE(axis.ticks.size(), 2U) << last;
        EXPECT_LE(axis.ticks.size(), 7U) << last;
    }
}

} // namespace
} // namespace ostrella
