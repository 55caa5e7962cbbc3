#include "MeasuredSurfaces.h"

#include "Bodies.h"
#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/SurfaceJudge.h"
#include "Solver/Surface/TriangleTree.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

namespace ostrella::bench {

namespace {

/// Of corners, three a facet; normals are of no use here.
TriangleMesh meshOf(std::vector<Vec3> corners) {
    std::vector<Vec3> normals(corners.size(), Vec3(0, 0, 1));
    return {std::move(corners), std::move(normals)};
}

MeasuredBody measured(TriangleMesh mesh, double volume) {
    const Vec3 size = mesh.boundingMax() - mesh.boundingMin();
    return {std::move(mesh), volume, 0.05F * std::max({size.x, size.y, size.z})};
}

MeasuredBody sound(const TriangleMesh& mesh) {
    return measured(mesh, signedVolume(surfaceOf(mesh)));
}

Vec3 onRing(int around, int along) {
    constexpr float turn = 2 * std::numbers::pi_v<float>;
    const float u = turn * static_cast<float>(around % 448) / 448;
    const float v = turn * static_cast<float>(along % 224) / 224;
    const float tube = 0.3F + 0.04F * std::cos(12 * u);
    const float radius = 1 + tube * std::cos(v);
    return {radius * std::cos(u), radius * std::sin(u), tube * std::sin(v)};
}

void addBox(std::vector<Vec3>& corners, const Vec3& half) {
    for (int axis = 0; axis < 3; ++axis) {
        for (const float side : {-1.0F, 1.0F}) {
            const auto corner = [&](float first, float second) {
                Vec3 sign;
                sign[axis] = side;
                sign[(axis + 1) % 3] = side * first;
                sign[(axis + 2) % 3] = second;
                return half * sign;
            };
            corners.insert(corners.end(), {corner(-1, -1), corner(1, -1), corner(1, 1)});
            corners.insert(corners.end(), {corner(-1, -1), corner(1, 1), corner(-1, 1)});
        }
    }
}

} // namespace

IndexedSurface surfaceOf(const TriangleMesh& mesh) {
    IndexedSurface surface;
    for (const Vec3& corner : mesh.positions())
        surface.vertices.emplace_back(corner);
    for (std::uint32_t i = 0; i < surface.vertices.size(); i += 3)
        surface.triangles.push_back({i, i + 1, i + 2});
    return surface;
}

const MeasuredBody& rippledRing() {
    static const MeasuredBody body = [] {
        std::vector<Vec3> corners;
        for (int i = 0; i < 448; ++i) {
            for (int j = 0; j < 224; ++j) {
                const Vec3 a = onRing(i, j);
                const Vec3 c = onRing(i + 1, j + 1);
                corners.insert(corners.end(), {a, onRing(i + 1, j), c, a, c, onRing(i, j + 1)});
            }
        }
        return sound(meshOf(std::move(corners)));
    }();
    return body;
}

const MeasuredBody& soundSphere() {
    static const MeasuredBody body = sound(sphere(4));
    return body;
}

const MeasuredBody& crossedBoxes() {
    static const MeasuredBody body = [] {
        std::vector<Vec3> corners;
        addBox(corners, {1, 0.2F, 0.2F});
        addBox(corners, {0.15F, 0.8F, 0.15F});
        addBox(corners, {0.25F, 0.25F, 0.6F});
        // Each by itself, less what two share, and what all three do.
        constexpr double volume = 0.32 + 0.144 + 0.3 - 0.036 - 0.08 - 0.045 + 0.036;
        return measured(meshOf(std::move(corners)), volume);
    }();
    return body;
}

void tell(benchmark::State& state, const TriangleMesh& surface, const MeasuredBody& body) {
    const SurfaceFitness fitness = judgeSurface(surface);
    const auto edge = static_cast<double>(body.facetEdge);
    const double deviation =
        greatestDistance(surfaceOf(surface), TriangleTree(surfaceOf(body.mesh)), 0.1 * edge);
    state.counters["facets"] = static_cast<double>(fitness.facets);
    state.counters["open"] = static_cast<double>(fitness.openEdges.count);
    state.counters["branching"] = static_cast<double>(fitness.nonManifoldEdges.count);
    state.counters["cuts"] =
        static_cast<double>(fitness.selfIntersections.count + fitness.overlaps.count);
    state.counters["slivers"] = static_cast<double>(fitness.slivers.count);
    state.counters["deviation"] = deviation / edge;
    state.counters["shortest"] = static_cast<double>(fitness.shortestEdge) / edge;
    state.counters["longest"] = static_cast<double>(fitness.longestEdge) / edge;
    state.counters["volume"] = fitness.volume / body.volume;
}

} // namespace ostrella::bench
