#include "Solver/Surface/Coarsening.h"

#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/SurfaceChecks.h"
#include "Solver/Surface/TriangleShape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

/// The surface of the box (0, 0, 0) to `size`, each side cut into squares of edge 1 and those in
/// two, with shared vertices; `place` moves each corner.
template <class Place>
IndexedSurface fineBox(int x, int y, int z, Place&& place) {
    IndexedSurface surface;
    std::map<std::array<int, 3>, std::uint32_t> numbers;
    const auto vertex = [&](const std::array<int, 3>& at) {
        const auto [found, isNew] =
            numbers.try_emplace(at, static_cast<std::uint32_t>(surface.vertices.size()));
        if (isNew) {
            surface.vertices.push_back(place(DVec3(at[0], at[1], at[2])));
        }
        return found->second;
    };
    const std::array<int, 3> size{x, y, z};
    for (int axis = 0; axis < 3; ++axis) {
        const int u = (axis + 1) % 3;
        const int v = (axis + 2) % 3;
        for (const int side : {0, size[axis]}) {
            for (int i = 0; i < size[u]; ++i) {
                for (int j = 0; j < size[v]; ++j) {
                    const auto corner = [&](int di, int dj) {
                        std::array<int, 3> at{};
                        at[axis] = side;
                        at[u] = i + di;
                        at[v] = j + dj;
                        return vertex(at);
                    };
                    std::array<std::uint32_t, 4> q{
                        corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)};
                    if (side == 0) {
                        std::swap(q[1], q[3]);
                    }
                    surface.triangles.push_back({q[0], q[1], q[2]});
                    surface.triangles.push_back({q[0], q[2], q[3]});
                }
            }
        }
    }
    return surface;
}

struct Lengths {
    double shortest = 0;
    double longest = 0;
};

Lengths edgeLengths(const IndexedSurface& surface) {
    std::vector<double> lengths;
    for (const Triangle& t : surface.triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            lengths.push_back(
                glm::distance(surface.vertices[t[i]], surface.vertices[t[(i + 1) % 3]]));
        }
    }
    return {std::ranges::min(lengths), std::ranges::max(lengths)};
}

double worstQuality(const IndexedSurface& surface) {
    double worst = 1;
    for (const Triangle& t : surface.triangles) {
        worst = std::min(worst, TriangleShape::quality(surface.vertices[t[0]],
                                    surface.vertices[t[1]], surface.vertices[t[2]]));
    }
    return worst;
}

constexpr EmbeddedMesh::Clearance clearance{.distance = 1e-3, .angleCosine = 0.999};

TEST(Coarsening, ABoxKeepsItsShapeToTheLastCorner) {
    const IndexedSurface fine = fineBox(20, 12, 8, [](const DVec3& p) { return p; });
    EmbeddedMesh mesh(fine, 3, clearance);
    const TriangleTree tree(fine);
    const std::vector<double> lifts(fine.vertices.size(), 0.0);
    Coarsening coarsening(
        mesh, tree, fine.vertices, lifts, {.leastEdge = 4, .mostEdge = 8, .tolerance = 0.2});
    coarsening.collapse({});
    for (int round = 0; round < 2; ++round) {
        coarsening.flip({});
        coarsening.relax({});
    }
    const IndexedSurface coarse = mesh.surface();
    EXPECT_LT(coarse.triangles.size(), fine.triangles.size() / 8);
    EXPECT_NEAR(signedVolume(coarse), 20 * 12 * 8, 0.005 * 20 * 12 * 8);
    EXPECT_LT(greatestDistance(coarse, tree, 0.5), 0.2);
    EXPECT_LT(greatestDistance(fine, TriangleTree(coarse), 0.5), 0.2);
    EXPECT_GE(edgeLengths(coarse).shortest, 2.0);
    EXPECT_LE(edgeLengths(coarse).longest, 8.0);
    EXPECT_GT(worstQuality(coarse), 0.3);
    EXPECT_FALSE(test::hasContacts(mesh));
}

TEST(Coarsening, ACurvedSurfaceStaysWithinTheTolerance) {
    // A cube's grid pushed out to a ball of radius 10.
    const IndexedSurface fine =
        fineBox(16, 16, 16, [](const DVec3& p) { return glm::normalize(p - DVec3(8)) * 10.0; });
    EmbeddedMesh mesh(fine, 3, clearance);
    const TriangleTree tree(fine);
    const std::vector<double> lifts(fine.vertices.size(), 0.0);
    Coarsening coarsening(
        mesh, tree, fine.vertices, lifts, {.leastEdge = 100, .mostEdge = 200, .tolerance = 0.3});
    coarsening.collapse({});
    const IndexedSurface coarse = mesh.surface();
    EXPECT_LT(coarse.triangles.size(), 500U);
    EXPECT_LT(greatestDistance(fine, TriangleTree(coarse), 1), 0.45);
    EXPECT_LT(greatestDistance(coarse, tree, 0.3), 0.45);
    // Nothing is asked for but the tolerance: a facet of edge e is e² / (6 R) off in its middle.
    EXPECT_GT(edgeLengths(coarse).longest, std::sqrt(0.3 * 6 * 10) * 0.8);
}

