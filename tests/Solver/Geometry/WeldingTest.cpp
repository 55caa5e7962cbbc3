#include "Solver/Geometry/Welding.h"

#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

using test::soup;

const float infinity = std::numeric_limits<float>::infinity();

/// The same by dictionaries, as plainly as it can be written.
struct PlainWeld {
    std::vector<Vec3> positions;
    std::vector<Vec3> sums;
    std::vector<std::uint32_t> indices;
    std::size_t openEdges = 0;

    PlainWeld(const TriangleMesh& mesh, float epsilon) {
        std::map<std::tuple<float, float, float>, std::uint32_t> known;
        std::map<std::pair<std::uint32_t, std::uint32_t>, int> uses;
        const float scale = 1.0F / epsilon;
        for (std::size_t i = 0; i < mesh.positions().size(); ++i) {
            const Vec3& p = mesh.positions()[i];
            const std::size_t first = i - i % 3;
            const Vec3 normal = cross(mesh.positions()[first + 1] - mesh.positions()[first],
                mesh.positions()[first + 2] - mesh.positions()[first]);
            const auto [entry, isNew] = known.try_emplace(
                {std::round(scale * p.x), std::round(scale * p.y), std::round(scale * p.z)},
                static_cast<std::uint32_t>(known.size()));
            if (isNew) {
                positions.push_back(p);
                sums.push_back(normal);
            } else {
                sums[entry->second] += normal;
            }
            indices.push_back(entry->second);
        }
        for (std::size_t i = 0; i < indices.size(); ++i) {
            const auto ends = std::minmax(indices[i], indices[i % 3 == 2 ? i - 2 : i + 1]);
            if (ends.first != ends.second)
                ++uses[ends];
        }
        for (const auto& [edge, count] : uses)
            openEdges += count == 1 ? 1 : 0;
    }
};

void expectPlainWeld(const TriangleMesh& mesh, float epsilon) {
    const PlainWeld plain(mesh, epsilon);
    const auto mine = welded(mesh, epsilon);
    ASSERT_EQ(mine.positions, SharedArray(plain.positions));
    ASSERT_EQ(mine.indices, SharedArray(plain.indices));
    ASSERT_EQ(mine.normals.size(), plain.sums.size());
    for (std::size_t i = 0; i < plain.sums.size(); ++i) {
        const float squared = squaredLength(plain.sums[i]);
        const Vec3 expected = squared > 1e-12F ? plain.sums[i] / std::sqrt(squared) : Vec3(0, 1, 0);
        ASSERT_EQ(mine.normals[i], expected) << i;
    }
    EXPECT_EQ(openEdgeCount(mesh, epsilon), plain.openEdges);
}

TEST(Welding, AnEmptyMeshGivesEmptyArrays) {
    EXPECT_EQ(welded(TriangleMesh()), WeldedMesh());
    EXPECT_EQ(openEdgeCount(TriangleMesh()), 0U);
}

TEST(Welding, ASingleTriangleHasThreeOpenEdges) {
    EXPECT_EQ(openEdgeCount(soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})), 3U);
}

TEST(Welding, AClosedTetrahedronWeldsToFourVertices) {
    const auto mesh = welded(test::tetrahedron());
    EXPECT_EQ(mesh.positions, SharedArray<Vec3>({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}}));
    EXPECT_EQ(mesh.indices, SharedArray<std::uint32_t>({0, 1, 2, 0, 2, 3, 0, 3, 1, 2, 1, 3}));
    EXPECT_EQ(openEdgeCount(test::tetrahedron()), 0U);
}

