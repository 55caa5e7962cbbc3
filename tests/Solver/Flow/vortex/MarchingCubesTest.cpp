#include "Solver/Flow/MarchingCubes.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/IsoWeld.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestFlows.h"
#include "Solver/Flow/vortex/TestSurfaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace ostrella {

namespace {

using test::CancelAt;

const float nan = std::numeric_limits<float>::quiet_NaN();

std::vector<float> fieldOn(const Lattice& lattice, float (*field)(const Vec3&)) {
    std::vector<float> scalars;
    for (std::size_t k = 0; k < lattice.points; ++k) {
        for (std::size_t j = 0; j < lattice.points; ++j) {
            for (std::size_t i = 0; i < lattice.points; ++i)
                scalars.push_back(field(lattice.position(i, j, k)));
        }
    }
    return scalars;
}

/// High inside, so that what lies above the level is a ball.
float ball(const Vec3& p) {
    return 2.0F - std::sqrt(squaredLength(p));
}

/// Ridges and saddles, with every case of the tables.
float gyroid(const Vec3& p) {
    return std::sin(4.0F * p.x) * std::cos(5.0F * p.y) + std::sin(6.0F * p.y) * std::cos(p.z) +
           std::sin(3.0F * p.z) * std::cos(7.0F * p.x);
}

std::vector<float> surfaceOf(const std::vector<float>& scalars, const Lattice& lattice, float iso) {
    return marchingCubes(scalars, lattice.points, lattice.origin, lattice.cellSize, iso);
}

std::vector<float> flat(const std::vector<Vec3>& corners) {
    std::vector<float> floats;
    for (const Vec3& p : corners)
        floats.insert(floats.end(), {p.x, p.y, p.z});
    return floats;
}

TEST(MarchingCubes, surfaceOfASphereIsClosedAndOfItsArea) {
    // Neighbouring cells may compute a shared vertex an ulp apart; on this lattice none of them
    // lies on a rounding boundary of the weld grid.
    const Lattice lattice{24, Vec3(-1.3F, -1.2F, -1.25F), Vec3(0.113F, 0.105F, 0.109F)};
    const auto triangles = surfaceOf(fieldOn(lattice, ball), lattice, 1.0F);
    const auto surface = weld(triangles, 1.0F);
    ASSERT_TRUE(surface);
    EXPECT_EQ(test::unpairedEdges(surface->indices.span()), 0U);
    EXPECT_EQ(test::pieces(surface->indices.span()), 1U);
    const double exactArea = 4 * std::numbers::pi;
    EXPECT_NEAR(test::area(*surface), exactArea, 0.01 * exactArea);
    const double exactVolume = 4 * std::numbers::pi / 3;
    EXPECT_NEAR(test::enclosedVolume(*surface), exactVolume, 0.01 * exactVolume);
}

TEST(MarchingCubes, normalsOfASpherePointAwayFromTheHighValues) {
    const Lattice lattice{32, Vec3(-1.3F), Vec3(0.085F)};
    const auto surface = weld(surfaceOf(fieldOn(lattice, ball), lattice, 1.0F), 1.0F);
    ASSERT_TRUE(surface);
    for (std::size_t i = 0; i < surface->positions.size(); ++i)
        EXPECT_GT(dot(surface->positions[i], surface->normals[i]), 0.9F);
}

TEST(MarchingCubes, cutsEdgesWhereTheLevelLies) {
    // One corner, (0, 0, 0), lies below: its three edges are cut at a quarter of their length.
    std::vector<float> scalars(8, 4.0F);
    scalars[0] = 0.0F;
    const auto triangles =
        marchingCubes(scalars, 2, Vec3(10.0F, 20.0F, 30.0F), Vec3(1.0F, 2.0F, 4.0F), 1.0F);
    const std::vector<float> expected = {
        10.25F, 20.0F, 30.0F, 10.0F, 20.0F, 31.0F, 10.0F, 20.5F, 30.0F};
    EXPECT_EQ(triangles, expected);
}

TEST(MarchingCubes, aValueOnTheLevelIsNotBelow) {
    std::vector<float> scalars(8, 1.0F);
    EXPECT_TRUE(marchingCubes(scalars, 2, Vec3(0.0F), Vec3(1.0F), 1.0F).empty());
    scalars[0] = 0.0F;
    const auto triangles = marchingCubes(scalars, 2, Vec3(0.0F), Vec3(1.0F), 1.0F);
    EXPECT_EQ(triangles, (std::vector<float>{1, 0, 0, 0, 0, 1, 0, 1, 0}));
}

TEST(MarchingCubes, edgesOfNearlyEqualEndsAreCutInTheMiddle) {
    std::vector<float> scalars(8, 1e-12F);
    scalars[0] = 0.0F;
    const auto triangles = marchingCubes(scalars, 2, Vec3(0.0F), Vec3(1.0F), 1e-12F);
    EXPECT_EQ(triangles, (std::vector<float>{0.5F, 0, 0, 0, 0, 0.5F, 0, 0.5F, 0}));
}

TEST(MarchingCubes, interpolatesWithOneRounding) {
    // 3 + t × 5 with t the float next to 1/3 is 4.666666716; rounding t × 5 by itself first leads
    // to the float above.
    std::vector<float> scalars(8, 3.0F);
    scalars[0] = 0.0F;
    const auto triangles = marchingCubes(scalars, 2, Vec3(3.0F), Vec3(5.0F), 1.0F);
    ASSERT_EQ(triangles.size(), 9U);
    EXPECT_EQ(triangles[0], 4.66666651F);
    volatile float product = 1.0F / 3.0F * 5.0F;
    EXPECT_EQ(3.0F + product, 4.66666698F);
}

TEST(MarchingCubes, leavesOutCellsWithACornerThatIsNotFinite) {
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float hole : {nan, infinity, -infinity}) {
        for (std::size_t at = 0; at < 8; ++at) {
            std::vector<float> scalars(8, 4.0F);
            scalars[7 - at] = 0.0F;
            scalars[at] = hole;
            EXPECT_TRUE(marchingCubes(scalars, 2, Vec3(0.0F), Vec3(1.0F), 1.0F).empty());
        }
    }
}

