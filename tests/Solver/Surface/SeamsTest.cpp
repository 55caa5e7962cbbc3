#include "Solver/Surface/OpeningBodies.h"
#include "Solver/Surface/Openings.h"
#include "Solver/Surface/PlanarWidth.h"
#include "Solver/Surface/PointClusters.h"
#include "Solver/Surface/SurfaceBodies.h"
#include "Solver/Surface/SurfaceChecks.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

namespace ostrella {

namespace {

constexpr OpeningLimits limits{.widest = 0.3, .seam = 1e-3};

/// Closed without a lid, as one body.
void expectSeamsOnly(const IndexedSurface& surface) {
    const OpeningLids lids = lidsFor(surface, limits);
    EXPECT_EQ(lids.count, 0);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{false});
    EXPECT_NEAR(test::area({surface.vertices, lids.triangles}), 0, 0.01);
}

/// A vertex of its own for each corner.
IndexedSurface apart(const IndexedSurface& surface) {
    IndexedSurface parts;
    for (const Triangle& t : surface.triangles) {
        const auto first = static_cast<std::uint32_t>(parts.vertices.size());
        for (const std::uint32_t vertex : t)
            parts.vertices.push_back(surface.vertices[vertex]);
        parts.triangles.push_back({first, first + 1, first + 2});
    }
    return parts;
}

} // namespace

TEST(Seams, TakesVerticesOnALongEdgeForASeam) {
    // The top of a box in three strips, whose ends lie on two edges of the sides.
    const TriangleMesh mesh = test::Facets()
                                  .box(Vec3(0.0F), Vec3(1.0F))
                                  .without(3)
                                  .without(2)
                                  .quad({0, 0, 1}, {0.25F, 0, 1}, {0.25F, 1, 1}, {0, 1, 1})
                                  .quad({0.25F, 0, 1}, {0.5F, 0, 1}, {0.5F, 1, 1}, {0.25F, 1, 1})
                                  .quad({0.5F, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0.5F, 1, 1})
                                  .mesh();
    expectSeamsOnly(test::shared(mesh));
}

TEST(Seams, JoinsWhatSharesNoEdgeToOneBody) {
    // The top in two rows, each divided elsewhere than all around it.
    const TriangleMesh mesh = test::Facets()
                                  .box(Vec3(0.0F), Vec3(1.0F))
                                  .without(3)
                                  .without(2)
                                  .quad({0, 0, 1}, {0.25F, 0, 1}, {0.25F, 0.5F, 1}, {0, 0.5F, 1})
                                  .quad({0.25F, 0, 1}, {1, 0, 1}, {1, 0.5F, 1}, {0.25F, 0.5F, 1})
                                  .quad({0, 0.5F, 1}, {0.75F, 0.5F, 1}, {0.75F, 1, 1}, {0, 1, 1})
                                  .quad({0.75F, 0.5F, 1}, {1, 0.5F, 1}, {1, 1, 1}, {0.75F, 1, 1})
                                  .mesh();
    const IndexedSurface surface = test::shared(mesh);
    expectSeamsOnly(surface);
    EXPECT_TRUE(lidsFor(surface, limits).triangles.empty());
}

TEST(Seams, TakesSidesThatShareNoVertexForOneBody) {
    // Strips of 1/3 on the top and of 1/4 on the side next to it, pushed off its corners.
    test::Facets facets;
    facets.box(Vec3(0.0F), Vec3(1.0F)).without(5).without(4).without(3).without(2);
    for (int i = 0; i < 3; ++i) {
        const float left = static_cast<float>(i) / 3;
        const float right = static_cast<float>(i + 1) / 3;
        facets.quad({left, 0, 1}, {right, 0, 1}, {right, 1, 1}, {left, 1, 1});
    }
    for (int i = 0; i < 4; ++i) {
        const float left = static_cast<float>(i) / 4;
        const float right = static_cast<float>(i + 1) / 4;
        facets.quad({left, 0, 0}, {right, 0, 0}, {right, 0, 1}, {left, 0, 1});
    }
    IndexedSurface surface = apart(test::shared(facets.mesh()));
    expectSeamsOnly(surface);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> shift(-2e-4, 2e-4);
    for (DVec3& vertex : surface.vertices)
        vertex += DVec3(shift(random), shift(random), shift(random));
    expectSeamsOnly(surface);
}

TEST(Seams, CountsACrackThatIsWiderThanASeam) {
    // The top's front edge bends in between its ends, by 0.05.
    const TriangleMesh mesh = test::Facets()
                                  .box(Vec3(0.0F), Vec3(1.0F))
                                  .without(3)
                                  .without(2)
                                  .triangle({0, 0, 1}, {0.5F, 0.05F, 1}, {0, 1, 1})
                                  .triangle({0.5F, 0.05F, 1}, {1, 0, 1}, {1, 1, 1})
                                  .triangle({0.5F, 0.05F, 1}, {1, 1, 1}, {0, 1, 1})
                                  .mesh();
    const IndexedSurface surface = test::shared(mesh);
    const OpeningLids lids = lidsFor(surface, limits);
    EXPECT_EQ(lids.count, 1);
    EXPECT_NEAR(test::area({surface.vertices, lids.triangles}), 0.025, 1e-8);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{false});
    // It is none if it may be as wide.
    const OpeningLids wide = lidsFor(surface, {.widest = 0.3, .seam = 0.06});
    EXPECT_EQ(wide.count, 0);
    EXPECT_EQ(wide.isSheet, std::vector<bool>{false});
}

