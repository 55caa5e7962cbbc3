#include "Views/Format/ChartThinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {
namespace {

using Points = std::vector<ChartPoint>;

TEST(ThinnedSeries, AShortSeriesIsKeptWhole) {
    ThinnedSeries series(100);
    EXPECT_TRUE(series.points().empty());
    EXPECT_EQ(series.newest(), std::nullopt);
    series.append(0, 1);
    series.append(1, -2);
    series.append(2, 3);
    EXPECT_EQ(series.points(), (Points{{0, 1}, {1, -2}, {2, 3}}));
    EXPECT_EQ(series.newest(), (ChartPoint{2, 3}));
    EXPECT_EQ(series.range(), (ChartRange{-2, 3}));
}

TEST(ThinnedSeries, AColumnKeepsItsFirstLastLeastAndGreatest) {
    // One column of pixels is at most two columns of points: 0 to 7 come into two of four.
    ThinnedSeries series(1);
    const double values[] = {5, 9, 1, 4, 2, 2, 8, 3};
    for (int i = 0; i < 8; ++i) {
        series.append(i, values[i]);
    }
    EXPECT_EQ(series.points(), (Points{{0, 5}, {1, 9}, {2, 1}, {3, 4}, {4, 2}, {6, 8}, {7, 3}}));
}

TEST(ThinnedSeries, AnOutlierIsNeverLost) {
    ThinnedSeries series(200);
    for (int i = 0; i < 50000; ++i) {
        series.append(i, i == 31234 ? 1000.0 : std::sin(i * 0.01));
    }
    const Points points = series.points();
    EXPECT_LE(points.size(), 200U * 8);
    EXPECT_NE(std::find(points.begin(), points.end(), ChartPoint{31234, 1000}), points.end());
    EXPECT_EQ(points.front(), (ChartPoint{0, 0}));
    EXPECT_EQ(points.back().iteration, 49999);
    EXPECT_TRUE(std::is_sorted(points.begin(), points.end(),
        [](const ChartPoint& a, const ChartPoint& b) { return a.iteration < b.iteration; }));
}

TEST(ThinnedSeries, EveryColumnOfPixelsShowsItsTrueExtremes) {
    constexpr std::size_t columns = 64;
    constexpr int count = 10000;
    const auto value = [](int i) { return std::sin(i * 0.37) * std::cos(i * 0.0011); };
    ThinnedSeries series(columns);
    for (int i = 0; i < count; ++i) {
        series.append(i, value(i));
    }
    // 10 000 iterations in at most 128 columns of points: 128 iterations each.
    for (int begin = 0; begin < count; begin += 128) {
        const int end = std::min(begin + 128, count);
        double least = value(begin);
        double greatest = value(begin);
        for (int i = begin; i < end; ++i) {
            least = std::min(least, value(i));
            greatest = std::max(greatest, value(i));
        }
        double drawnLeast = std::numeric_limits<double>::infinity();
        double drawnGreatest = -drawnLeast;
        for (const ChartPoint& point : series.points()) {
            if (point.iteration >= begin && point.iteration < end) {
                drawnLeast = std::min(drawnLeast, point.value);
                drawnGreatest = std::max(drawnGreatest, point.value);
            }
        }
        EXPECT_EQ(drawnLeast, least);
        EXPECT_EQ(drawnGreatest, greatest);
    }
}

TEST(ThinnedSeries, ValuesThatAreNotFiniteArePassedOver) {
    ThinnedSeries series(10);
    series.append(0, std::nan(""));
    series.append(1, std::numeric_limits<double>::infinity());
    series.append(2, 5);
    EXPECT_EQ(series.points(), (Points{{2, 5}}));
    EXPECT_EQ(series.range(), (ChartRange{5, 5}));
}

TEST(ThinnedSeries, NumericalZeroIsDrawnButDoesNotCountForTheRange) {
    ThinnedSeries series(10, ChartTicks::zeroResidual);
    series.append(0, -32);
    EXPECT_EQ(series.range(), std::nullopt);
    series.append(1, -3);
    series.append(2, -5);
    series.append(3, -20);
    EXPECT_EQ(series.range(), (ChartRange{-5, -3}));
    EXPECT_EQ(series.points().front(), (ChartPoint{0, -32}));
}

TEST(ThinnedSeries, WhatComesAfterTheStartHasARangeOfItsOwn) {
    ThinnedSeries series(10, ChartTicks::zeroResidual);
    for (std::int64_t iteration = 0; iteration < 10; ++iteration) {
        series.append(iteration, -13);
    }
    EXPECT_EQ(series.settledRange(), std::nullopt);
    series.append(10, -2);
    series.append(11, -32);
    series.append(12, -3);
    EXPECT_EQ(series.settledRange(), (ChartRange{-3, -2}));
    EXPECT_EQ(series.range(), (ChartRange{-13, -2}));
}

TEST(ThinnedSeries, IterationsMayComeInAnyOrderAndFarApart) {
    ThinnedSeries series(2);
    for (const std::int64_t iteration : {std::int64_t{1000000}, std::int64_t{0}, std::int64_t{-50},
             std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        series.append(iteration, static_cast<double>(iteration % 7));
    }
    const Points points = series.points();
    EXPECT_EQ(points.front().iteration, -9007199254740992.0);
    EXPECT_EQ(points.back().iteration, 9007199254740992.0);
    EXPECT_LE(points.size(), 16U);
    EXPECT_EQ(series.newest()->iteration, 9007199254740992.0);
}

std::vector<HistoryPoint> history(int rows, int series = 2) {
    std::vector<HistoryPoint> points;
    for (int i = 0; i < rows; ++i) {
        for (int s = 0; s < series; ++s) {
            points.push_back({"series " + std::to_string(s), i, -s - i * 0.001});
        }
    }
    return points;
}

TEST(ThinnedHistory, LooksAtNewPointsOnly) {
    ThinnedHistory thinned(100);
    EXPECT_EQ(thinned.update(history(10)), 20U);
    EXPECT_EQ(thinned.update(history(10)), 0U);
    EXPECT_EQ(thinned.update(history(12)), 4U);
    ASSERT_TRUE(thinned.series("series 1"));
    EXPECT_EQ(thinned.series("series 1")->points().size(), 12U);
    EXPECT_EQ(thinned.series("no such series"), nullptr);
    EXPECT_EQ(thinned.iterations(), (ChartRange{0, 11}));
    EXPECT_EQ(thinned.range(), (ChartRange{-1.011, 0}));
}

TEST(ThinnedHistory, BeginsAnewWithAnotherRun) {
    ThinnedHistory thinned(100);
    thinned.update(history(10));
    EXPECT_EQ(thinned.update({}), 0U);
    EXPECT_EQ(thinned.series("series 0"), nullptr);
    EXPECT_EQ(thinned.iterations(), std::nullopt);
    thinned.update(history(10));
    EXPECT_EQ(thinned.update(history(4)), 8U);
    EXPECT_EQ(thinned.series("series 0")->points().size(), 4U);
    // As long as the one before, but with other values.
    auto other = history(4);
    other.back().value = 7;
    EXPECT_EQ(thinned.update(other), 8U);
    EXPECT_EQ(thinned.series("series 1")->newest(), (ChartPoint{3, 7}));
}

TEST(ThinnedHistory, GoesOnBehindAPointThatIsNoNumber) {
    ThinnedHistory thinned(100);
    auto points = history(3);
    points.back().value = std::nan("");
    thinned.update(points);
    points.push_back({"series 0", 3, 1});
    EXPECT_EQ(thinned.update(points), 1U);
}

TEST(ThinnedHistory, ALongRunInStepsIsTheSameAsAtOnce) {
    const auto points = history(5000, 8);
    ThinnedHistory atOnce(300);
    atOnce.update(points);
    ThinnedHistory inSteps(300);
    std::size_t looked = 0;
    for (std::size_t end = 80; end <= points.size(); end += 80) {
        looked += inSteps.update({points.begin(), points.begin() + static_cast<long>(end)});
    }
    EXPECT_EQ(looked, points.size());
    for (int s = 0; s < 8; ++s) {
        const std::string label = "series " + std::to_string(s);
        EXPECT_EQ(inSteps.series(label)->points(), atOnce.series(label)->points());
    }
    EXPECT_EQ(inSteps.range(), atOnce.range());
}

} // namespace
} // namespace ostrella
