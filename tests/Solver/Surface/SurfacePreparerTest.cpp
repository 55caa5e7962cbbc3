#include "Solver/Surface/SurfacePreparer.h"

#include "Models/BoundingBox.h"
#include "Solver/Geometry/Welding.h"
#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/SurfaceJudge.h"
#include "Solver/Surface/TriangleTree.h"
#include "SurfaceBodies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using test::ball;
using test::Facets;
using test::flipped;
using test::placed;
using test::unitBox;
using test::unshared;

constexpr double pi = 3.14159265358979;

double volumeOf(const TriangleMesh& mesh) {
    return signedVolume(unshared(mesh));
}

/// Both ways, m.
double hausdorff(const TriangleMesh& a, const TriangleMesh& b, double step) {
    const IndexedSurface first = unshared(a);
    const IndexedSurface second = unshared(b);
    return std::max(greatestDistance(first, TriangleTree(second), step),
        greatestDistance(second, TriangleTree(first), step));
}

/// What every prepared surface is.
void expectFit(const PreparedSurface& prepared) {
    const SurfaceFitness fitness = judgeSurface(prepared.mesh);
    EXPECT_TRUE(fitness.isFit()) << fitnessLine(fitness);
    EXPECT_GT(fitness.volume, 0);
    EXPECT_EQ(fitness.facets, prepared.facts.facets);
    EXPECT_EQ(fitness.shells, prepared.facts.bodies);
}

/// Shares of the facets' edges below and above two bounds.
struct EdgeShares {
    double below = 0;
    double above = 0;
};

EdgeShares edgeShares(const TriangleMesh& mesh, float low, float high) {
    const auto positions = mesh.positions().span();
    EdgeShares shares;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const Vec3 edge = positions[i % 3 == 2 ? i - 2 : i + 1] - positions[i];
        const float length = std::sqrt(squaredLength(edge));
        shares.below += length < low ? 1 : 0;
        shares.above += length > high ? 1 : 0;
    }
    shares.below /= static_cast<double>(positions.size());
    shares.above /= static_cast<double>(positions.size());
    return shares;
}

TEST(PrepareSurface, ASoundBallKeepsItsShapeWithEvenFacets) {
    const TriangleMesh model = ball(4);
    const float edge = 0.1F; // a twentieth of its extent
    const PreparedSurface prepared = prepareSurface(model, edge);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.bodies, 1);
    EXPECT_LT(hausdorff(model, prepared.mesh, 0.01), 0.5 * edge);
    EXPECT_LE(prepared.facts.deviation, 0.1 * edge);
    EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(model), 0.01 * volumeOf(model));
    const EdgeShares shares = edgeShares(prepared.mesh, 0.9F * edge, 2.0F * edge);
    EXPECT_LT(shares.below, 0.01);
    EXPECT_EQ(shares.above, 0);
}

TEST(PrepareSurface, ABoxKeepsItsEdgesAndCorners) {
    const TriangleMesh model = placed(unitBox(), 2, {5, -3, 1});
    const PreparedSurface prepared = prepareSurface(model, 0.1F);
    expectFit(prepared);
    EXPECT_NEAR(volumeOf(prepared.mesh), 8, 0.02);
    // Rounded edges would lie 0.05 and more away from the corners.
    EXPECT_LT(hausdorff(model, prepared.mesh, 0.02), 0.01);
}

TEST(PrepareSurface, ARingOfFewFacetsAroundKeepsItsVolume) {
    // A tube of radius 0.25 m about a circle of 1 m; facets of half its radius would cut off much.
    constexpr int along = 120;
    constexpr int around = 32;
    const auto at = [](int i, int j) {
        const double a = 2 * pi * i / along;
        const double b = 2 * pi * j / around;
        const double out = 1 + 0.25 * std::cos(b);
        return Vec3(DVec3(out * std::cos(a), out * std::sin(a), 0.25 * std::sin(b)));
    };
    Facets facets;
    for (int i = 0; i < along; ++i) {
        for (int j = 0; j < around; ++j) {
            facets.quad(at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1));
        }
    }
    const TriangleMesh model = facets.mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.125F);
    expectFit(prepared);
    EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(model), 0.005 * volumeOf(model));
    EXPECT_LT(hausdorff(model, prepared.mesh, 0.02), 0.15 * 0.125);
}

