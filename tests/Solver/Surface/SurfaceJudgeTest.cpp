#include "Solver/Surface/SurfaceJudge.h"

#include "Samples.h"
#include "Solver/Surface/SurfaceBodies.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <thread>
#include <vector>

namespace ostrella::test {

namespace {

/// What is expected of a body but for the defects named: none of them.
void expectNoOther(
    SurfaceFitness fitness, const std::vector<SurfaceDefect SurfaceFitness::*>& but) {
    for (const auto defect : but)
        fitness.*defect = {};
    fitness.slivers = {};
    EXPECT_EQ(fitness.openEdges.count, 0);
    EXPECT_EQ(fitness.nonManifoldEdges.count, 0);
    EXPECT_EQ(fitness.duplicatedFacets.count, 0);
    EXPECT_EQ(fitness.inconsistentEdges.count, 0);
    EXPECT_EQ(fitness.degenerateFacets.count, 0);
    EXPECT_EQ(fitness.selfIntersections.count, 0);
    EXPECT_EQ(fitness.overlaps.count, 0);
    EXPECT_EQ(fitness.insideOutShells.count, 0);
    EXPECT_EQ(fitness.innerShells.count, 0);
    EXPECT_EQ(fitness.cuttingShells.count, 0);
    EXPECT_FALSE(fitness.isCutShort);
    EXPECT_TRUE(fitness.isFit());
}

using Places = std::vector<Vec3>;

/// 400 triangles through one point.
TriangleMesh knot() {
    Facets facets;
    for (int i = 0; i < 400; ++i) {
        const float turn = 0.0157F * static_cast<float>(i);
        const Vec3 along(std::cos(turn), std::sin(turn), 0.1F * std::sin(5 * turn));
        facets.triangle(along, -along + Vec3(0, 0, 0.3F), -along - Vec3(0, 0, 0.3F));
    }
    return facets.mesh();
}

} // namespace

TEST(SurfaceJudge, aBoxIsFit) {
    const SurfaceFitness fitness = judgeSurface(unitBox());
    expectNoOther(fitness, {});
    EXPECT_EQ(fitness.facets, 12);
    EXPECT_EQ(fitness.shells, 1);
    EXPECT_EQ(fitness.slivers.count, 0);
    EXPECT_EQ(fitness.extent, 1.0F);
    EXPECT_DOUBLE_EQ(fitness.volume, 1.0);
    EXPECT_DOUBLE_EQ(fitness.area, 6.0);
    // Twelve edges of 1 and six diagonals.
    EXPECT_EQ(fitness.shortestEdge, 1.0F);
    EXPECT_EQ(fitness.medianEdge, 1.0F);
    EXPECT_FLOAT_EQ(fitness.longestEdge, 1.41421356F);
}

TEST(SurfaceJudge, theSamplesAreFit) {
    for (const generators::Sample& sample : generators::samples()) {
        const generators::Body body = sample.make();
        Facets facets;
        for (const auto& [a, b, c] : body.triangles)
            facets.triangle(Vec3(body.vertices[a]), Vec3(body.vertices[b]), Vec3(body.vertices[c]));
        SCOPED_TRACE(sample.id);
        const SurfaceFitness fitness = judgeSurface(facets.mesh());
        expectNoOther(fitness, {});
        EXPECT_EQ(fitness.shells, 1);
        EXPECT_GT(fitness.volume, 0);
    }
}

TEST(SurfaceJudge, aMissingFacetLeavesItsEdgesOpen) {
    // The facet (0, 0, 0), (1, 1, 0), (1, 0, 0).
    const SurfaceFitness fitness =
        judgeSurface(Facets().box(Vec3(0.0F), Vec3(1.0F)).without(1).mesh());
    EXPECT_EQ(fitness.openEdges.count, 3);
    EXPECT_EQ(fitness.openEdges.places, (Places{{0.5F, 0.5F, 0}, {0.5F, 0, 0}, {1, 0.5F, 0}}));
    EXPECT_EQ(fitness.shells, 1);
    expectNoOther(fitness, {&SurfaceFitness::openEdges});
    EXPECT_FALSE(fitness.isFit());
}

TEST(SurfaceJudge, boxesThatShareAnEdgeAreNoManifold) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().box(Vec3(0.0F), Vec3(1.0F)).box({1, 1, 0}, {2, 2, 1}).mesh());
    EXPECT_EQ(fitness.nonManifoldEdges.count, 1);
    EXPECT_EQ(fitness.nonManifoldEdges.places, (Places{{1, 1, 0.5F}}));
    EXPECT_EQ(fitness.shells, 1);
    expectNoOther(fitness, {&SurfaceFitness::nonManifoldEdges});
}

