#include "Solver/Surface/CellBorder.h"
#include "Solver/Surface/CellFilling.h"
#include "Solver/Surface/CellFlood.h"
#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/SurfaceChecks.h"
#include "Solver/Surface/WrapLattice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace ostrella {

namespace {

/// Triangles of up to this size anywhere in a box of 2, some of them lines and points.
IndexedSurface soupOf(std::mt19937& random, int triangles, double size) {
    std::uniform_real_distribution<double> place(-1, 1);
    const auto vector = [&] { return DVec3(place(random), place(random), place(random)); };
    IndexedSurface soup;
    for (int i = 0; i < triangles; ++i) {
        const DVec3 middle = vector();
        const auto first = static_cast<std::uint32_t>(soup.vertices.size());
        for (int corner = 0; corner < 3; ++corner)
            soup.vertices.push_back(middle + size * vector());
        soup.triangles.push_back(
            {first, first + (i % 7 == 0 ? 0 : 1), first + (i % 5 == 0 ? 0 : 2)});
    }
    return soup;
}

/// Cells of which this share counts as inside, with a margin of one cell.
CellLattice randomCells(std::mt19937& random, std::int32_t edge, double share) {
    CellLattice lattice;
    lattice.spacing = 1;
    lattice.counts = {edge, edge, edge};
    lattice.cells.resize(static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge) *
                             static_cast<std::size_t>(edge),
        Cell::free);
    std::bernoulli_distribution isInside(share);
    for (std::int32_t z = 1; z + 1 < edge; ++z) {
        for (std::int32_t y = 1; y + 1 < edge; ++y) {
            for (std::int32_t x = 1; x + 1 < edge; ++x) {
                if (isInside(random))
                    lattice.row(y, z)[x] = Cell::blocked;
            }
        }
    }
    return lattice;
}

} // namespace

TEST(WrapSoup, IsClosedAndOutwardAndKeepsItsDistance) {
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        const IndexedSurface soup = soupOf(random, 3 + 2 * round, round % 2 == 0 ? 0.2 : 0.8);
        const auto [low, high] = test::box(soup);
        const WrapSettings settings{.spacing = 0.06 + 0.002 * round,
            .offset = (0.06 + 0.002 * round) * (1 + 0.25 * (round % 5))};
        const TriangleTree tree(soup);
        const IndexedSurface wrap = wrapped(tree, low, high, settings, {});
        ASSERT_EQ(test::manifoldDefect(wrap), "") << round;
        const double least = settings.offset - 0.5 * std::sqrt(3.0) * settings.spacing;
        for (const DVec3& vertex : wrap.vertices)
            ASSERT_GT(tree.nearest(vertex)->distance, least) << round;
        // The pieces are bodies, and none is the wall of a hollow.
        for (const IndexedSurface& piece : test::pieces(wrap)) {
            EXPECT_GT(signedVolume(piece), 0) << round;
            EXPECT_LE(test::eulerCharacteristic(piece), 2) << round;
            EXPECT_EQ(test::eulerCharacteristic(piece) % 2, 0) << round;
        }
        for (std::size_t i = 0; i < soup.triangles.size(); i += 5) {
            const Triangle& t = soup.triangles[i];
            const DVec3 middle =
                (soup.vertices[t[0]] + soup.vertices[t[1]] + soup.vertices[t[2]]) / 3.0;
            EXPECT_NEAR(test::windingNumber(wrap, middle), 1, 1e-6) << round;
        }
    }
}

TEST(WrapSoup, IsManifoldAroundAnyCells) {
    std::mt19937 random(5);
    for (const double share : {0.01, 0.05, 0.1, 0.2, 0.3, 0.5, 0.7, 0.95}) {
        CellLattice lattice = randomCells(random, 24, share);
        const std::vector<Cell> before = lattice.cells;
        do
            floodOutside(lattice, {});
        while (fillToManifold(lattice, {}) > 0);
        const IndexedSurface border = borderOf(lattice, {});
        EXPECT_EQ(test::manifoldDefect(border), "") << share;
        // Cells are only filled, and the margin stays outside.
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (before[i] == Cell::blocked) {
                ASSERT_EQ(lattice.cells[i], Cell::blocked);
            }
        }
        const auto [low, high] = test::box(border);
        EXPECT_TRUE(low.x >= 1 && low.y >= 1 && low.z >= 1);
        EXPECT_TRUE(high.x <= 23 && high.y <= 23 && high.z <= 23);
        const auto inside = static_cast<double>(
            lattice.cells.size() - static_cast<std::size_t>(std::count(
                                       lattice.cells.begin(), lattice.cells.end(), Cell::outside)));
        EXPECT_NEAR(signedVolume(border), inside, 1e-6) << share;
    }
}

TEST(WrapSoup, JoinsTwoCellsThatTouchAlongAnEdgeOrAtACorner) {
    for (const CellLattice::Index second : {CellLattice::Index{2, 2, 1}, {1, 2, 2}, {2, 2, 2}}) {
        CellLattice lattice;
        lattice.spacing = 1;
        lattice.counts = {4, 4, 4};
        lattice.cells.resize(64, Cell::free);
        lattice.row(1, 1)[1] = Cell::blocked;
        lattice.row(second[1], second[2])[second[0]] = Cell::blocked;
        floodOutside(lattice, {});
        // Along an edge one cell joins them, at a corner two.
        const bool isCorner = second[0] + second[1] + second[2] == 6;
        EXPECT_EQ(fillToManifold(lattice, {}), isCorner ? 2 : 1);
        EXPECT_EQ(fillToManifold(lattice, {}), 0);
        EXPECT_EQ(test::manifoldDefect(borderOf(lattice, {})), "");
    }
}

TEST(WrapSoup, FillsWhatTheOutsideDoesNotReach) {
    CellLattice lattice;
    lattice.spacing = 1;
    lattice.counts = {5, 5, 5};
    lattice.cells.resize(125, Cell::free);
    for (std::int32_t z = 1; z < 4; ++z) {
        for (std::int32_t y = 1; y < 4; ++y)
            std::fill(lattice.row(y, z) + 1, lattice.row(y, z) + 4, Cell::blocked);
    }
    lattice.row(2, 2)[2] = Cell::free;
    floodOutside(lattice, {});
    EXPECT_TRUE(lattice.isInside({2, 2, 2}));
    EXPECT_EQ(fillToManifold(lattice, {}), 0);
    EXPECT_DOUBLE_EQ(signedVolume(borderOf(lattice, {})), 27);
}

} // namespace ostrella