TEST(PrepareSurface, BoxesThroughEachOtherBecomeOne) {
    const TriangleMesh model =
        Facets().box({0, 0, 0}, {2, 1, 1}).box({0.5F, 0.25F, -0.5F}, {1, 0.75F, 1.5F}).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.1F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.bodies, 1);
    EXPECT_EQ(prepared.facts.shellsRemoved, 0);
    EXPECT_EQ(prepared.facts.openingsClosed, 0);
    EXPECT_EQ(prepared.facts.sheetsThickened, 0);
    // 2 + 0.5 · 0.5 · 2 less what lies in both, 0.5 · 0.5 · 1.
    EXPECT_NEAR(volumeOf(prepared.mesh), 2.25, 0.02);
}

TEST(PrepareSurface, WhatLiesInsideGoes) {
    const TriangleMesh model = Facets().add(ball(3)).add(ball(2, Vec3(0.1F), 0.5F)).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.1F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.bodies, 1);
    EXPECT_EQ(prepared.facts.shellsRemoved, 1);
    EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(ball(3)), 0.01 * volumeOf(ball(3)));
}

TEST(PrepareSurface, BodiesApartStayApart) {
    const TriangleMesh model = Facets().add(ball(3)).add(ball(3, {3, 0, 0})).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.2F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.bodies, 2);
    EXPECT_EQ(prepared.facts.smallBodies, 0);
}

TEST(PrepareSurface, BodiesTooSmallForTheFacetsAreCounted) {
    const TriangleMesh model = Facets().add(ball(3)).add(ball(1, {4, 0, 0}, 0.1F)).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.3F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.bodies, 2);
    EXPECT_EQ(prepared.facts.smallBodies, 1);
}

TEST(PrepareSurface, FacetsTurnedAnyWayGiveAnOutwardSurface) {
    const TriangleMesh model = ball(3);
    std::vector<Vec3> corners(model.positions().begin(), model.positions().end());
    for (std::size_t i = 0; i + 2 < corners.size(); i += 9) {
        std::swap(corners[i], corners[i + 1]);
    }
    const TriangleMesh mixed(corners, std::vector<Vec3>(corners.size(), Vec3(0, 0, 1)));
    for (const TriangleMesh& mesh : {mixed, flipped(model)}) {
        const PreparedSurface prepared = prepareSurface(mesh, 0.1F);
        expectFit(prepared);
        EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(model), 0.01 * volumeOf(model));
    }
}

TEST(PrepareSurface, NarrowOpeningsAreClosedAndCounted) {
    // A ball of 1 280 facets without four of them, none beside another.
    const TriangleMesh model =
        Facets().add(ball(3)).without(900).without(600).without(300).without(0).mesh();
    ASSERT_EQ(openEdgeCount(model), 12U);
    const PreparedSurface prepared = prepareSurface(model, 0.1F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.openingsClosed, 4);
    EXPECT_EQ(prepared.facts.sheetsThickened, 0);
    EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(ball(3)), 0.01 * volumeOf(ball(3)));
}

TEST(PrepareSurface, AGapBetweenTwoBodiesIsClosedIfItIsNarrow) {
    const auto halves = [](float gap) {
        return Facets().box({0, 0, 0}, {1, 1, 1}).box({1 + gap, 0, 0}, {2 + gap, 1, 1}).mesh();
    };
    const PreparedSurface joined = prepareSurface(halves(0.001F), 0.1F);
    expectFit(joined);
    EXPECT_EQ(joined.facts.bodies, 1);
    EXPECT_GT(joined.facts.gapWidth, 0.001);
    const PreparedSurface apart = prepareSurface(halves(0.15F), 0.1F);
    expectFit(apart);
    EXPECT_LT(apart.facts.gapWidth, 0.15);
    EXPECT_EQ(apart.facts.bodies, 2);
}

TEST(PrepareSurface, ASheetIsGivenThickness) {
    const TriangleMesh model = Facets().quad({0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.1F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.sheetsThickened, 1);
    EXPECT_EQ(prepared.facts.openingsClosed, 0);
    const double thickness = prepared.facts.sheetThickness;
    EXPECT_GT(thickness, 0.01);
    EXPECT_LE(thickness, 0.05);
    EXPECT_NEAR(prepared.mesh.size().z, thickness, 0.2 * thickness);
    EXPECT_NEAR(volumeOf(prepared.mesh), 2 * thickness, 0.2 * 2 * thickness);
    EXPECT_LE(prepared.facts.deviation, 0.6 * thickness);
}

TEST(PrepareSurface, AThinClosedPlateKeepsItsThickness) {
    const TriangleMesh model = Facets().box({0, 0, 0}, {1, 0.5F, 0.004F}).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.05F);
    expectFit(prepared);
    EXPECT_EQ(prepared.facts.sheetsThickened, 0);
    EXPECT_NEAR(prepared.mesh.size().z, 0.004, 0.001);
    EXPECT_LT(hausdorff(model, prepared.mesh, 0.01), 0.01);
}