TEST(SurfaceJudge, boxesThatShareACornerAreTwoShells) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().box(Vec3(0.0F), Vec3(1.0F)).box(Vec3(1.0F), Vec3(2.0F)).mesh());
    EXPECT_EQ(fitness.shells, 2);
    expectNoOther(fitness, {});
}

TEST(SurfaceJudge, aFacetGivenTwiceCountsOnce) {
    for (const bool isFlipped : {false, true}) {
        Facets facets;
        facets.box(Vec3(0.0F), Vec3(1.0F));
        if (isFlipped)
            facets.triangle({0, 0, 0}, {1, 1, 0}, {0, 1, 0});
        else
            facets.triangle({0, 1, 0}, {1, 1, 0}, {0, 0, 0});
        const SurfaceFitness fitness = judgeSurface(facets.mesh());
        EXPECT_EQ(fitness.duplicatedFacets.count, 1);
        ASSERT_EQ(fitness.duplicatedFacets.places.size(), 1U);
        EXPECT_FLOAT_EQ(fitness.duplicatedFacets.places[0].x, 1.0F / 3);
        EXPECT_FLOAT_EQ(fitness.duplicatedFacets.places[0].y, 2.0F / 3);
        EXPECT_EQ(fitness.duplicatedFacets.places[0].z, 0.0F);
        expectNoOther(fitness, {&SurfaceFitness::duplicatedFacets});
    }
}

TEST(SurfaceJudge, aFlippedFacetDisagreesAlongItsEdges) {
    const SurfaceFitness fitness = judgeSurface(Facets()
                                                    .box(Vec3(0.0F), Vec3(1.0F))
                                                    .without(0)
                                                    .triangle({0, 0, 0}, {1, 1, 0}, {0, 1, 0})
                                                    .mesh());
    EXPECT_EQ(fitness.inconsistentEdges.count, 3);
    EXPECT_EQ(fitness.inconsistentEdges.places[0], Vec3(0.5F, 0.5F, 0));
    expectNoOther(fitness, {&SurfaceFitness::inconsistentEdges});
}

TEST(SurfaceJudge, aFacetWithTwoEqualCornersIsDegenerate) {
    const SurfaceFitness fitness = judgeSurface(
        Facets().box(Vec3(0.0F), Vec3(1.0F)).triangle({1, 1, 1}, {0, 1, 1}, {0, 1, 1}).mesh());
    EXPECT_EQ(fitness.degenerateFacets.count, 1);
    ASSERT_EQ(fitness.degenerateFacets.places.size(), 1U);
    EXPECT_FLOAT_EQ(fitness.degenerateFacets.places[0].x, 1.0F / 3);
    expectNoOther(fitness, {&SurfaceFitness::degenerateFacets});
}

TEST(SurfaceJudge, aFacetWithItsCornersOnALineIsDegenerate) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().triangle({0, 0, 0}, {1, 1, 1}, {3, 3, 3}).mesh());
    EXPECT_EQ(fitness.degenerateFacets.count, 1);
    EXPECT_EQ(fitness.openEdges.count, 3);
    EXPECT_EQ(fitness.shells, 1);
    expectNoOther(fitness, {&SurfaceFitness::degenerateFacets, &SurfaceFitness::openEdges});
}

TEST(SurfaceJudge, needlesSpoilNothing) {
    // Legs of 1 and 0.01: quality 4√3 · 0.005 / 2.0002 = 0.017, on the four narrow sides.
    const SurfaceFitness fitness = judgeSurface(Facets().box({0, 0, 0}, {1, 1, 0.01F}).mesh());
    EXPECT_EQ(fitness.slivers.count, 8);
    EXPECT_EQ(fitness.slivers.places.size(), 8U);
    expectNoOther(fitness, {});
}