TEST(Seams, FindsTheGapBetweenTwoShellsThatShareTwoVertices) {
    // Two halves of a box that is cut from end to end; the cut gapes by 0.1 in the middle.
    const auto half = [](float side, float gap) {
        return test::Facets()
            .triangle({0, 0, 1}, {0.5F, gap, 1}, {0, side, 1})
            .triangle({0.5F, gap, 1}, {1, side, 1}, {0, side, 1})
            .triangle({0.5F, gap, 1}, {1, 0, 1}, {1, side, 1})
            .mesh();
    };
    const TriangleMesh mesh = test::Facets().add(half(2, 0.05F)).add(half(-2, -0.05F)).mesh();
    const IndexedSurface surface = test::shared(mesh);
    const OpeningLids lids = lidsFor(surface, limits);
    EXPECT_EQ(lids.count, 1);
    EXPECT_NEAR(test::area({surface.vertices, lids.triangles}), 0.05, 1e-8);
    EXPECT_EQ(lids.isSheet, (std::vector<bool>{true, true}));
}

TEST(Seams, DoesNotTakeAFineBorderForASeam) {
    // A rim of edges that are far shorter than a seam is wide.
    const OpeningLids lids = lidsFor(test::pot(20'000, 3), {.widest = 3, .seam = 0.01});
    EXPECT_EQ(lids.count, 1);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{false});
    const OpeningLids open = lidsFor(test::pot(20'000, 3), {.widest = 1, .seam = 0.01});
    EXPECT_EQ(open.isSheet, std::vector<bool>{true});
}

TEST(Seams, EndsWhereAllEdgesLieOnAll) {
    // Needles along one line, each over all others: their sides are a seam each, found or not.
    std::mt19937 random(8);
    std::uniform_real_distribution<double> place(-1, 1);
    IndexedSurface needles;
    for (std::uint32_t i = 0; i < 15'000; ++i) {
        for (int corner = 0; corner < 3; ++corner)
            needles.vertices.emplace_back(
                place(random), 1e-5 * place(random), 1e-5 * place(random));
        needles.triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    const OpeningLids lids = lidsFor(needles, {.widest = 0.3, .seam = 1e-4});
    EXPECT_EQ(lids.count, 0);
    EXPECT_EQ(std::count(lids.isSheet.begin(), lids.isSheet.end(), true), 0);
}

TEST(PointClusters, LeavesLeadersApart) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(-1, 1);
    std::vector<DVec3> points;
    for (int i = 0; i < 3000; ++i)
        points.emplace_back(place(random), place(random), 0.1 * place(random));
    std::vector<std::uint32_t> all(points.size());
    std::iota(all.begin(), all.end(), 0u);
    const std::vector<std::uint32_t> leaders = clusterPoints(points, all, 0.1);
    for (std::uint32_t i = 0; i < points.size(); ++i) {
        ASSERT_LE(glm::distance(points[i], points[leaders[i]]), 0.1);
        ASSERT_EQ(leaders[leaders[i]], leaders[i]);
        ASSERT_LE(leaders[i], i);
        for (std::uint32_t j = 0; j < leaders[i]; ++j) {
            if (leaders[j] == j) {
                ASSERT_GT(glm::distance(points[i], points[j]), 0.1);
            }
        }
    }
}

TEST(PlanarWidth, IsTheLeastOfAllDirections) {
    EXPECT_EQ(planarWidth({}), 0);
    EXPECT_EQ(planarWidth({{1, 1}}), 0);
    EXPECT_EQ(planarWidth({{0, 0}, {1, 1}, {3, 3}}), 0);
    EXPECT_NEAR(planarWidth({{0, 0}, {1, 0}, {0.5, std::sqrt(0.75)}}), std::sqrt(0.75), 1e-15);
    // A rectangle of 5 × 0.2 that is turned by 0.3, with points along its sides.
    std::vector<glm::dvec2> rectangle;
    for (int i = 0; i <= 1000; ++i) {
        for (const double y : {0.0, 0.2}) {
            const double x = 0.005 * i;
            rectangle.emplace_back(
                x * std::cos(0.3) - y * std::sin(0.3), x * std::sin(0.3) + y * std::cos(0.3));
        }
    }
    EXPECT_NEAR(planarWidth(rectangle), 0.2, 1e-9);
    std::vector<glm::dvec2> circle;
    for (int i = 0; i < 10'000; ++i)
        circle.emplace_back(
            std::cos(i * std::numbers::pi / 5000), std::sin(i * std::numbers::pi / 5000));
    EXPECT_NEAR(planarWidth(circle), 2, 1e-5);
}

} // namespace ostrella
