#include "Rendering/PreparedModel.h"

#include "Rendering/BufferBytes.h"
#include "Rendering/FiniteContents.h"
#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/WeldGrid.h"
#include "Solver/Geometry/Welding.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr float creaseDegrees = 30.0F;

/// The mesh without the facets that stand nowhere; the mesh itself where there are none.
TriangleMesh placedFacets(const TriangleMesh& mesh) {
    const auto& corners = mesh.positions();
    const float* coordinates = reinterpret_cast<const float*>(corners.data());
    int astray = 0;
    for (std::size_t i = 0; i < 3 * corners.size(); ++i)
        astray |= static_cast<int>(!(std::abs(coordinates[i]) <= FiniteContents::farthest));
    if (astray == 0)
        return mesh;
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        if (!std::all_of(corners.data() + i, corners.data() + i + 3, FiniteContents::isPlaced))
            continue;
        positions.insert(positions.end(), corners.data() + i, corners.data() + i + 3);
        normals.insert(normals.end(), mesh.normals().data() + i, mesh.normals().data() + i + 3);
    }
    return {std::move(positions), std::move(normals)};
}

/// Welded on the default grid, or where that has no keys so far from the origin, on the finest one
/// that has.
WeldedMesh weldedWhereItStands(const TriangleMesh& mesh) {
    const BoundingBox& box = mesh.boundingBox();
    if (WeldGrid(box).covers(box))
        return welded(mesh);
    float farthest = 0.0F;
    for (int axis = 0; axis < 3; ++axis)
        farthest = std::max({farthest, std::abs(box.min[axis]), std::abs(box.max[axis])});
    constexpr float mostSteps = 1073741824.0F;
    return welded(mesh, farthest / mostSteps);
}

} // namespace

PreparedModel PreparedModel::of(const TriangleMesh& mesh, Picking picking, Lines lines) {
    const TriangleMesh placed = placedFacets(mesh);
    PreparedModel model;
    if (placed.empty())
        return model;
    const WeldedMesh shared = weldedWhereItStands(placed);
    const FeatureEdges edges = lines == Lines::features
                                   ? FeatureEdges::extract(shared, creaseDegrees)
                                   : FeatureEdges::empty;
    model.vertices = BufferBytes::ofVertices(shared.positions.span(), shared.normals.span());
    model.indices = shared.indices.bytes();
    model.featureEdges = BufferBytes::ofPoints(edges.positions.span());
    model.positions = shared.positions;
    model.indexCount = static_cast<std::uint32_t>(shared.indices.size());
    model.featureEdgeVertexCount = static_cast<std::uint32_t>(edges.positions.size());
    model.bounds = placed.boundingBox();
    if (picking == Picking::tree)
        model.tree = std::make_shared<const PickTree>(
            model.positions.span(), 1, BufferBytes::as<std::uint32_t>(model.indices));
    return model;
}

std::optional<float> PreparedModel::nearestHit(const ViewportPicking::Ray& ray) const {
    if (tree)
        return tree->nearestHit(ray);
    return ViewportPicking::nearestHit(
        ray, positions.span(), 1, BufferBytes::as<std::uint32_t>(indices));
}

} // namespace ostrella