TEST(SurfaceJudge, facetsThatCutEachOther) {
    // From (1, 1, 0) to (2, 2, 0).
    const SurfaceFitness fitness = judgeSurface(Facets()
                                                    .triangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0})
                                                    .triangle({1, 1, -1}, {1, 1, 1}, {9, 9, 0})
                                                    .mesh());
    EXPECT_EQ(fitness.selfIntersections.count, 1);
    EXPECT_EQ(fitness.selfIntersections.places, (Places{{1.5F, 1.5F, 0}}));
    EXPECT_EQ(fitness.cuttingShells.count, 1);
    EXPECT_EQ(fitness.cuttingShells.places, (Places{{1.5F, 1.5F, 0}}));
    EXPECT_EQ(fitness.openEdges.count, 6);
    EXPECT_EQ(fitness.shells, 2);
}

TEST(SurfaceJudge, aShellThatCutsItself) {
    // The box's corner (1, 1, 1) is drawn through its bottom.
    std::vector<Vec3> corners;
    const TriangleMesh box = unitBox();
    for (const Vec3& corner : box.positions())
        corners.push_back(corner == Vec3(1.0F) ? Vec3(0.6F, 0.5F, -1) : corner);
    const SurfaceFitness fitness =
        judgeSurface(TriangleMesh(corners, std::vector<Vec3>(corners.size(), Vec3(0, 0, 1))));
    EXPECT_GT(fitness.selfIntersections.count, 0);
    EXPECT_EQ(fitness.shells, 1);
    expectNoOther(fitness, {&SurfaceFitness::selfIntersections});
}

TEST(SurfaceJudge, facetsInOnePlane) {
    const auto beside = [](const Vec3& by) {
        return judgeSurface(Facets()
                                .triangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0})
                                .triangle(by, by + Vec3(4, 0, 0), by + Vec3(0, 4, 0))
                                .mesh());
    };
    const SurfaceFitness onIt = beside({1, 1, 0});
    EXPECT_EQ(onIt.overlaps.count, 1);
    EXPECT_EQ(onIt.selfIntersections.count, 0);
    // What they have in common is the triangle (1, 1), (3, 1), (1, 3), each of whose sides is part
    // of one side of one of them: the mean of the sides' middles.
    ASSERT_EQ(onIt.overlaps.places.size(), 1U);
    EXPECT_NEAR(onIt.overlaps.places[0].x, 5.0 / 3, 1e-6);
    EXPECT_NEAR(onIt.overlaps.places[0].y, 5.0 / 3, 1e-6);

    EXPECT_EQ(beside({1, 1, 5e-7F}).overlaps.count, 1) << "a rounding apart";
    EXPECT_EQ(beside({1, 1, 1e-4F}).overlaps.count, 0);
    EXPECT_EQ(beside({1, 1, 1e-4F}).selfIntersections.count, 0);
    EXPECT_EQ(beside({2, 2, 0}).overlaps.count, 0) << "corner on edge";
    EXPECT_EQ(beside({2, 2, 0}).selfIntersections.count, 1);
    EXPECT_EQ(beside({3, 3, 0}).selfIntersections.count, 0);
}

TEST(SurfaceJudge, aBoxThatStandsOnALargerOne) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().box({0, 0, 0}, {4, 4, 1}).box({1, 2, 1}, {2, 3, 2}).mesh());
    // Of its two bottom facets one lies within the upper facet of the diagonal's one side.
    EXPECT_GE(fitness.overlaps.count, 2);
    EXPECT_EQ(fitness.cuttingShells.count, 1);
    EXPECT_EQ(fitness.innerShells.count, 0);
    EXPECT_FALSE(fitness.isFit());
}

TEST(SurfaceJudge, boxesInOneAnother) {
    for (const bool isCavity : {false, true}) {
        const SurfaceFitness fitness = judgeSurface(
            Facets().box(Vec3(0.0F), Vec3(3.0F)).box(Vec3(1.0F), Vec3(2.0F), isCavity).mesh());
        EXPECT_EQ(fitness.shells, 2);
        EXPECT_EQ(fitness.innerShells.count, 1);
        // The inner one's first facet is (1, 1, 1), (1, 2, 1), (2, 2, 1); the cavity's has x and y
        // in turn.
        ASSERT_EQ(fitness.innerShells.places.size(), 1U);
        EXPECT_FLOAT_EQ(fitness.innerShells.places[0].x, isCavity ? 5.0F / 3 : 4.0F / 3);
        EXPECT_FLOAT_EQ(fitness.innerShells.places[0].y, isCavity ? 4.0F / 3 : 5.0F / 3);
        EXPECT_EQ(fitness.innerShells.places[0].z, 1.0F);
        EXPECT_DOUBLE_EQ(fitness.volume, isCavity ? 26.0 : 28.0);
        expectNoOther(fitness, {&SurfaceFitness::innerShells});
    }
}

