#pragma once

#include "Rendering/MetalRenderer.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// Small contents of a scene, and a renderer whose time a test sets.
namespace ostrella::scenes {

/// A closed box of twelve facets.
inline TriangleMesh box(const Vec3& min, const Vec3& max) {
    const auto corner = [&](unsigned i) {
        return Vec3((i & 1U) != 0 ? max.x : min.x, (i & 2U) != 0 ? max.y : min.y,
            (i & 4U) != 0 ? max.z : min.z);
    };
    constexpr std::array<unsigned, 36> corners{0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
        2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    std::vector<Vec3> positions;
    for (const unsigned i : corners)
        positions.push_back(corner(i));
    return {positions, std::vector<Vec3>(positions.size(), Vec3(0, 1, 0))};
}

/// From (−1, −1, −1) to (1, 1, 1): half its diagonal is √3.
inline TriangleMesh cube() {
    return box(Vec3(-1.0F), Vec3(1.0F));
}

/// One triangle between two corners of a box.
inline SurfaceField surface(const Vec3& min, const Vec3& max) {
    return {{min, Vec3(max.x, min.y, min.z), max}, {-0.5F, 0.25F, 1.5F}, "Pressure_Coefficient",
        {0, 1, 2}, SurfaceField::Primitive::triangle};
}

/// One line of three points through the middle of a box, at 10, 20 and 30 m/s.
inline Streamlines lines(const Vec3& min, const Vec3& max) {
    const Vec3 middle = (min + max) * 0.5F;
    Streamlines result;
    result.interleavedVertices = {
        min.x, min.y, min.z, 10, middle.x, middle.y, middle.z, 20, max.x, max.y, max.z, 30};
    result.indices = {0, 1, 1, 2};
    result.vertexCount = 3;
    result.indexCount = 4;
    result.magnitudeMin = 10;
    result.magnitudeMax = 30;
    result.seedCount = 1;
    result.boundingMin = min;
    result.boundingMax = max;
    return result;
}

/// One triangle.
inline IsoSurface vortex() {
    IsoSurface result;
    result.positions = {Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0)};
    result.normals = {Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
    result.indices = {0, 1, 2};
    result.boundingMax = {1, 1, 0};
    return result;
}

/// A renderer at a time of the test's choice, with a view of 800 × 400 points, a pixel each.
struct Scene {
    double now = 100;
    MetalRenderer renderer{[this] { return now; }};

    Scene() { renderer.drawableSizeWillChange({800, 400}, {800, 400}); }
    FrameEncoding frame() { return renderer.encodeScene({800, 400}, now, true); }
    FrameEncoding snapshot() { return renderer.encodeScene({800, 400}, now, false); }
};

inline const char* name(Pipeline pipeline) {
    constexpr std::array names{"mesh", "grid", "surface", "ribbon", "vortexDepth", "vortex",
        "preRunDepth", "preRunFill", "preRunWire", "featureLine", "gizmo", "ring"};
    return names.at(static_cast<std::size_t>(pipeline));
}

inline const char* name(SceneBuffer buffer) {
    constexpr std::array names{"modelVertices", "modelIndices", "featureEdges", "surfaceVertices",
        "surfaceIndices", "ribbonPoints", "ribbonIndices", "vortexVertices", "vortexIndices",
        "gridMinor", "gridMajor", "ringX", "ringY", "ringZ", "gizmoSegments"};
    return names.at(static_cast<std::size_t>(buffer));
}

/// A draw in words: pipeline, buffers, depth state, topology and, unless it is filled, "as lines".
inline std::string describe(const DrawCommand& draw) {
    constexpr std::array depths{"less", "overlay", "readOnly", "lessEqualReadOnly"};
    constexpr std::array topologies{"triangles", "lines", "strip"};
    std::string text = name(draw.pipeline);
    text += std::string(" ") + name(draw.vertices);
    if (draw.indices)
        text += std::string(" ") + name(*draw.indices);
    text += std::string(" ") + depths.at(static_cast<std::size_t>(draw.depth));
    text += std::string(" ") + topologies.at(static_cast<std::size_t>(draw.topology));
    return draw.fill == FillMode::lines ? text + " as lines" : text;
}

using Words = std::vector<std::string>;

inline Words describe(const FrameEncoding& frame) {
    Words words;
    for (const DrawCommand& draw : frame.draws)
        words.push_back(describe(draw));
    return words;
}

/// The only draw of a pipeline in a frame; ends the test's case by throwing where there is none.
inline DrawCommand theDraw(const FrameEncoding& frame, Pipeline pipeline) {
    const DrawCommand* found = nullptr;
    for (const DrawCommand& draw : frame.draws) {
        if (draw.pipeline == pipeline && found != nullptr)
            throw std::logic_error("more than one draw of this pipeline");
        if (draw.pipeline == pipeline)
            found = &draw;
    }
    if (found == nullptr)
        throw std::logic_error("no draw of this pipeline");
    return *found;
}

/// The floats of a block or of a row, in memory's order.
template <class Block>
std::vector<float> floats(const Block& block) {
    const auto* values = reinterpret_cast<const float*>(&block);
    return {values, values + sizeof(Block) / sizeof(float)};
}

/// The floats of a buffer, in memory's order.
inline std::vector<float> floats(const SceneBuffers& buffers, SceneBuffer buffer) {
    const auto& bytes = buffers[buffer].bytes;
    const auto* values = reinterpret_cast<const float*>(bytes.data());
    return {values, values + bytes.size() / sizeof(float)};
}

} // namespace ostrella::scenes
