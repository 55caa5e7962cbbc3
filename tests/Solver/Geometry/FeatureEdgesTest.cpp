#include "Solver/Geometry/FeatureEdges.h"

#include "Solver/Geometry/TestMeshes.h"
#include "Solver/Geometry/Welding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace ostrella {

namespace {

FeatureEdges edgesOf(const TriangleMesh& mesh, float angle = 30.0F) {
    return FeatureEdges::extract(welded(mesh), angle);
}

WeldedMesh indexed(std::vector<Vec3> points, std::vector<std::uint32_t> indices) {
    std::vector<Vec3> normals(points.size(), Vec3(0, 1, 0));
    return {std::move(points), std::move(normals), std::move(indices)};
}

void expectCounts(const FeatureEdges& edges, std::size_t creases, std::size_t boundaries,
    std::size_t nonManifold) {
    EXPECT_EQ(edges.creaseCount, creases);
    EXPECT_EQ(edges.boundaryCount, boundaries);
    EXPECT_EQ(edges.nonManifoldCount, nonManifold);
    EXPECT_EQ(edges.positions.size(), 2 * (creases + boundaries + nonManifold));
}

/// The same by a dictionary and a list of records, one directed edge after the other.
FeatureEdges plainExtraction(const WeldedMesh& mesh, float angle) {
    struct Record {
        std::uint32_t a, b;
        int faces;
        bool firstForward;
        std::optional<Vec3> firstNormal;
        bool sharp;
    };
    const float threshold = std::cos(angle * 3.1415925F / 180.0F);
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> places;
    std::vector<Record> records;
    for (std::size_t first = 0; first + 3 <= mesh.indices.size(); first += 3) {
        const Vec3& p = mesh.positions[mesh.indices[first]];
        const Vec3 c = cross(mesh.positions[mesh.indices[first + 1]] - p,
            mesh.positions[mesh.indices[first + 2]] - p);
        const float squared = squaredLength(c);
        std::optional<Vec3> normal;
        if (squared > 0.0F && std::isfinite(squared))
            normal = c / std::sqrt(squared);
        for (std::size_t side = 0; side < 3; ++side) {
            const auto from = mesh.indices[first + side];
            const auto to = mesh.indices[first + (side + 1) % 3];
            if (from == to)
                continue;
            const auto [place, isNew] = places.try_emplace(std::minmax(from, to), records.size());
            if (isNew) {
                records.push_back(
                    {std::min(from, to), std::max(from, to), 1, from < to, normal, false});
                continue;
            }
            Record& record = records[place->second];
            ++record.faces;
            if (!normal)
                continue;
            const Vec3 n = (from < to) == record.firstForward ? -*normal : *normal;
            if (!record.firstNormal)
                record.firstNormal = n;
            else if (dot(n, *record.firstNormal) < threshold)
                record.sharp = true;
        }
    }
    FeatureEdges result;
    std::vector<Vec3> lines;
    for (const Record& record : records) {
        if (record.faces == 2 && !record.sharp)
            continue;
        ++(record.faces == 2    ? result.creaseCount
            : record.faces == 1 ? result.boundaryCount
                                : result.nonManifoldCount);
        lines.push_back(mesh.positions[record.a]);
        lines.push_back(mesh.positions[record.b]);
    }
    result.positions = lines;
    return result;
}

TEST(FeatureEdges, AnEmptyMeshHasNone) {
    expectCounts(FeatureEdges::extract(WeldedMesh(), 30), 0, 0, 0);
    expectCounts(FeatureEdges::empty, 0, 0, 0);
    expectCounts(FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}}, {0, 1}), 30), 0, 0, 0);
}

TEST(FeatureEdges, ASingleTriangleHasThreeBoundaries) {
    const auto edges =
        FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 2, 1}), 30);
    expectCounts(edges, 0, 3, 0);
    // In the order of the sides, each from the smaller to the larger index.
    EXPECT_EQ(edges.positions,
        SharedArray<Vec3>({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}}));
}

TEST(FeatureEdges, ACubeHasTwelveCreasesAndNoDiagonals) {
    const auto edges = edgesOf(test::unitCube());
    expectCounts(edges, 12, 0, 0);
    for (std::size_t i = 0; i < edges.positions.size(); i += 2)
        EXPECT_EQ(squaredLength(edges.positions[i] - edges.positions[i + 1]), 1.0F);
}

