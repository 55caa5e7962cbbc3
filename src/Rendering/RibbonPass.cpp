// The streamlines' ribbons and the pulses that run along them.
#include "Rendering/MetalRenderer.h"

#include "Brand/ViewportStyle.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

float largestExtent(const BoundingBox& box) {
    const Vec3 size = box.max - box.min;
    return std::max({size.x, size.y, size.z});
}

} // namespace

void MetalRenderer::encodeRibbons(SceneFrame& frame) const {
    if (!streamlinesEnabled || !hasRibbons())
        return;
    // From here on the scalar of the results is the speed.
    Uniforms block = frame.encoding.uniforms[frame.resultBlock];
    block.scalarRange = Vec4(contents_.streamlineMagRange, 0.0F, 0.0F);
    frame.resultBlock = frame.add(block);

    DrawCommand draw;
    draw.pipeline = Pipeline::ribbon;
    draw.depth = DepthState::lessEqualReadOnly;
    draw.vertices = SceneBuffer::ribbonPoints;
    draw.indices = SceneBuffer::ribbonIndices;
    draw.count = contents_.ribbonIndexCount;
    draw.uniforms = frame.resultBlock;
    draw.extra = ribbonUniforms(frame.pixelSize, frame.time);
    frame.add(draw);
}

float MetalRenderer::flowBodyLength() const {
    constexpr float shortest = 0.001F;
    if (hasSurface())
        return std::max(largestExtent(contents_.surfaceBounds), shortest);
    if (hasModel())
        return std::max(largestExtent(contents_.meshBounds), shortest);
    return std::max(0.25F * largestExtent(contents_.streamlineBounds), shortest);
}

RibbonUniforms MetalRenderer::ribbonUniforms(Vec2 pixelSize, double time) const {
    constexpr float width = 1.75F;
    const double length = flowBodyLength();
    const double speed = 1.6 * length;
    const double spacing = length / 2.5;
    // A whole number of pulses passes in this time, so that the pattern repeats without a jump and
    // the phase stays small enough for 32 bits however long the program runs.
    const double period = speed / spacing;
    double phase = std::fmod(time - timeOrigin_, period);
    if (phase < 0.0)
        phase += period;

    const BoundingBox lines =
        placement().placeResult(contents_.streamlineBounds.min, contents_.streamlineBounds.max);
    const float distance = std::sqrt(squaredLength(camera.eye() - (lines.min + lines.max) * 0.5F));
    const float radius = 0.5F * std::sqrt(squaredLength(lines.max - lines.min));

    RibbonUniforms block;
    block.view = {pixelSize, 0.5F * width * pointScale_, 1.0F};
    block.depth = {std::max(distance - radius, 0.0F), distance + radius, 0.62F, 0.9F};
    block.pulse = {
        static_cast<float>(phase), static_cast<float>(spacing), static_cast<float>(speed), 0.07F};
    block.look = {0.55F, flowMoves() ? 1.0F : 0.0F, 0.002F, 0.85F};
    block.floorColor = Vec4(ViewportStyle::streamlineFloorColor, 1.0F);
    return block;
}

} // namespace ostrella
