#include "Solver/Surface/EmbeddedMesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr EmbeddedMesh::Clearance clearance{.distance = 1e-3, .angleCosine = 0.9994};

/// Corners at ±1 on the axes: 6 vertices (+x, −x, +y, −y, +z, −z), 8 facets.
IndexedSurface octahedron() {
    IndexedSurface surface;
    surface.vertices = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    surface.triangles = {
        {0, 2, 4}, {2, 1, 4}, {1, 3, 4}, {3, 0, 4}, {2, 0, 5}, {1, 2, 5}, {3, 1, 5}, {0, 3, 5}};
    return surface;
}

/// The same with each facet cut in four, and again: 66 vertices, 128 facets, still flat sides.
IndexedSurface fineOctahedron() {
    IndexedSurface surface = octahedron();
    for (int round = 0; round < 2; ++round) {
        IndexedSurface fine;
        fine.vertices = surface.vertices;
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> middles;
        const auto middle = [&](std::uint32_t a, std::uint32_t b) {
            const auto [place, isNew] = middles.try_emplace(
                std::minmax(a, b), static_cast<std::uint32_t>(fine.vertices.size()));
            if (isNew) {
                fine.vertices.push_back((surface.vertices[a] + surface.vertices[b]) * 0.5);
            }
            return place->second;
        };
        for (const Triangle& t : surface.triangles) {
            const std::uint32_t ab = middle(t[0], t[1]);
            const std::uint32_t bc = middle(t[1], t[2]);
            const std::uint32_t ca = middle(t[2], t[0]);
            fine.triangles.insert(fine.triangles.end(),
                {{t[0], ab, ca}, {t[1], bc, ab}, {t[2], ca, bc}, {ab, bc, ca}});
        }
        surface = fine;
    }
    return surface;
}

/// Two of a surface, the second moved.
IndexedSurface withCopy(IndexedSurface surface, const DVec3& by) {
    const auto count = static_cast<std::uint32_t>(surface.vertices.size());
    const std::size_t triangles = surface.triangles.size();
    for (std::uint32_t i = 0; i < count; ++i) {
        surface.vertices.push_back(surface.vertices[i] + by);
    }
    for (std::size_t i = 0; i < triangles; ++i) {
        const Triangle t = surface.triangles[i];
        surface.triangles.push_back({t[0] + count, t[1] + count, t[2] + count});
    }
    return surface;
}

std::uint32_t edgeBetween(const EmbeddedMesh& mesh, std::uint32_t from, std::uint32_t to) {
    std::uint32_t found = EmbeddedMesh::none;
    mesh.visitRing(from, [&](std::uint32_t edge) {
        if (mesh.to(edge) == to) {
            found = edge;
        }
    });
    return found;
}

/// Twins fit, rings close, and vertices − edges + facets is `euler`.
void expectSound(const EmbeddedMesh& mesh, int euler) {
    int triangles = 0;
    std::set<std::uint32_t> vertices;
    for (std::uint32_t edge = 0; edge < 3 * mesh.triangleCount(); ++edge) {
        if (!mesh.isTriangle(edge / 3)) {
            continue;
        }
        triangles += edge % 3 == 0 ? 1 : 0;
        vertices.insert(mesh.from(edge));
        const std::uint32_t twin = mesh.twin(edge);
        ASSERT_EQ(mesh.twin(twin), edge);
        ASSERT_EQ(mesh.from(twin), mesh.to(edge));
        ASSERT_EQ(mesh.to(twin), mesh.from(edge));
    }
    for (const std::uint32_t vertex : vertices) {
        ASSERT_TRUE(mesh.isVertex(vertex));
        std::set<std::uint32_t> ring;
        mesh.visitRing(vertex, [&](std::uint32_t edge) {
            EXPECT_EQ(mesh.from(edge), vertex);
            EXPECT_TRUE(ring.insert(mesh.to(edge)).second);
        });
    }
    EXPECT_EQ(static_cast<int>(vertices.size()) - triangles / 2, euler);
}

