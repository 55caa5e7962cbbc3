#include "Solver/Surface/WrapLattice.h"

#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/SurfaceBodies.h"
#include "Solver/Surface/SurfaceChecks.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

namespace ostrella {

namespace {

IndexedSurface wrapOf(const IndexedSurface& surface, double spacing, double offset) {
    const auto [low, high] = test::box(surface);
    return wrapped(TriangleTree(surface), low, high, {.spacing = spacing, .offset = offset}, {});
}

IndexedSurface wrapOf(const TriangleMesh& mesh, double spacing, double offset) {
    return wrapOf(test::shared(mesh), spacing, offset);
}

/// The box from 0 to 1 with a square hole of this width in the middle of its top.
TriangleMesh boxWithHole(float width) {
    const float low = 0.5F - width / 2;
    const float high = 0.5F + width / 2;
    return test::Facets()
        .box(Vec3(0.0F), Vec3(1.0F))
        .without(3) // the top
        .without(2)
        .quad({0, 0, 1}, {1, 0, 1}, {high, low, 1}, {low, low, 1})
        .quad({1, 0, 1}, {1, 1, 1}, {high, high, 1}, {high, low, 1})
        .quad({1, 1, 1}, {0, 1, 1}, {low, high, 1}, {high, high, 1})
        .quad({0, 1, 1}, {0, 0, 1}, {low, low, 1}, {low, high, 1})
        .mesh();
}

/// How many vertices have so many triangles.
std::map<int, int> verticesByTriangles(const IndexedSurface& surface) {
    std::vector<int> trianglesAt(surface.vertices.size());
    for (const Triangle& t : surface.triangles) {
        for (const std::uint32_t vertex : t)
            ++trianglesAt[vertex];
    }
    std::map<int, int> vertices;
    for (const int triangles : trianglesAt)
        ++vertices[triangles];
    return vertices;
}

TriangleMesh twoBoxes(float gap) {
    return test::Facets().box({0, 0, 0}, {1, 1, 1}).box({1 + gap, 0, 0}, {2 + gap, 1, 1}).mesh();
}

} // namespace

TEST(WrapLattice, LaysACubeAroundAPoint) {
    const IndexedSurface point{{DVec3(3, 4, 5)}, {{0, 0, 0}}};
    // Eight middles are √3/2 cells off the point, the next ones 1.66.
    const IndexedSurface wrap = wrapOf(point, 1, 1);
    EXPECT_EQ(wrap.triangles.size(), 48u);
    EXPECT_EQ(wrap.vertices.size(), 26u);
    EXPECT_EQ(test::manifoldDefect(wrap), "");
    EXPECT_DOUBLE_EQ(signedVolume(wrap), 8);
    EXPECT_EQ(test::box(wrap), std::pair(DVec3(2, 3, 4), DVec3(4, 5, 6)));

    // With those each side of the cube bears four cells more.
    const IndexedSurface larger = wrapOf(point, 1, 1.7);
    EXPECT_EQ(test::manifoldDefect(larger), "");
    EXPECT_DOUBLE_EQ(signedVolume(larger), 32);
}

TEST(WrapLattice, LaysARodAroundALine) {
    const IndexedSurface line{{DVec3(0), DVec3(3, 2, 1)}, {{0, 1, 1}}};
    const IndexedSurface wrap = wrapOf(line, 0.1, 0.15);
    EXPECT_EQ(test::manifoldDefect(wrap), "");
    EXPECT_EQ(test::eulerCharacteristic(wrap), 2);
    // A rod of radius 0.15 with half balls at its ends.
    const double volume = std::numbers::pi * 0.0225 * (std::sqrt(14.0) + 4.0 / 3.0 * 0.15);
    EXPECT_NEAR(signedVolume(wrap), volume, 0.05 * volume);
}

TEST(WrapLattice, FollowsTheSidesOfABox) {
    const IndexedSurface wrap = wrapOf(test::unitBox(), 0.1, 0.12);
    EXPECT_EQ(test::manifoldDefect(wrap), "");
    EXPECT_EQ(wrap.triangles.size(), 6u * 12 * 12 * 2);
    EXPECT_NEAR(signedVolume(wrap), 1.2 * 1.2 * 1.2, 1e-12);
    // Even within the sides.
    EXPECT_GE(verticesByTriangles(wrap)[6], 6 * 11 * 11 - 24);
}

TEST(WrapLattice, IsCutEvenlyOnSlopesToo) {
    const std::map<int, int> vertices = verticesByTriangles(wrapOf(test::ball(3), 0.1, 0.1));
    EXPECT_GE(vertices.begin()->first, 4);
    EXPECT_LE(vertices.rbegin()->first, 8);
}

TEST(WrapLattice, TakesNoNoticeOfTheOrientation) {
    const IndexedSurface wrap = wrapOf(test::unitBox(), 0.1, 0.12);
    const IndexedSurface other = wrapOf(test::flipped(test::unitBox()), 0.1, 0.12);
    EXPECT_EQ(wrap.vertices, other.vertices);
    EXPECT_EQ(wrap.triangles, other.triangles);
}

TEST(WrapLattice, GivesASheetBothItsSides) {
    const TriangleMesh sheet =
        test::Facets().quad({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}).mesh();
    const IndexedSurface wrap = wrapOf(sheet, 0.05, 0.06);
    EXPECT_EQ(test::manifoldDefect(wrap), "");
    EXPECT_EQ(test::eulerCharacteristic(wrap), 2);
    // A layer of cells above and one below, and one around.
    EXPECT_NEAR(signedVolume(wrap), 1.1 * 1.1 * 0.1, 1e-12);
}

TEST(WrapLattice, ClosesANarrowHoleAndEntersAWideOne) {
    const double closed = signedVolume(wrapOf(test::unitBox(), 0.05, 0.06));
    const IndexedSurface narrow = wrapOf(boxWithHole(0.1F), 0.05, 0.06);
    EXPECT_EQ(test::manifoldDefect(narrow), "");
    EXPECT_EQ(test::eulerCharacteristic(narrow), 2);
    EXPECT_NEAR(signedVolume(narrow), closed, 0.002);

    const IndexedSurface wide = wrapOf(boxWithHole(0.3F), 0.05, 0.06);
    EXPECT_EQ(test::manifoldDefect(wide), "");
    EXPECT_EQ(test::eulerCharacteristic(wide), 2); // a pot, and no ring
    EXPECT_LT(signedVolume(wide), 1.1 * 1.1 * 1.1 - 0.85 * 0.85 * 0.85);
}

TEST(WrapLattice, LeavesNothingOfWhatIsInside) {
    const TriangleMesh outer = test::ball(3);
    const TriangleMesh nested = test::Facets()
                                    .add(outer)
                                    .add(test::ball(2, Vec3(0.0F), 0.5F))
                                    .box(Vec3(-0.1F), Vec3(0.1F), true)
                                    .mesh();
    const IndexedSurface wrap = wrapOf(outer, 0.07, 0.08);
    const IndexedSurface ofAll = wrapOf(nested, 0.07, 0.08);
    EXPECT_EQ(ofAll.vertices, wrap.vertices);
    EXPECT_EQ(ofAll.triangles, wrap.triangles);
    EXPECT_EQ(test::eulerCharacteristic(wrap), 2);
}

TEST(WrapLattice, JoinsBodiesAcrossNarrowGapsOnly) {
    const IndexedSurface apart = wrapOf(twoBoxes(0.3F), 0.05, 0.06);
    EXPECT_EQ(test::manifoldDefect(apart), "");
    EXPECT_EQ(test::pieces(apart).size(), 2u);
    const IndexedSurface joined = wrapOf(twoBoxes(0.1F), 0.05, 0.06);
    EXPECT_EQ(test::manifoldDefect(joined), "");
    EXPECT_EQ(test::pieces(joined).size(), 1u);
    EXPECT_EQ(test::eulerCharacteristic(joined), 2);
}

TEST(WrapLattice, KeepsTheHoleOfARing) {
    // Four bars around a square of width 1.
    const TriangleMesh ring = test::Facets()
                                  .box({0, 0, 0}, {2, 0.5F, 0.5F})
                                  .box({0, 1.5F, 0}, {2, 2, 0.5F})
                                  .box({0, 0.25F, 0}, {0.5F, 1.75F, 0.5F})
                                  .box({1.5F, 0.25F, 0}, {2, 1.75F, 0.5F})
                                  .mesh();
    const IndexedSurface wrap = wrapOf(ring, 0.1, 0.1);
    EXPECT_EQ(test::manifoldDefect(wrap), "");
    EXPECT_EQ(test::pieces(wrap).size(), 1u);
    EXPECT_EQ(test::eulerCharacteristic(wrap), 0);
}

TEST(WrapLattice, SlipsThroughNoClosedSurfaceAtTheLeastOffset) {
    const IndexedSurface ball = test::shared(test::ball(3));
    const double volume = signedVolume(ball);
    for (int i = 0; i < 40; ++i) {
        const double spacing = 0.05 + 0.0131 * i;
        const IndexedSurface wrap = wrapOf(ball, spacing, spacing);
        EXPECT_EQ(test::manifoldDefect(wrap), "") << spacing;
        EXPECT_GT(signedVolume(wrap), volume) << spacing;
        EXPECT_EQ(test::eulerCharacteristic(wrap), 2) << spacing;
    }
}

TEST(WrapLattice, IsTheSameEveryTime) {
    const IndexedSurface ball = test::shared(test::ball(4));
    const IndexedSurface first = wrapOf(ball, 0.02, 0.03);
    const IndexedSurface second = wrapOf(ball, 0.02, 0.03);
    EXPECT_EQ(first.vertices, second.vertices);
    EXPECT_EQ(first.triangles, second.triangles);
}

TEST(WrapLattice, TellsItsSizeBeforehand) {
    // 10 cells across the box, and on each side 2 for the offset and 3 beyond.
    EXPECT_EQ(wrapCellCount(DVec3(0), DVec3(1, 2, 0), {.spacing = 0.125, .offset = 0.14}),
        (8 + 10) * (16 + 10) * 10);
    EXPECT_GT(wrapCellCount(DVec3(-1e300), DVec3(1e300), {.spacing = 1e-300, .offset = 1e-300}),
        static_cast<double>(mostWrapCells));
}

TEST(WrapLattice, HasTheSameCellsInEveryUnit) {
    for (int cells = 1; cells < 200; ++cells) {
        for (const double unit : {1.0, 1e-3, 0.0254, 7.0 / 3.0}) {
            const auto extent = static_cast<double>(static_cast<float>(unit / 3));
            const double spacing = unit / 3 / cells;
            EXPECT_EQ(wrapCellCount(DVec3(-extent), DVec3(extent),
                          {.spacing = spacing, .offset = 1.1 * spacing}),
                std::pow(2 * cells + 10, 3));
        }
    }
}

TEST(WrapLattice, StopsOnDemand) {
    const IndexedSurface ball = test::shared(test::ball(3));
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(wrapped(TriangleTree(ball), DVec3(-1), DVec3(1), {.spacing = 0.02, .offset = 0.02},
                     source.token()),
        CancellationError);
}

} // namespace ostrella