TEST(FeatureEdges, ACubeHasNoCreasesAt95Degrees) {
    expectCounts(edgesOf(test::unitCube(), 95), 0, 0, 0);
}

TEST(FeatureEdges, AFlatQuadHasFourBoundaries) {
    expectCounts(FeatureEdges::extract(
                     indexed({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 2, 3}), 30),
        0, 4, 0);
}

TEST(FeatureEdges, CoplanarFacesWoundAgainstEachOtherMakeNoCrease) {
    expectCounts(FeatureEdges::extract(
                     indexed({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 3, 2}), 30),
        0, 4, 0);
}

TEST(FeatureEdges, AFoldBackOnItselfIsSharpInEitherWinding) {
    const std::vector<Vec3> points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5F, 1, 0.01F}};
    expectCounts(FeatureEdges::extract(indexed(points, {0, 1, 2, 1, 0, 3}), 30), 1, 4, 0);
    expectCounts(FeatureEdges::extract(indexed(points, {0, 1, 2, 0, 1, 3}), 30), 1, 4, 0);
}

TEST(FeatureEdges, AFoldOfExactlyTheThresholdIsNotSharp) {
    // At angle 0 the threshold is 1, and the product of two equal unit normals along an axis too.
    const auto flat = indexed({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 2, 3});
    expectCounts(FeatureEdges::extract(flat, 0), 0, 4, 0);
    const auto bent = indexed({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0.01F}}, {0, 1, 2, 0, 2, 3});
    expectCounts(FeatureEdges::extract(bent, 0), 1, 4, 0);
}

TEST(FeatureEdges, ThreeFacesAtAnEdgeAreNonManifold) {
    const auto edges =
        FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}},
                                  {0, 1, 2, 1, 0, 3, 0, 1, 4}),
            30);
    expectCounts(edges, 0, 6, 1);
    EXPECT_EQ(edges.positions[0], Vec3(0, 0, 0));
    EXPECT_EQ(edges.positions[1], Vec3(1, 0, 0));
}

TEST(FeatureEdges, AFaceOfNoAreaMakesNoCrease) {
    expectCounts(FeatureEdges::extract(
                     indexed({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}}, {0, 1, 2, 1, 0, 3}), 30),
        0, 4, 0);
}

TEST(FeatureEdges, ATriangleWithARepeatedIndexAddsItsOtherEdgesOnly) {
    const auto edges = FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}}, {0, 0, 1}), 30);
    expectCounts(edges, 0, 0, 0); // one edge, used twice, and no normal to be sharp by
    const auto beside =
        FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1, 0, 1, 2}), 30);
    expectCounts(beside, 0, 2, 1);
}

TEST(FeatureEdges, AgreesWithADictionaryOnTangledBodies) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        for (const auto& body : {test::tangle(40, 40, seed), test::tangle(3000, 200, seed),
                 test::tangle(400, 12, seed)}) {
            const auto mesh = welded(body, 0.25F);
            const auto mine = FeatureEdges::extract(mesh, 60);
            const auto plain = plainExtraction(mesh, 60);
            ASSERT_EQ(mine.positions, plain.positions);
            ASSERT_EQ(mine.creaseCount, plain.creaseCount);
            ASSERT_EQ(mine.boundaryCount, plain.boundaryCount);
            ASSERT_EQ(mine.nonManifoldCount, plain.nonManifoldCount);
        }
    }
}

TEST(FeatureEdges, TangledBodiesHaveEdgesOfEveryKind) {
    const auto edges = FeatureEdges::extract(welded(test::tangle(3000, 200, 1), 0.25F), 60);
    EXPECT_GT(edges.creaseCount, 0U);
    EXPECT_GT(edges.boundaryCount, 0U);
    EXPECT_GT(edges.nonManifoldCount, 0U);
}

TEST(FeatureEdgesDeathTest, AnIndexOutOfRangeEndsTheProcess) {
    EXPECT_DEATH(FeatureEdges::extract(indexed({{0, 0, 0}, {1, 0, 0}}, {0, 1, 2}), 30),
        "a vertex that is not there");
}

} // namespace

} // namespace ostrella