std::vector<std::uint32_t> all(const EmbeddedMesh& mesh) {
    std::vector<std::uint32_t> numbers(mesh.triangleCount());
    std::iota(numbers.begin(), numbers.end(), 0U);
    return numbers;
}

double volume(const IndexedSurface& surface) {
    double sum = 0;
    for (const Triangle& t : surface.triangles) {
        const DVec3& a = surface.vertices[t[0]];
        const DVec3& b = surface.vertices[t[1]];
        const DVec3& c = surface.vertices[t[2]];
        sum += a.x * (b.y * c.z - b.z * c.y) + a.y * (b.z * c.x - b.x * c.z) +
               a.z * (b.x * c.y - b.y * c.x);
    }
    return sum / 6;
}

TEST(EmbeddedMesh, ASoundSurfaceHasNoContacts) {
    EmbeddedMesh mesh(octahedron(), 0.5, clearance);
    expectSound(mesh, 2);
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
    EXPECT_EQ(mesh.valence(0), 4U);
}

TEST(EmbeddedMeshDeathTest, AnOpenOrTwistedSurfaceEndsTheProcess) {
    IndexedSurface open = octahedron();
    open.triangles.pop_back();
    EXPECT_DEATH(EmbeddedMesh(open, 0.5, clearance), "closed, manifold");
    IndexedSurface twisted = octahedron();
    std::swap(twisted.triangles[0][0], twisted.triangles[0][1]);
    EXPECT_DEATH(EmbeddedMesh(twisted, 0.5, clearance), "closed, manifold");
}

TEST(EmbeddedMesh, AVertexMovesWhereThereIsRoom) {
    EmbeddedMesh mesh(octahedron(), 0.5, clearance);
    EXPECT_TRUE(mesh.tryMove(4, {0.1, 0.2, 2}));
    EXPECT_EQ(mesh.position(4), DVec3(0.1, 0.2, 2));
    // Through the side of the lower half, whose facets the upper ones would cut.
    EXPECT_FALSE(mesh.tryMove(4, {0.6, 0.6, -0.6}));
    EXPECT_EQ(mesh.position(4), DVec3(0.1, 0.2, 2));
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
}

TEST(EmbeddedMesh, OnePartDoesNotMoveThroughAnother) {
    EmbeddedMesh mesh(withCopy(octahedron(), {2.2, 0, 0}), 0.5, clearance);
    expectSound(mesh, 4);
    // The corners at x = 1 and x = 1.2 point at each other.
    EXPECT_TRUE(mesh.tryMove(0, {1.1, 0, 0}));
    EXPECT_FALSE(mesh.tryMove(0, {1.3, 0, 0}));
    EXPECT_FALSE(mesh.tryMove(0, {1.1995, 0, 0})); // nearer than the clearance
}

TEST(EmbeddedMesh, ContactsAreFoundAfterAForcedMove) {
    EmbeddedMesh mesh(withCopy(octahedron(), {2.2, 0, 0}), 0.5, clearance);
    const std::vector<std::uint32_t> vertices{0};
    const std::vector<DVec3> places{{1.5, 0, 0}};
    mesh.moveAnyway(vertices, places);
    const std::vector<std::uint32_t> contacts = mesh.contacts(all(mesh));
    // The four facets at the moved corner and the four at the corner that it ran into.
    EXPECT_EQ(contacts.size(), 8U);
    const std::vector<DVec3> back{{1, 0, 0}};
    mesh.moveAnyway(vertices, back);
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
}

TEST(EmbeddedMesh, CollapsingKeepsTheSurfaceClosed) {
    EmbeddedMesh mesh(fineOctahedron(), 0.2, clearance);
    expectSound(mesh, 2);
    int collapses = 0;
    for (std::uint32_t edge = 0; edge < 3 * mesh.triangleCount(); ++edge) {
        if (mesh.isTriangle(edge / 3) && mesh.mayCollapse(edge)) {
            const DVec3 place = mesh.position(mesh.to(edge));
            collapses += mesh.tryCollapse(edge, place) ? 1 : 0;
        }
    }
    EXPECT_GT(collapses, 20);
    expectSound(mesh, 2);
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
    const IndexedSurface rest = mesh.surface();
    EXPECT_EQ(rest.vertices.size(), 66U - static_cast<unsigned>(collapses));
    EXPECT_EQ(rest.triangles.size(), 128U - 2U * static_cast<unsigned>(collapses));
}

