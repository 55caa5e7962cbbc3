// The small axes in the lower left corner.
#include "Rendering/BufferBytes.h"
#include "Rendering/MetalRenderer.h"
#include "Rendering/OrientationGizmo.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

// In points.
constexpr float margin = 12.0F;
constexpr float boxWidth = 112.0F;
constexpr float boxHeight = 64.0F;

int pixels(float length) {
    return static_cast<int>(std::lround(length));
}

} // namespace

void MetalRenderer::encodeGizmo(SceneFrame& frame) {
    const float scale = pointScale_;
    const Vec2 size = frame.pixelSize;
    if (!hasModel() && !hasResult())
        return;
    if (size.x < (margin + boxWidth) * scale || size.y < (margin + boxHeight) * scale)
        return;
    const auto segments = OrientationGizmo::build(camera.viewMatrix(), freeStream, scale);
    if (segments.empty())
        return;
    // A gizmo that looks as before keeps its buffer, so that no device renews its copy.
    auto bytes = BufferBytes::of(std::span<const OrientationGizmo::Segment>(segments));
    if (!(bytes == buffers_[SceneBuffer::gizmoSegments].bytes))
        buffers_.replace(SceneBuffer::gizmoSegments, std::move(bytes));

    PixelRect box{pixels(margin * scale), pixels(margin * scale), pixels(boxWidth * scale),
        pixels(boxHeight * scale)};
    box.width = std::min(box.width, static_cast<int>(size.x) - box.x);
    box.height = std::min(box.height, static_cast<int>(size.y) - box.y);
    DrawCommand draw;
    draw.pipeline = Pipeline::gizmo;
    draw.depth = DepthState::overlay;
    draw.topology = Topology::triangleStrip;
    draw.vertices = SceneBuffer::gizmoSegments;
    draw.count = 4;
    draw.instances = static_cast<std::uint32_t>(segments.size());
    draw.uniforms = frame.worldBlock;
    draw.extra = GizmoUniforms{Vec4(boxWidth * scale, boxHeight * scale, 0.0F, 0.0F)};
    draw.box = box;
    frame.add(draw);
}

} // namespace ostrella