TEST(SurfaceJudge, aSheetInABoxIsInner) {
    const SurfaceFitness fitness = judgeSurface(
        Facets().box(Vec3(0.0F), Vec3(3.0F)).triangle({1, 1, 1}, {2, 1, 1}, {1, 2, 1}).mesh());
    EXPECT_EQ(fitness.innerShells.count, 1);
    EXPECT_EQ(fitness.openEdges.count, 3);
}

TEST(SurfaceJudge, aBoxInTheCornerOfABallsBoxIsNotInner) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().add(ball(3)).box(Vec3(0.85F), Vec3(0.95F)).mesh());
    EXPECT_EQ(fitness.shells, 2);
    expectNoOther(fitness, {});
}

TEST(SurfaceJudge, threeBoxesInOneAnother) {
    const SurfaceFitness fitness = judgeSurface(Facets()
                                                    .box(Vec3(2.0F), Vec3(3.0F))
                                                    .box(Vec3(0.0F), Vec3(5.0F))
                                                    .box(Vec3(1.0F), Vec3(4.0F))
                                                    .mesh());
    EXPECT_EQ(fitness.innerShells.count, 2);
    expectNoOther(fitness, {&SurfaceFitness::innerShells});
}

TEST(SurfaceJudge, crossingBoxes) {
    const SurfaceFitness fitness =
        judgeSurface(Facets().box({0, 0, 0}, {3, 3, 3}).box({1, 1, 1}, {2, 2, 4}).mesh());
    EXPECT_EQ(fitness.cuttingShells.count, 1);
    EXPECT_EQ(fitness.innerShells.count, 0);
    EXPECT_GT(fitness.selfIntersections.count, 0);
    for (const Vec3& place : fitness.selfIntersections.places)
        EXPECT_EQ(place.z, 3.0F);
    expectNoOther(fitness, {&SurfaceFitness::cuttingShells, &SurfaceFitness::selfIntersections});
}

TEST(SurfaceJudge, aShellInsideOut) {
    const SurfaceFitness fitness = judgeSurface(flipped(unitBox()));
    EXPECT_EQ(fitness.insideOutShells.count, 1);
    EXPECT_DOUBLE_EQ(fitness.volume, -1.0);
    expectNoOther(fitness, {&SurfaceFitness::insideOutShells});
    const SurfaceFitness two =
        judgeSurface(Facets().add(flipped(unitBox())).box(Vec3(2.0F), Vec3(3.0F)).mesh());
    EXPECT_EQ(two.insideOutShells.count, 1);
}