TEST(PrepareSurface, AWireGetsATriangularCrossSectionThatCanBeMeshed) {
    // Thinner than a hundredth of a facet.
    const TriangleMesh model =
        Facets().add(ball(2)).box({0, 0, -0.0004F}, {3, 0.0008F, 0.0004F}).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.2F);
    expectFit(prepared);
    EXPECT_NEAR(prepared.mesh.boundingMax().x, 3, 0.03);
    EXPECT_LT(edgeShares(prepared.mesh, 0.1F * 0.2F, 0.4F).below, 0.06);
    EXPECT_LT(prepared.facts.deviation, 0.25 * 0.2);
}

TEST(PrepareSurface, DoubledAndEmptyFacetsPlayNoPart) {
    TriangleMesh model = Facets().add(ball(2)).add(ball(2)).mesh();
    const PreparedSurface prepared = prepareSurface(model, 0.2F);
    expectFit(prepared);
    EXPECT_NEAR(volumeOf(prepared.mesh), volumeOf(ball(2)), 0.01 * volumeOf(ball(2)));
}

TEST(PrepareSurface, SizeAndPlaceChangeNothing) {
    const TriangleMesh model =
        Facets().box({0, 0, 0}, {2, 1, 1}).box({1, 0.5F, 0.5F}, {3, 2, 2}).mesh();
    const auto facets = prepareSurface(model, 0.15F).facts.facets;
    for (const float scale : {1e-3F, 1e3F}) {
        const PreparedSurface other =
            prepareSurface(placed(model, scale, {7 * scale, -8 * scale, 9 * scale}), 0.15F * scale);
        expectFit(other);
        EXPECT_NEAR(static_cast<double>(other.facts.facets), static_cast<double>(facets),
            0.1 * static_cast<double>(facets));
        EXPECT_NEAR(volumeOf(other.mesh) / std::pow(scale, 3), 2 + 4.5 - 0.25, 0.06);
    }
}

TEST(PrepareSurface, TheSameModelGivesTheSameSurface) {
    const TriangleMesh model = Facets().add(ball(2)).box({0, 0, 0}, {2, 0.3F, 0.3F}).mesh();
    const PreparedSurface first = prepareSurface(model, 0.15F);
    const PreparedSurface second = prepareSurface(model, 0.15F);
    EXPECT_EQ(first.mesh, second.mesh);
    EXPECT_EQ(first.facts, second.facts);
}

std::string failureOf(const TriangleMesh& mesh) {
    try {
        prepareSurface(mesh, 0.1F);
    } catch (const PreparationError& error) {
        return error.what();
    }
    return "no failure";
}

TEST(PrepareSurface, WithoutAnAreaThereIsNothingToPrepare) {
    const Vec3 a(1, 2, 3);
    const Vec3 b(3, 2, 3);
    EXPECT_EQ(failureOf(Facets().triangle(a, b, a).triangle(a, (a + b) * 0.5F, b).mesh()),
        "The model has no surface: all of its facets collapse to lines or points, about (2.00, "
        "2.00, 3.00) m.");
    EXPECT_EQ(failureOf(Facets().triangle(-a, -a, -a).mesh()),
        "The model has no surface: all of its facets collapse to lines or points, about (−1, −2, "
        "−3) m.");
}

TEST(PrepareSurface, TooFarFromTheOriginNothingCanBeToldApart) {
    const Vec3 a(3e9F, 0, -1e9F);
    EXPECT_EQ(failureOf(Facets().triangle(a, a + Vec3(0, 1, 0), a + Vec3(0, 0, 256)).mesh()),
        "The model is too far from the origin for its size: its corners cannot be told apart "
        "there, about (3000000000, 0, −999999872) m. Move it to the origin, and export it again.");
}

TEST(PrepareSurface, ACancelEndsIt) {
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(prepareSurface(ball(4), 0.1F, source.token()), CancellationError);
}

TEST(PrepareSurface, ThousandsOfLooseFacetsAreBounded) {
    // A regular cloud: the wrap of all of them at the wanted size would have millions of squares.
    Facets facets;
    for (int i = 0; i < 1000; ++i) {
        const Vec3 p(static_cast<float>(i % 10), static_cast<float>(i / 10 % 10),
            static_cast<float>(i / 100));
        facets.triangle(p, p + Vec3(0.6F, 0, 0.1F), p + Vec3(0, 0.5F, 0.2F));
    }
    const PreparedSurface prepared = prepareSurface(facets.mesh(), 0.1F);
    EXPECT_GT(prepared.facts.facets, 0);
    EXPECT_LT(prepared.facts.facets, 100'000);
}

} // namespace

} // namespace ostrella
