#include "Solver/Flow/Spatial3DGrid.h"

#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace ostrella;
using ostrella::testing::Cloud;
using ostrella::testing::manyClouds;
using Indices = std::vector<int>;

namespace {

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// Four cells along x of size 1 each, and as many along y and z: corners at 0 and 4.
std::vector<Vec3> fourCells(std::vector<Vec3> points) {
    points.emplace_back(0.0F, 0.0F, 0.0F);
    points.emplace_back(4.0F, 4.0F, 4.0F);
    return points;
}

Indices find(const std::vector<Vec3>& points, int cells, const Vec3& to, int k) {
    return Spatial3DGrid(points, cells).findKNearest(to, points, k);
}

/// The cell of a coordinate by 64-bit numbers, for points that lie clear of the cells' borders.
int cellOf(double at, double low, double size, int cells) {
    return std::clamp(static_cast<int>(std::floor((at - low) / size)), 0, cells - 1);
}

TEST(Spatial3DGrid, hasTheBoxInCellsOfItsOwnSizeOnEachAxis) {
    const std::vector<Vec3> points{{1.0F, -2.0F, 8.0F}, {3.0F, 2.0F, 0.0F}};
    const Spatial3DGrid grid(points, 4);
    EXPECT_EQ(grid.cellsX(), 4);
    EXPECT_EQ(grid.cellsY(), 4);
    EXPECT_EQ(grid.cellsZ(), 4);
    EXPECT_EQ(grid.boundingMin(), Vec3(1.0F, -2.0F, 0.0F));
    EXPECT_EQ(grid.cellSize(), Vec3(0.5F, 1.0F, 2.0F));
    ASSERT_EQ(grid.cellStart().size(), 65U);
}

TEST(Spatial3DGrid, numbersCellsAlongXThenYThenZ) {
    // Cells (1, 0, 0), (0, 1, 0), (0, 0, 1) and the corners.
    const auto points = fourCells({{1.5F, 0.5F, 0.5F}, {0.5F, 1.5F, 0.5F}, {0.5F, 0.5F, 1.5F}});
    const Spatial3DGrid grid(points, 4);
    const auto start = grid.cellStart();
    const auto holds = [&](std::size_t cell) {
        return Indices(
            grid.cellPoints().begin() + start[cell], grid.cellPoints().begin() + start[cell + 1]);
    };
    EXPECT_EQ(holds(0), (Indices{3}));
    EXPECT_EQ(holds(1), (Indices{0}));
    EXPECT_EQ(holds(4), (Indices{1}));
    EXPECT_EQ(holds(16), (Indices{2}));
    EXPECT_EQ(holds(63), (Indices{4}));
    EXPECT_EQ(holds(2), (Indices{}));
}

TEST(Spatial3DGrid, putsTheGreatestFaceIntoTheLastCell) {
    const std::vector<Vec3> points{{0.0F, 0.0F, 0.0F}, {2.0F, 2.0F, 2.0F}};
    const Spatial3DGrid grid(points, 2);
    EXPECT_EQ(grid.cellAt({2.0F, 2.0F, 2.0F}), (GridCell{1, 1, 1}));
    EXPECT_EQ(grid.cellStart()[7], 1);
    EXPECT_EQ(grid.cellStart()[8], 2);
}

TEST(Spatial3DGrid, cutsPointsOnABorderIntoTheUpperCell) {
    const auto points = fourCells({{1.0F, 2.0F, 3.0F}});
    const Spatial3DGrid grid(points, 4);
    EXPECT_EQ(grid.cellAt(points[0]), (GridCell{1, 2, 3}));
}

TEST(Spatial3DGrid, givesAFlatCloudCellsOfSomeSize) {
    const std::vector<Vec3> points{{0.0F, 0.0F, 0.5F}, {8.0F, 4.0F, 0.5F}};
    const Spatial3DGrid grid(points, 8);
    EXPECT_EQ(grid.cellSize(), Vec3(1.0F, 0.5F, 1e-6F / 8.0F));
}

TEST(Spatial3DGrid, ofOnePointAnswersEveryQueryWithIt) {
    const std::vector<Vec3> points{{4.0F, 5.0F, 6.0F}};
    const Spatial3DGrid grid(points, 8);
    EXPECT_EQ(grid.cellSize(), Vec3(1.25e-7F));
    for (const Vec3& to : {Vec3(4.0F, 5.0F, 6.0F), Vec3(0.0F), Vec3(1e6F, -1e6F, 0.0F)})
        EXPECT_EQ(grid.findKNearest(to, points, 8), (Indices{0}));
}

TEST(Spatial3DGrid, holdsEachPointOnceAndAscendingWithinItsCell) {
    for (const Cloud& cloud : manyClouds()) {
        const Spatial3DGrid grid(cloud.points, cloud.cellsPerAxis);
        const auto start = grid.cellStart();
        ASSERT_EQ(start.front(), 0) << cloud.name;
        ASSERT_EQ(start.back(), static_cast<int>(cloud.points.size())) << cloud.name;
        Indices seen;
        for (std::size_t cell = 0; cell + 1 < start.size(); ++cell) {
            ASSERT_LE(start[cell], start[cell + 1]) << cloud.name;
            for (auto at = start[cell]; at < start[cell + 1]; ++at) {
                const int index = grid.cellPoints()[static_cast<std::size_t>(at)];
                const bool isFirst = at == start[cell];
                ASSERT_TRUE(isFirst || seen.back() < index) << cloud.name;
                const GridCell own = grid.cellAt(cloud.points[static_cast<std::size_t>(index)]);
                const int n = cloud.cellsPerAxis;
                ASSERT_EQ((own.z * n + own.y) * n + own.x, static_cast<int>(cell)) << cloud.name;
                seen.push_back(index);
            }
        }
        std::sort(seen.begin(), seen.end());
        for (std::size_t i = 0; i < seen.size(); ++i)
            ASSERT_EQ(seen[i], static_cast<int>(i)) << cloud.name;
    }
}

TEST(Spatial3DGrid, findsThePointsOfItsCellsByTheFormula) {
    const auto points = ostrella::testing::cube(500, 2.0F);
    const Spatial3DGrid grid(points, 8);
    for (const Vec3& p : points) {
        const double size = 0.5;
        // Too close to a border for a judgement in 64 bits; the corners lie in the end cells.
        if (std::abs(std::remainder(static_cast<double>(p.x) + 2.0, size)) < 1e-6)
            continue;
        EXPECT_EQ(grid.cellAt(p).x, cellOf(static_cast<double>(p.x), -2.0, size, 8));
    }
}

TEST(Spatial3DGrid, clampsAHugeQuotientAheadOfTheInteger) {
    const auto points = fourCells({});
    const Spatial3DGrid grid(points, 4);
    EXPECT_EQ(grid.cellAt({3e38F, -3e38F, 1e20F}), (GridCell{3, 0, 3}));
    EXPECT_EQ(grid.findKNearest({1e18F, 0.0F, 0.0F}, points, 2), (Indices{0, 1}));
}

TEST(Spatial3DGrid, findsNothingForLessThanOne) {
    const auto points = fourCells({});
    EXPECT_TRUE(find(points, 4, Vec3(1.0F), 0).empty());
    EXPECT_TRUE(find(points, 4, Vec3(1.0F), -3).empty());
}

TEST(Spatial3DGrid, sortsByDistanceWhenItSawMoreThanAsked) {
    const auto points = fourCells({{1.9F, 1.5F, 1.5F}, {1.5F, 1.5F, 1.6F}, {1.5F, 1.2F, 1.5F}});
    EXPECT_EQ(find(points, 4, Vec3(1.5F), 2), (Indices{1, 2}));
}

TEST(Spatial3DGrid, keepsTheOrderOfVisitWhenItSawNoMoreThanAsked) {
    const auto points = fourCells({{1.9F, 1.5F, 1.5F}, {1.5F, 1.5F, 1.6F}, {1.5F, 1.2F, 1.5F}});
    EXPECT_EQ(find(points, 4, Vec3(1.5F), 3), (Indices{0, 1, 2}));
}

TEST(Spatial3DGrid, givesAllPointsInTheOrderOfVisitWhenFewerThanAsked) {
    // From the middle cell (1, 1, 1): its own point, then the first shell from low z to high z,
    // then the second.
    const auto points = fourCells({{1.5F, 1.5F, 2.5F}, {2.5F, 1.5F, 1.5F}, {0.5F, 1.5F, 1.5F},
        {1.5F, 1.5F, 1.5F}, {1.5F, 3.5F, 1.5F}, {1.5F, 0.5F, 1.5F}});
    EXPECT_EQ(find(points, 4, Vec3(1.4F), 20), (Indices{3, 6, 5, 2, 1, 0, 4, 7}));
    EXPECT_EQ(find(points, 4, Vec3(1.4F), 8), (Indices{3, 6, 5, 2, 1, 0, 4, 7}));
}

TEST(Spatial3DGrid, stopsAfterTheShellThatGaveEnough) {
    // The point of the next cell is a hundredth away, that of the own cell nearly a whole one.
    const auto points = fourCells({{1.05F, 1.5F, 1.5F}, {2.005F, 1.5F, 1.5F}});
    EXPECT_EQ(find(points, 4, {1.995F, 1.5F, 1.5F}, 1), (Indices{0}));
    EXPECT_EQ(find(points, 4, {1.995F, 1.5F, 1.5F}, 2), (Indices{1, 0}));
}

TEST(Spatial3DGrid, putsTheLowerIndexFirstOfTwoAtOnePlace) {
    const auto points = fourCells({{1.5F, 1.5F, 1.5F}, {1.25F, 1.5F, 1.5F}, {1.5F, 1.5F, 1.5F}});
    EXPECT_EQ(find(points, 4, {1.45F, 1.5F, 1.5F}, 2), (Indices{0, 2}));
    EXPECT_EQ(find(points, 4, {1.45F, 1.5F, 1.5F}, 1), (Indices{0}));
}

TEST(Spatial3DGrid, putsTheOneSeenFirstAheadAmongEqualsOfTwoShells) {
    // Both a quarter away: the own cell's comes first although its number is greater. A third point
    // has them sorted by distance.
    const Vec3 far(1.1F, 1.5F, 1.5F);
    const auto points = fourCells({far, {1.75F, 1.5F, 1.5F}, {2.25F, 1.5F, 1.5F}});
    EXPECT_EQ(find(points, 4, {2.0F, 1.5F, 1.5F}, 2), (Indices{2, 1}));
    const auto swapped = fourCells({far, {2.25F, 1.5F, 1.5F}, {1.75F, 1.5F, 1.5F}});
    EXPECT_EQ(find(swapped, 4, {2.0F, 1.5F, 1.5F}, 2), (Indices{1, 2}));
}

TEST(Spatial3DGrid, reachesTheWholeGridFromACorner) {
    const auto points = fourCells({});
    EXPECT_EQ(find(points, 4, {-1e5F, -1e5F, -1e5F}, 1), (Indices{0}));
    EXPECT_EQ(find(points, 4, {1e5F, 1e5F, 1e5F}, 2), (Indices{1, 0}));
}

TEST(Spatial3DGrid, countsSquaresThatOverflowAsFarthest) {
    const std::vector<Vec3> points{{0.0F, 0.0F, 0.0F}, {1e30F, 0.0F, 0.0F}, {3e30F, 0.0F, 0.0F}};
    EXPECT_EQ(find(points, 1, {0.0F, 0.0F, 0.0F}, 2), (Indices{0, 1}));
    EXPECT_EQ(find(points, 1, {-3e30F, 0.0F, 0.0F}, 2), (Indices{0, 1}));
}

TEST(Spatial3DGridDeathTest, endsTheProcessWithoutPointsOrCells) {
    const std::vector<Vec3> none;
    const std::vector<Vec3> one{Vec3(1.0F)};
    EXPECT_DEATH(Spatial3DGrid(none, 8), "no points");
    EXPECT_DEATH(Spatial3DGrid(one, 0), "no cells");
    EXPECT_DEATH(Spatial3DGrid(one, -1), "no cells");
}

TEST(Spatial3DGridDeathTest, endsTheProcessWhereCellsOverflow) {
    const std::vector<Vec3> one{Vec3(1.0F)};
    EXPECT_DEATH(Spatial3DGrid(one, 1291), "overflow");
    EXPECT_DEATH(Spatial3DGrid(one, 65536), "overflow");
    EXPECT_DEATH(Spatial3DGrid(one, std::numeric_limits<int>::max()), "overflow");
}

TEST(Spatial3DGridDeathTest, endsTheProcessAtACoordinateThatIsNotFinite) {
    for (const float bad : {nan, inf, -inf}) {
        for (std::size_t at = 0; at < 7; ++at) {
            auto points = ostrella::testing::cube(7, 1.0F);
            points[at].y = bad;
            EXPECT_DEATH(Spatial3DGrid(points, 2), "not finite") << at;
        }
    }
}

TEST(Spatial3DGridDeathTest, endsTheProcessAtAPositionThatIsNotFinite) {
    const auto points = fourCells({});
    const Spatial3DGrid grid(points, 4);
    EXPECT_DEATH(grid.findKNearest({nan, 0.0F, 0.0F}, points, 1), "not finite");
    EXPECT_DEATH(grid.findKNearest({0.0F, inf, 0.0F}, points, 1), "not finite");
    EXPECT_DEATH(grid.findKNearest({0.0F, 0.0F, -inf}, points, 1), "not finite");
}

TEST(Spatial3DGridDeathTest, endsTheProcessAtAnotherArray) {
    const auto points = fourCells({});
    const Spatial3DGrid grid(points, 4);
    EXPECT_DEATH(grid.findKNearest(Vec3(0.0F), std::vector<Vec3>(1), 1), "another array");
}

} // namespace