TEST(EmbeddedMesh, ATetrahedronIsAsCoarseAsItGets) {
    IndexedSurface surface;
    surface.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    surface.triangles = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    const EmbeddedMesh mesh(surface, 0.5, clearance);
    for (std::uint32_t edge = 0; edge < 12; ++edge) {
        EXPECT_FALSE(mesh.mayCollapse(edge));
    }
}

TEST(EmbeddedMesh, AWaistIsNotCutThrough) {
    // Two octahedra grown together at the facet (0, 2, 4), which is gone: its three edges are a
    // loop around the waist that bounds no facet. The second is the first in a mirror on that
    // facet.
    IndexedSurface waist = octahedron();
    waist.triangles.erase(waist.triangles.begin());
    const std::vector<Triangle> half = waist.triangles;
    const std::array<std::uint32_t, 6> mirrored{0, 6, 2, 7, 4, 8};
    for (const std::uint32_t vertex : {1U, 3U, 5U}) {
        waist.vertices.push_back(waist.vertices[vertex] + DVec3(4.0 / 3));
    }
    for (const Triangle& t : half) {
        waist.triangles.push_back({mirrored[t[1]], mirrored[t[0]], mirrored[t[2]]});
    }
    const EmbeddedMesh mesh(waist, 0.5, clearance);
    expectSound(mesh, 2);
    EXPECT_FALSE(mesh.mayCollapse(edgeBetween(mesh, 0, 2)));
    EXPECT_TRUE(mesh.mayCollapse(edgeBetween(mesh, 0, 3)));
}

TEST(EmbeddedMesh, AFlippedEdgeRunsBetweenTheOtherCorners) {
    IndexedSurface surface = octahedron();
    surface.vertices[4] = {0, 0, 0.5}; // flat enough on top to be turned over
    EmbeddedMesh mesh(surface, 0.5, clearance);
    // The edge from the top to +x lies between +y and −y.
    EXPECT_TRUE(mesh.tryFlip(edgeBetween(mesh, 4, 0)));
    expectSound(mesh, 2);
    EXPECT_NE(edgeBetween(mesh, 2, 3), EmbeddedMesh::none);
    EXPECT_EQ(edgeBetween(mesh, 4, 0), EmbeddedMesh::none);
    EXPECT_EQ(mesh.valence(4), 3U);
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
    // The top has three neighbours left, which a corner needs.
    EXPECT_FALSE(mesh.tryFlip(edgeBetween(mesh, 4, 1)));
}

TEST(EmbeddedMesh, SplittingChangesNoShape) {
    EmbeddedMesh mesh(octahedron(), 0.5, clearance);
    const std::uint32_t middle = mesh.split(edgeBetween(mesh, 0, 4));
    expectSound(mesh, 2);
    EXPECT_EQ(mesh.position(middle), DVec3(0.5, 0, 0.5));
    EXPECT_EQ(mesh.valence(middle), 4U);
    EXPECT_EQ(mesh.valence(0), 4U);
    EXPECT_EQ(mesh.valence(2), 5U);
    EXPECT_TRUE(mesh.contacts(all(mesh)).empty());
    const IndexedSurface surface = mesh.surface();
    EXPECT_EQ(surface.triangles.size(), 10U);
    EXPECT_NEAR(volume(surface), 4.0 / 3, 1e-12);
    // And back.
    EXPECT_TRUE(mesh.tryCollapse(edgeBetween(mesh, middle, 0), {1, 0, 0}));
    expectSound(mesh, 2);
    EXPECT_NEAR(volume(mesh.surface()), 4.0 / 3, 1e-12);
}

} // namespace

} // namespace ostrella