TEST(MarchingCubes, walksCellsAlongXFirst) {
    // Lows at single points inside a lattice of 5: eight cells each, first in z, then y, then x.
    const Lattice lattice{5, Vec3(0.0F), Vec3(1.0F)};
    std::vector<float> scalars(lattice.count(), 2.0F);
    scalars[lattice.index(3, 1, 1)] = 0.0F;
    scalars[lattice.index(1, 1, 3)] = 0.0F;
    const auto triangles = surfaceOf(scalars, lattice, 1.0F);
    ASSERT_EQ(triangles.size(), 9U * 16U);
    std::vector<std::size_t> cells;
    for (std::size_t at = 0; at < triangles.size(); at += 9) {
        std::size_t cell[3] = {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            cell[axis] = static_cast<std::size_t>(
                (triangles[at + axis] + triangles[at + 3 + axis] + triangles[at + 6 + axis]) / 3);
        cells.push_back(lattice.index(cell[0], cell[1], cell[2]));
    }
    EXPECT_TRUE(std::is_sorted(cells.begin(), cells.end()));
}

TEST(MarchingCubes, findsASingleHighValueWhereverItLies) {
    const Lattice lattice{4, Vec3(-1.0F), Vec3(0.7F)};
    for (std::size_t at = 0; at < lattice.count(); ++at) {
        std::vector<float> scalars(lattice.count(), 0.0F);
        scalars[at] = 1.0F;
        const auto plain = plain::Vortex::marchingCubes(scalars, lattice, 0.4F);
        ASSERT_FALSE(plain.empty());
        EXPECT_EQ(surfaceOf(scalars, lattice, 0.4F), flat(plain)) << at;
    }
}

TEST(MarchingCubes, givesTheSameBytesAsThePlainOne) {
    const Lattice lattice{29, Vec3(-1.1F, -2.0F, -0.7F), Vec3(0.09F, 0.13F, 0.05F)};
    auto scalars = fieldOn(lattice, gyroid);
    for (std::size_t i = 0; i < scalars.size(); i += 97)
        scalars[i] = nan;
    for (const float iso : {-1.0F, 0.0F, 0.35F, 1.9F}) {
        const auto plain = plain::Vortex::marchingCubes(scalars, lattice, iso);
        ASSERT_FALSE(plain.empty());
        EXPECT_EQ(surfaceOf(scalars, lattice, iso), flat(plain));
    }
}

TEST(MarchingCubes, asksForCancellationOnceALayerOfCells) {
    const Lattice lattice{9, Vec3(-1.3F), Vec3(0.3F)};
    const auto scalars = fieldOn(lattice, ball);
    CancelAt never;
    marchingCubes(scalars, 9, lattice.origin, lattice.cellSize, 1.0F, never.question());
    EXPECT_EQ(never.asked, 8U);
    for (std::size_t turn = 1; turn <= 8; ++turn) {
        CancelAt cancel{turn};
        EXPECT_THROW(
            marchingCubes(scalars, 9, lattice.origin, lattice.cellSize, 1.0F, cancel.question()),
            CancellationError);
        EXPECT_EQ(cancel.asked, turn);
    }
}

} // namespace

} // namespace ostrella
