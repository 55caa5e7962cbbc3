// What the scene holds: the model, the layers of a result, and the grid below them.
#include "Rendering/BufferBytes.h"
#include "Rendering/FiniteContents.h"
#include "Rendering/MetalRenderer.h"
#include "Solver/Flow/StreamlineRibbons.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

namespace {

/// Positions and scalars, four floats a point. What is no number stays none: it has a colour of its
/// own, since any of the scale's would claim a value.
std::vector<Vec4> scalarPoints(const SurfaceField& field, Vec2 range) {
    std::vector<Vec4> points;
    points.reserve(field.positions.size());
    for (std::size_t i = 0; i < field.positions.size(); ++i) {
        const float value = field.scalar[i];
        points.emplace_back(field.positions[i],
            std::isnan(value) ? value : FiniteContents::withinReach(value, range));
    }
    return points;
}

BoundingBox boundsOf(
    const Streamlines& lines, const std::vector<StreamlineRibbons::Point>& points) {
    const BoundingBox box{lines.boundingMin, lines.boundingMax};
    if (FiniteContents::isPlaced(box.min) && FiniteContents::isPlaced(box.max))
        return box;
    std::vector<Vec3> places;
    places.reserve(points.size());
    for (const auto& point : points)
        places.emplace_back(point.positionSpeed);
    return FiniteContents::boundsOf(box, places);
}

} // namespace

void MetalRenderer::upload(const TriangleMesh& mesh) {
    upload(PreparedModel::of(mesh, PreparedModel::Picking::walk));
}

void MetalRenderer::upload(const PreparedModel& model) {
    hold(model);
    reframe(false);
}

void MetalRenderer::clear() {
    hold({});
}

void MetalRenderer::hold(const PreparedModel& model) {
    buffers_.replace(SceneBuffer::modelVertices, model.vertices);
    buffers_.replace(SceneBuffer::modelIndices, model.indices);
    buffers_.replace(SceneBuffer::featureEdges, model.featureEdges);
    contents_.meshIndexCount = model.indexCount;
    contents_.featureEdgeVertexCount = model.featureEdgeVertexCount;
    contents_.meshBounds = model.bounds;
    model_ = model;
    refreshGrid();
}

void MetalRenderer::uploadSurface(const SurfaceField& field) {
    const bool triangles = field.primitive == SurfaceField::Primitive::triangle;
    const auto indices =
        FiniteContents::presentPrimitives(field.indices, triangles ? 3 : 2, field.positions.size());
    const Vec2 range =
        FiniteContents::rangeOf(field.scalarMin, field.scalarMax, field.scalar.span());
    buffers_.replace(SceneBuffer::surfaceVertices,
        BufferBytes::of(std::span<const Vec4>(scalarPoints(field, range))));
    buffers_.replace(SceneBuffer::surfaceIndices, BufferBytes::of(indices.span()));
    contents_.surfaceIndexCount = static_cast<std::uint32_t>(indices.size());
    contents_.surfacePrimitive = triangles ? Topology::triangles : Topology::lines;
    contents_.surfaceScalarRange = range;
    contents_.surfaceBounds =
        FiniteContents::boundsOf({field.boundingMin, field.boundingMax}, field.positions.span());
    refreshGrid();
}

void MetalRenderer::uploadStreamlines(const Streamlines& lines) {
    StreamlineRibbons ribbons = StreamlineRibbons::build(lines);
    contents_.ribbonIndexCount = static_cast<std::uint32_t>(ribbons.indices.size());
    if (ribbons.indices.empty()) {
        buffers_.remove(SceneBuffer::ribbonPoints);
        buffers_.remove(SceneBuffer::ribbonIndices);
        return;
    }
    const Vec2 range = FiniteContents::rangeOf(
        lines.magnitudeMin, lines.magnitudeMax, lines.interleavedVertices.span().subspan(3), 4);
    for (auto& point : ribbons.points)
        point.positionSpeed.w = FiniteContents::withinReach(point.positionSpeed.w, range);
    contents_.streamlineMagRange = range;
    contents_.streamlineBounds = boundsOf(lines, ribbons.points);
    buffers_.replace(SceneBuffer::ribbonPoints,
        BufferBytes::of(std::span<const StreamlineRibbons::Point>(ribbons.points)));
    buffers_.replace(SceneBuffer::ribbonIndices,
        BufferBytes::of(std::span<const std::uint32_t>(ribbons.indices)));
}

void MetalRenderer::uploadVortex(const IsoSurface& surface) {
    const auto indices = FiniteContents::presentPrimitives(
        surface.indices, 3, std::min(surface.positions.size(), surface.normals.size()));
    contents_.vortexIndexCount = static_cast<std::uint32_t>(indices.size());
    if (indices.empty()) {
        buffers_.remove(SceneBuffer::vortexVertices);
        buffers_.remove(SceneBuffer::vortexIndices);
        return;
    }
    buffers_.replace(SceneBuffer::vortexVertices,
        BufferBytes::ofVertices(surface.positions.span(), surface.normals.span()));
    buffers_.replace(SceneBuffer::vortexIndices, BufferBytes::of(indices.span()));
}

void MetalRenderer::clearResults() {
    for (const SceneBuffer buffer :
        {SceneBuffer::surfaceVertices, SceneBuffer::surfaceIndices, SceneBuffer::ribbonPoints,
            SceneBuffer::ribbonIndices, SceneBuffer::vortexVertices, SceneBuffer::vortexIndices})
        buffers_.remove(buffer);
    contents_.surfaceIndexCount = 0;
    contents_.ribbonIndexCount = 0;
    contents_.vortexIndexCount = 0;
    refreshGrid();
}

void MetalRenderer::refreshGrid() {
    const GridGeometry::Plan plan = GridGeometry::planFor(gridBounds());
    if (plan == contents_.gridPlan)
        return;
    contents_.gridPlan = plan;
    const GridGeometry::Layers layers = GridGeometry::makeLayers(plan);
    buffers_.replace(SceneBuffer::gridMinor, BufferBytes::ofPoints(layers.minor));
    buffers_.replace(SceneBuffer::gridMajor, BufferBytes::ofPoints(layers.major));
    contents_.gridMinorVertexCount = static_cast<std::uint32_t>(layers.minor.size());
    contents_.gridMajorVertexCount = static_cast<std::uint32_t>(layers.major.size());
}

} // namespace ostrella