TEST(SurfaceJudge, atAnyPlaceAndOfAnySize) {
    for (const float scale : {1e-6F, 1e-3F, 1.0F, 1e6F, 1e30F}) {
        SCOPED_TRACE(scale);
        const SurfaceFitness fitness = judgeSurface(placed(unitBox(), scale, Vec3(0.0F)));
        expectNoOther(fitness, {});
        EXPECT_FLOAT_EQ(fitness.extent, scale);
    }
    const SurfaceFitness far = judgeSurface(placed(unitBox(), 1, {1000, -20'000, 300'000}));
    expectNoOther(far, {});
    EXPECT_DOUBLE_EQ(far.volume, 1.0);
    // Beyond this the usual weld grid has no keys.
    expectNoOther(judgeSurface(placed(unitBox(), 1, Vec3(100'000.0F))), {});
}

TEST(SurfaceJudge, tenFacetsOverAKilometre) {
    Facets facets;
    for (int i = 0; i < 10; ++i) {
        const Vec3 at(100.0F * static_cast<float>(i), 0, 0);
        facets.triangle(at, at + Vec3(1, 0, 0), at + Vec3(0, 1, 0));
    }
    const SurfaceFitness fitness = judgeSurface(facets.mesh());
    EXPECT_EQ(fitness.openEdges.count, 30);
    EXPECT_EQ(fitness.openEdges.places.size(), 30U);
    EXPECT_EQ(fitness.shells, 10);
    EXPECT_EQ(fitness.extent, 901.0F);
    expectNoOther(fitness, {&SurfaceFitness::openEdges});
}

TEST(SurfaceJudge, bodiesWithoutExtent) {
    EXPECT_EQ(judgeSurface(TriangleMesh()), SurfaceFitness());
    EXPECT_FALSE(judgeSurface(TriangleMesh()).isFit());

    const SurfaceFitness point =
        judgeSurface(Facets().triangle(Vec3(5.0F), Vec3(5.0F), Vec3(5.0F)).mesh());
    EXPECT_EQ(point.degenerateFacets.count, 1);
    EXPECT_EQ(point.degenerateFacets.places, (Places{{5, 5, 5}}));
    EXPECT_EQ(point.shells, 0);
    EXPECT_EQ(point.extent, 0.0F);
    EXPECT_FALSE(point.isFit());

    const SurfaceFitness plane =
        judgeSurface(Facets().quad({0, 0, 2}, {1, 0, 2}, {1, 1, 2}, {0, 1, 2}).mesh());
    EXPECT_EQ(plane.openEdges.count, 4);
    EXPECT_EQ(plane.volume, 0.0);
    EXPECT_EQ(plane.area, 1.0);
    expectNoOther(plane, {&SurfaceFitness::openEdges});
}

TEST(SurfaceJudge, keepsTheFirstPlacesAndCountsOn) {
    Facets facets;
    for (int i = 0; i < 50; ++i) {
        const Vec3 at(2.0F * static_cast<float>(i), 0, 0);
        facets.triangle(at, at + Vec3(1, 0, 0), at + Vec3(0, 1, 0));
    }
    const SurfaceFitness fitness = judgeSurface(facets.mesh());
    EXPECT_EQ(fitness.openEdges.count, 150);
    ASSERT_EQ(fitness.openEdges.places.size(), 64U);
    EXPECT_EQ(fitness.openEdges.places[0], Vec3(0.5F, 0, 0));
    EXPECT_EQ(fitness.openEdges.places[63], Vec3(42.5F, 0, 0)) << "three of a facet";
}

TEST(SurfaceJudge, aKnotIsCutShort) {
    const SurfaceFitness fitness = judgeSurface(knot());
    EXPECT_TRUE(fitness.isCutShort);
    EXPECT_GE(fitness.selfIntersections.count, 50'000);
    EXPECT_LT(fitness.selfIntersections.count, 51'000);
    EXPECT_EQ(fitness.selfIntersections.places.size(), 64U);
    EXPECT_FALSE(fitness.isFit());
    EXPECT_EQ(judgeSurface(knot()), fitness);
}

TEST(SurfaceJudge, largeBodiesOnTwoThreads) {
    const TriangleMesh large = ball(6); // 81 920 facets
    expectNoOther(judgeSurface(large), {});
    const TriangleMesh crossing = Facets().add(large).add(ball(6, {0.5F, 0, 0})).mesh();
    const SurfaceFitness fitness = judgeSurface(crossing);
    EXPECT_EQ(fitness.cuttingShells.count, 1);
    EXPECT_GT(fitness.selfIntersections.count, 1000);
    // The spheres' circle: x = 0.25, and a radius of √(1 − 0.0625).
    for (const Vec3& place : fitness.selfIntersections.places) {
        EXPECT_NEAR(place.x, 0.25F, 0.02F);
        EXPECT_NEAR(std::hypot(place.y, place.z), 0.9682F, 0.02F);
    }
    EXPECT_EQ(judgeSurface(crossing), fitness);
}

TEST(SurfaceJudge, manySmallShellsInALargeOne) {
    Facets facets;
    facets.box(Vec3(-1.0F), Vec3(21.0F));
    for (int i = 0; i < 8000; ++i) {
        const Vec3 at(static_cast<float>(i % 20), static_cast<float>(i / 20 % 20),
            static_cast<float>(i / 400));
        facets.box(at, at + Vec3(0.5F));
    }
    const SurfaceFitness fitness = judgeSurface(facets.mesh());
    EXPECT_EQ(fitness.shells, 8001);
    EXPECT_EQ(fitness.innerShells.count, 8000);
    expectNoOther(fitness, {&SurfaceFitness::innerShells});
}

TEST(SurfaceJudge, ends) {
    const CancellationSource cancelled;
    cancelled.cancel();
    EXPECT_THROW(judgeSurface(unitBox(), cancelled.token()), CancellationError);
    const TriangleMesh large = ball(7);
    const CancellationSource source;
    std::thread other([&] { source.cancel(); });
    EXPECT_THROW(
        {
            for (;;)
                judgeSurface(large, source.token());
        },
        CancellationError);
    other.join();
}

} // namespace ostrella::test
