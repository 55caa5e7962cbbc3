#include "Views/Panel/LogScroll.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <vector>

namespace ostrella {
namespace {

/// Rows of 20 points in a view of 100, with 8 before the first and behind the last.
class LogScrollOfEqualRows : public testing::Test {
protected:
    LogScrollOfEqualRows() { scroll.setViewHeight(100); }

    LogScroll scroll{[](std::size_t) { return 20.0; }, 8};
};

TEST_F(LogScrollOfEqualRows, showsNothingOfNothing) {
    scroll.setCount(0);
    EXPECT_TRUE(scroll.visible().empty());
    EXPECT_FALSE(scroll.bottomRow());
    EXPECT_FALSE(scroll.rowAt(10));
    EXPECT_EQ(scroll.barSize(), 1);
    EXPECT_EQ(scroll.barPosition(), 0);
}

TEST_F(LogScrollOfEqualRows, beginsAtTheTopWhereAllRowsFit) {
    scroll.setCount(3);
    scroll.toEnd();
    ASSERT_EQ(scroll.visible().size(), 3U);
    EXPECT_EQ(scroll.visible()[0].top, 8);
    EXPECT_EQ(scroll.visible()[2].top, 48);
    EXPECT_EQ(scroll.bottomRow(), 2U);
    EXPECT_EQ(scroll.barSize(), 1);
    scroll.moveBy(-1000);
    EXPECT_EQ(scroll.visible()[0].top, 8);
    scroll.moveBy(1000);
    EXPECT_EQ(scroll.visible()[0].top, 8);
}

TEST_F(LogScrollOfEqualRows, endsBelowTheLastRowWithRoom) {
    scroll.setCount(1000);
    scroll.toEnd();
    EXPECT_EQ(scroll.bottomRow(), 999U);
    EXPECT_EQ(scroll.visible().back().top, 72);
    EXPECT_EQ(scroll.visible().front().row, 995U);
    EXPECT_EQ(scroll.visible().front().top, -8);
    scroll.moveBy(1);
    EXPECT_EQ(scroll.visible().back().top, 72) << "there is nothing further";
}

TEST_F(LogScrollOfEqualRows, movesByPointsAndStopsAtTheStart) {
    scroll.setCount(1000);
    scroll.toEnd();
    scroll.moveBy(-30);
    // The last row's top was at 72 of 100: it has gone below the edge.
    EXPECT_EQ(scroll.bottomRow(), 998U);
    EXPECT_EQ(scroll.visible().back().top, 82);
    scroll.moveBy(-1e6);
    EXPECT_EQ(scroll.visible().front().row, 0U);
    EXPECT_EQ(scroll.visible().front().top, 8);
    EXPECT_EQ(scroll.bottomRow(), 4U);
}

TEST_F(LogScrollOfEqualRows, staysWhereItIsWhenRowsAreAdded) {
    scroll.setCount(1000);
    scroll.toEnd();
    scroll.moveBy(-50);
    const auto before = scroll.visible();
    scroll.setCount(2000);
    ASSERT_EQ(scroll.visible().size(), before.size());
    EXPECT_EQ(scroll.visible().front().row, before.front().row);
    EXPECT_EQ(scroll.visible().front().top, before.front().top);
}

TEST_F(LogScrollOfEqualRows, keepsTheRowAtTheBottomEdgeWhenTheViewGrows) {
    scroll.setCount(1000);
    scroll.toRow(500);
    scroll.setViewHeight(200);
    EXPECT_EQ(scroll.bottomRow(), 500U);
    EXPECT_EQ(scroll.visible().back().top, 180);
    EXPECT_EQ(scroll.visible().front().row, 491U);
}

TEST_F(LogScrollOfEqualRows, losesTheRowsThatAreNoLongerThere) {
    scroll.setCount(1000);
    scroll.toEnd();
    scroll.setCount(2);
    ASSERT_EQ(scroll.visible().size(), 2U);
    EXPECT_EQ(scroll.visible()[0].top, 8);
}

TEST_F(LogScrollOfEqualRows, findsTheRowAtAPoint) {
    scroll.setCount(3);
    EXPECT_EQ(scroll.rowAt(-5)->row, 0U);
    EXPECT_EQ(scroll.rowAt(27)->row, 0U);
    EXPECT_EQ(scroll.rowAt(28)->row, 1U);
    EXPECT_EQ(scroll.rowAt(99)->row, 2U);
}

TEST_F(LogScrollOfEqualRows, givesABarInRows) {
    scroll.setCount(1000);
    scroll.toEnd();
    // 4.6 rows are seen: 92 points above the last row's end.
    EXPECT_NEAR(scroll.barSize(), 0.0046, 1e-9);
    EXPECT_NEAR(scroll.barPosition(), 1 - 0.0046, 1e-9);
    scroll.toStart();
    EXPECT_EQ(scroll.barPosition(), 0);
}

TEST_F(LogScrollOfEqualRows, goesWhereTheBarIsDragged) {
    scroll.setCount(1'000'000);
    scroll.toEnd();
    scroll.setBarPosition(0.5);
    EXPECT_NEAR(static_cast<double>(scroll.visible().front().row), 500'000, 5);
    EXPECT_NEAR(scroll.barPosition(), 0.5, 1e-5);
    scroll.setBarPosition(0);
    EXPECT_EQ(scroll.visible().front().top, 8);
    scroll.setBarPosition(1);
    EXPECT_EQ(scroll.visible().back().top, 72);
    EXPECT_EQ(scroll.bottomRow(), 999'999U);
}

TEST(LogScroll, asksForTheHeightsOfNeighboursOnly) {
    std::set<std::size_t> asked;
    LogScroll scroll(
        [&asked](std::size_t row) {
            asked.insert(row);
            return 20.0;
        },
        8);
    scroll.setViewHeight(100);
    scroll.setCount(1'000'000);
    scroll.toEnd();
    asked.clear();
    scroll.setCount(1'002'000);
    scroll.toEnd();
    scroll.moveBy(-60);
    EXPECT_LT(asked.size(), 20U);
}

TEST(LogScroll, laysRowsOfAnyHeightOneBelowTheOtherWithoutGaps) {
    std::mt19937 random(7);
    std::vector<double> heights(500);
    for (double& height : heights) {
        height = 19 + 16.0 * static_cast<double>(random() % 12);
    }
    const double whole = std::accumulate(heights.begin(), heights.end(), 16.0);
    LogScroll scroll([&heights](std::size_t row) { return heights[row]; }, 8);
    scroll.setViewHeight(300);
    scroll.setCount(heights.size());
    scroll.toStart();
    double offset = 0; // of the view's top from the content's
    for (int step = 0; step < 2000; ++step) {
        const double distance = static_cast<double>(random() % 400) - 190;
        scroll.moveBy(distance);
        offset = std::clamp(offset + distance, 0.0, whole - 300);
        const auto& rows = scroll.visible();
        const double above =
            std::accumulate(heights.begin(), heights.begin() + static_cast<long>(rows[0].row), 8.0);
        ASSERT_NEAR(rows[0].top, above - offset, 1e-6) << step;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            ASSERT_EQ(rows[i].row, rows[i - 1].row + 1);
            ASSERT_NEAR(rows[i].top, rows[i - 1].top + rows[i - 1].height, 1e-6);
        }
        ASSERT_TRUE(rows[0].top <= 0 || rows[0].row == 0);
        ASSERT_TRUE(rows.back().top + rows.back().height >= 300 - 1e-6 ||
                    rows.back().row + 1 == heights.size());
    }
}

TEST(LogScroll, keepsARowSeenToItsEndWhenRowsGetHigher) {
    double height = 20;
    LogScroll scroll([&height](std::size_t) { return height; }, 8);
    scroll.setViewHeight(100);
    scroll.setCount(100);
    scroll.toRow(50);
    height = 36;
    scroll.remeasure();
    EXPECT_EQ(scroll.bottomRow(), 50U);
    EXPECT_EQ(scroll.visible().back().top, 64);
}

} // namespace
} // namespace ostrella