TEST(Coarsening, AThinPlateNeverClosesOnItself) {
    const IndexedSurface fine =
        fineBox(24, 24, 1, [](const DVec3& p) { return DVec3(p.x, p.y, p.z * 0.02); });
    EmbeddedMesh mesh(fine, 3, {.distance = 1e-4, .angleCosine = 0.99999});
    ASSERT_FALSE(test::hasContacts(mesh));
    const TriangleTree tree(fine);
    const std::vector<double> lifts(fine.vertices.size(), 0.0);
    // The tolerance is ten times the plate's thickness.
    Coarsening coarsening(
        mesh, tree, fine.vertices, lifts, {.leastEdge = 5, .mostEdge = 10, .tolerance = 0.2});
    coarsening.collapse({});
    coarsening.flip({});
    coarsening.relax({});
    coarsening.collapseLoosely(2, 0.2, {});
    EXPECT_FALSE(test::hasContacts(mesh));
    const IndexedSurface coarse = mesh.surface();
    EXPECT_LT(coarse.triangles.size(), 400U);
    EXPECT_GT(signedVolume(coarse), 0);
}

TEST(Coarsening, VerticesThatKeptAwaySettleWhereThereIsRoom) {
    // One vertex in the middle of the top stands out by 1; the model has it in the plane.
    const IndexedSurface model = fineBox(6, 6, 6, [](const DVec3& p) { return p; });
    IndexedSurface raised = model;
    const auto top = static_cast<std::size_t>(
        std::ranges::find(raised.vertices, DVec3(3, 3, 6)) - raised.vertices.begin());
    ASSERT_LT(top, raised.vertices.size());
    raised.vertices[top].z = 7;
    EmbeddedMesh mesh(raised, 2, clearance);
    const TriangleTree tree(model);
    const std::vector<double> lifts(model.vertices.size(), 0.0);
    Coarsening coarsening(
        mesh, tree, model.vertices, lifts, {.leastEdge = 1.5, .mostEdge = 4, .tolerance = 0.1});
    coarsening.settle({});
    EXPECT_EQ(mesh.position(static_cast<std::uint32_t>(top)), DVec3(3, 3, 6));
}

TEST(Coarsening, SheetsKeepTheirDistanceFromTheModel) {
    // Both sides of a sheet at z = 0.5, half a unit off it.
    const IndexedSurface fine = fineBox(12, 12, 1, [](const DVec3& p) { return p; });
    IndexedSurface sheet;
    sheet.vertices = {{0, 0, 0.5}, {12, 0, 0.5}, {12, 12, 0.5}, {0, 12, 0.5}};
    sheet.triangles = {{0, 1, 2}, {0, 2, 3}};
    EmbeddedMesh mesh(fine, 3, clearance);
    const TriangleTree tree(sheet);
    const std::vector<double> lifts(fine.vertices.size(), 0.5);
    Coarsening coarsening(
        mesh, tree, fine.vertices, lifts, {.leastEdge = 3, .mostEdge = 6, .tolerance = 0.1});
    coarsening.collapse({});
    coarsening.settle({});
    coarsening.relax({});
    const IndexedSurface coarse = mesh.surface();
    EXPECT_LT(coarse.triangles.size(), fine.triangles.size() / 3);
    EXPECT_NEAR(signedVolume(coarse), 144, 4);
}

TEST(Coarsening, ACancelIsSeen) {
    const IndexedSurface fine = fineBox(20, 20, 20, [](const DVec3& p) { return p; });
    EmbeddedMesh mesh(fine, 3, clearance);
    const TriangleTree tree(fine);
    const std::vector<double> lifts(fine.vertices.size(), 0.0);
    Coarsening coarsening(
        mesh, tree, fine.vertices, lifts, {.leastEdge = 4, .mostEdge = 8, .tolerance = 0.2});
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(coarsening.collapse(source.token()), CancellationError);
    EXPECT_THROW(coarsening.relax(source.token()), CancellationError);
    EXPECT_THROW(coarsening.flip(source.token()), CancellationError);
}

} // namespace

} // namespace ostrella
