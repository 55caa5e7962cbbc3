#include "Rendering/CreasedMesh.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <set>

namespace ostrella {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// Welded vertices with normals that say nothing, so that all others are the mesh's own.
struct Welded {
    std::vector<Vec4> vertices;
    std::vector<std::uint32_t> indices;

    std::uint32_t add(const Vec3& position) {
        vertices.emplace_back(position, 1.0F);
        vertices.emplace_back(0.0F, 0.0F, 0.0F, 0.0F);
        return static_cast<std::uint32_t>(vertices.size() / 2 - 1);
    }
    CreasedMesh creased() const { return CreasedMesh::of(vertices, indices); }
};

Vec3 positionOf(const CreasedMesh& mesh, std::size_t corner) {
    return Vec3(mesh.vertices[2 * mesh.indices[corner]]);
}
Vec3 normalOf(const CreasedMesh& mesh, std::size_t corner) {
    return Vec3(mesh.vertices[2 * mesh.indices[corner] + 1]);
}

/// Two unit squares that share the edge from (0, 0, 0) to (0, 0, 1): one in the plane y = 0 towards
/// −x, the other falling by an angle towards +x, `length` long.
Welded roof(double fallDegrees, float length = 1.0F) {
    const auto angle = static_cast<float>(fallDegrees * std::numbers::pi / 180);
    const Vec3 out(length * std::cos(angle), -length * std::sin(angle), 0);
    Welded w;
    const auto a = w.add({0, 0, 0});
    const auto b = w.add({0, 0, 1});
    const auto c = w.add({-1, 0, 0});
    const auto d = w.add({-1, 0, 1});
    const auto e = w.add(out);
    const auto f = w.add(out + Vec3(0, 0, 1));
    w.indices = {c, d, a, a, d, b, a, b, e, e, b, f};
    return w;
}

TEST(CreasedMesh, aSharpEdgeKeepsBothPanelsFlat) {
    const CreasedMesh mesh = roof(31).creased();
    for (std::size_t corner = 0; corner < 6; ++corner)
        EXPECT_NEAR(glm::distance(normalOf(mesh, corner), Vec3(0, 1, 0)), 0, 1e-6) << corner;
    const double angle = 31 * std::numbers::pi / 180;
    const Vec3 falling(std::sin(angle), std::cos(angle), 0);
    for (std::size_t corner = 6; corner < 12; ++corner)
        EXPECT_NEAR(glm::distance(normalOf(mesh, corner), falling), 0, 1e-6) << corner;
    // The edge's two ends stand there twice, nothing else does.
    EXPECT_EQ(mesh.vertices.size() / 2, 8U);
}

TEST(CreasedMesh, aGentleBendIsSmooth) {
    const CreasedMesh mesh = roof(29).creased();
    EXPECT_EQ(mesh.vertices.size() / 2, 6U);
    const double half = 14.5 * std::numbers::pi / 180;
    // At the end (0, 0, 0) the flat panel has two triangles and the falling one one, so it is at
    // (0, 0, 1) the other way round; together the edge looks halfway between.
    const Vec3 sum = normalOf(mesh, 2) + normalOf(mesh, 5);
    EXPECT_NEAR(
        glm::distance(glm::normalize(sum), Vec3(std::sin(half), std::cos(half), 0)), 0, 0.2);
    EXPECT_GT(normalOf(mesh, 2).x, 0.1F);
}

TEST(CreasedMesh, largeFacesOutweighTheirRoundedEdges) {
    // A strip of a hundredth beside the panel: the panel's border looks up nearly as its middle.
    const CreasedMesh mesh = roof(15, 0.01F).creased();
    for (std::size_t corner = 0; corner < 6; ++corner)
        EXPECT_GT(normalOf(mesh, corner).y, std::cos(0.5 * std::numbers::pi / 180)) << corner;
}

TEST(CreasedMesh, trianglesStayWhereTheyAre) {
    const Welded w = roof(80);
    const CreasedMesh mesh = w.creased();
    ASSERT_EQ(mesh.indices.size(), w.indices.size());
    for (std::size_t corner = 0; corner < w.indices.size(); ++corner)
        EXPECT_EQ(positionOf(mesh, corner), Vec3(w.vertices[2 * w.indices[corner]])) << corner;
}

TEST(CreasedMesh, aCubeHasThreeNormalsAtEachCorner) {
    Welded w;
    for (int i = 0; i < 8; ++i)
        w.add({i & 1, (i >> 1) & 1, (i >> 2) & 1});
    w.indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4, 2, 6, 3, 3, 6, 7, 0, 4, 2, 2,
        4, 6, 1, 3, 5, 3, 7, 5};
    const CreasedMesh mesh = w.creased();
    EXPECT_EQ(mesh.vertices.size() / 2, 24U);
    for (std::size_t corner = 0; corner < w.indices.size(); ++corner) {
        const Vec3 n = normalOf(mesh, corner);
        EXPECT_NEAR(std::abs(n.x) + std::abs(n.y) + std::abs(n.z), 1, 1e-6);
        // Outwards: a cube's faces look away from its middle.
        EXPECT_GT(glm::dot(n, positionOf(mesh, corner) - Vec3(0.5F)), 0.4F);
    }
}