TEST(Welding, VertexNormalsAreWeightedByArea) {
    // At the origin three right-angled facets of the same area meet.
    const float third = -1.0F / std::sqrt(3.0F);
    const auto normal = welded(test::tetrahedron()).normals[0];
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(normal[axis], third, 1e-6F);
    // A facet of area 2 upwards and one of area 1/2 to the side: normals 4 to 1.
    const auto two =
        welded(soup({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
    EXPECT_NEAR(two.normals[0].z / two.normals[0].x, 4.0F, 1e-5F);
}

TEST(Welding, CopiesAFewUlpApartAreOneVertex) {
    const float near = std::nextafter(std::nextafter(1.0F, 2.0F), 2.0F);
    const auto mesh =
        welded(soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {near, 0, 0}, {1, 1, 0}, {0, near, 0}}));
    EXPECT_EQ(mesh.positions.size(), 4U);
    EXPECT_EQ(mesh.positions[1], Vec3(1, 0, 0)); // the first stays
}

TEST(Welding, PointsEitherSideOfARoundingBoundaryStayApart) {
    const auto mesh = welded(soup({{0.49F, 0, 0}, {0.51F, 0, 0}, {5, 5, 0}}), 1.0F);
    EXPECT_EQ(mesh.positions.size(), 3U);
}

TEST(Welding, CoincidentPointsBecomeOneVertexAndKeepTheirIndices) {
    // Extent 0, so the step is a billionth, and 1 scaled by it still has a key.
    const auto mesh = welded(soup({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
    EXPECT_EQ(mesh.positions.size(), 1U);
    EXPECT_EQ(mesh.indices, SharedArray<std::uint32_t>({0, 0, 0}));
    EXPECT_EQ(mesh.normals[0], Vec3(0, 1, 0));
    EXPECT_EQ(openEdgeCount(soup({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}})), 0U);
}

TEST(Welding, ATriangleWithTwoEqualCornersUsesItsEdgeTwice) {
    EXPECT_EQ(openEdgeCount(soup({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}})), 0U);
}

TEST(Welding, AnEdgeOfThreeFacetsIsNotOpen) {
    const auto fan = soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {0, 0, 1},
        {0, 0, 0}, {1, 0, 0}, {0, -1, 0}});
    EXPECT_EQ(openEdgeCount(fan), 6U);
}

TEST(Welding, OrientationPlaysNoPartInOpenEdges) {
    EXPECT_EQ(
        openEdgeCount(soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {1, -1, 0}})),
        4U);
}

TEST(Welding, ANormalThatCancelsOutIsPlusY) {
    const auto mesh =
        welded(soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {0, 1, 0}, {1, 0, 0}}));
    for (const Vec3& normal : mesh.normals)
        EXPECT_EQ(normal, Vec3(0, 1, 0));
}

TEST(Welding, TheMeshesOwnNormalsPlayNoPart) {
    const auto cube = test::unitCube();
    const TriangleMesh other(cube.positions(), std::vector<Vec3>(36, Vec3(7, 7, 7)));
    EXPECT_EQ(welded(other), welded(cube));
}

TEST(Welding, AgreesWithDictionariesOnTangledBodies) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        expectPlainWeld(test::tangle(1, 3, seed), 0.25F);
        expectPlainWeld(test::tangle(65, 40, seed), 0.25F);
        expectPlainWeld(test::tangle(700, 300, seed), 0.25F);
        expectPlainWeld(test::tangle(700, 1000, seed), 3.0F);
    }
}

TEST(Welding, AgreesWithDictionariesWhereTheTableHasToGrow) {
    expectPlainWeld(test::tangle(20000, 60000, 1), 0.25F);
}

TEST(Welding, AFanOfManyEdgesAtOneVertexIsCountedRight) {
    std::vector<Vec3> corners;
    constexpr int blades = 5000;
    for (int i = 0; i < blades; ++i) {
        corners.emplace_back(0, 0, 0);
        corners.emplace_back(i + 1, 1, 0);
        corners.emplace_back(i + 2, 1, 0);
    }
    // The outer sides, and the first and last spoke.
    EXPECT_EQ(openEdgeCount(soup(corners), 0.25F), static_cast<std::size_t>(blades) + 2);
}

TEST(WeldingDeathTest, AVertexWithoutAKeyEndsTheProcess) {
    const auto far = test::moved(test::unitCube(), Vec3(30000, 0, 0));
    EXPECT_DEATH(welded(far), "too far from the origin");
    EXPECT_DEATH(openEdgeCount(far), "too far from the origin");
    EXPECT_DEATH(welded(soup({{0, 0, 0}, {1, 0, 0}, {0, infinity, 0}})), "not finite");
}

} // namespace

} // namespace ostrella
