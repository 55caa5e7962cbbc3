#pragma once

#include "Models/Vector.h"
#include "Rendering/Uniforms.h"

#include <array>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace ostrella {

/// The twelve ways of drawing, each a vertex and a fragment function with its blending.
enum class Pipeline {
    mesh,
    grid,
    surface,
    ribbon,
    vortexDepth,
    vortex,
    preRunDepth,
    preRunFill,
    preRunWire,
    featureLine,
    gizmo,
    ring
};
inline constexpr std::size_t pipelineCount = 12;

/// Compare and write: less and on; always and off; less and off; less or equal and off.
enum class DepthState { less, overlay, readOnly, lessEqualReadOnly };

enum class Topology { triangles, lines, triangleStrip };
enum class FillMode { fill, lines };

/// The buffers of a scene, as the renderer knows them apart from any device.
enum class SceneBuffer {
    modelVertices,   ///< position and normal, 32 bytes each
    modelIndices,    ///< triangles
    featureEdges,    ///< line list, 16 bytes a vertex
    surfaceVertices, ///< position and scalar, 16 bytes each
    surfaceIndices,  ///< triangles or segments
    ribbonPoints,    ///< StreamlineRibbons::Point
    ribbonIndices,
    vortexVertices, ///< position and normal, 32 bytes each
    vortexIndices,
    gridMinor, ///< line list, 16 bytes a vertex
    gridMajor,
    ringX, ///< 128 points, 16 bytes each
    ringY,
    ringZ,
    gizmoSegments ///< OrientationGizmo::Segment, of this frame
};
inline constexpr std::size_t sceneBufferCount = 15;

/// A rectangle of the target in pixels, measured from its lower left corner.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;
};

using ExtraBlock = std::variant<std::monostate, GridUniforms, PreRunUniforms, VortexUniforms,
    RibbonUniforms, RingStyle, GizmoUniforms>;

/// One draw. Nothing is culled; front faces are counter-clockwise.
struct DrawCommand {
    Pipeline pipeline = Pipeline::mesh;
    DepthState depth = DepthState::less;
    Topology topology = Topology::triangles;
    FillMode fill = FillMode::fill;
    SceneBuffer vertices = SceneBuffer::modelVertices;
    std::optional<SceneBuffer> indices;
    std::uint32_t count = 0; ///< indices, or vertices of a draw without them
    std::uint32_t instances = 1;
    std::size_t uniforms = 0; ///< which of the frame's blocks
    ExtraBlock extra;
    /// Viewport and scissor of this draw; the whole target if absent.
    std::optional<PixelRect> box;
};

/// Everything that a frame draws, in order, apart from any device.
struct FrameEncoding {
    Vec3 clearColor{0.0F};
    std::vector<Uniforms> uniforms;
    std::vector<DrawCommand> draws;
};

} // namespace ostrella