TEST(CreasedMesh, facesOfNoSizeHaveNoSay) {
    Welded w = roof(0);
    const auto far = w.add({5, 0, 0});
    w.indices.insert(w.indices.end(), {0, far, 0, 1, 1, 1});
    const CreasedMesh mesh = w.creased();
    EXPECT_EQ(mesh.vertices.size() / 2, 7U);
    for (std::size_t corner = 0; corner < 12; ++corner)
        EXPECT_NEAR(glm::distance(normalOf(mesh, corner), Vec3(0, 1, 0)), 0, 1e-6);
}

TEST(CreasedMesh, givenNormalsRemainWhereNoFaceHasOne) {
    Welded w;
    w.vertices = {
        {0, 0, 0, 1}, {0, 0, 1, 0}, {nan, 0, 0, 1}, {0, 1, 0, 0}, {1, 1, 1, 1}, {1, 0, 0, 0}};
    w.indices = {0, 1, 2};
    const CreasedMesh mesh = w.creased();
    EXPECT_EQ(normalOf(mesh, 0), Vec3(0, 0, 1));
    EXPECT_EQ(normalOf(mesh, 1), Vec3(0, 1, 0));
    EXPECT_EQ(normalOf(mesh, 2), Vec3(1, 0, 0));
    EXPECT_TRUE(CreasedMesh::of({}, {}).vertices.empty());
}

TEST(CreasedMesh, worksForBodiesOfAnySize) {
    for (const float scale : {1e-6F, 1e6F}) {
        Welded w = roof(90);
        for (std::size_t v = 0; v < w.vertices.size(); v += 2)
            w.vertices[v] = Vec4(Vec3(w.vertices[v]) * scale, 1.0F);
        const CreasedMesh mesh = w.creased();
        EXPECT_EQ(mesh.vertices.size() / 2, 8U) << scale;
        EXPECT_NEAR(normalOf(mesh, 0).y, 1, 1e-6) << scale;
    }
}

TEST(CreasedMesh, aSpikeOfManyFacetsIsSettledSoon) {
    Welded w;
    const auto tip = w.add({0, 1, 0});
    constexpr std::uint32_t facets = 20000;
    for (std::uint32_t i = 0; i < facets; ++i) {
        const double angle = 2 * std::numbers::pi * i / facets;
        w.add({static_cast<float>(std::cos(angle)), 0, static_cast<float>(std::sin(angle))});
    }
    for (std::uint32_t i = 0; i < facets; ++i)
        w.indices.insert(w.indices.end(), {tip, 1 + (i + 1) % facets, 1 + i});
    const CreasedMesh mesh = w.creased();
    for (std::size_t corner = 0; corner < w.indices.size(); corner += 3)
        ASSERT_NEAR(normalOf(mesh, corner).y, std::sqrt(0.5), 1e-3);
}

} // namespace
} // namespace ostrella
