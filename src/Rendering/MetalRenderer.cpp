#include "Rendering/MetalRenderer.h"

#include "Brand/ViewportStyle.h"
#include "Rendering/ClipRange.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrella {

MetalRenderer::MetalRenderer(MediaClock clock) : clock_(std::move(clock)), timeOrigin_(clock_()) {
    refreshGrid();
}

bool MetalRenderer::setModelRotation(const Vec3& radians) {
    Vec3 turned = radians;
    for (int axis = 0; axis < 3; ++axis)
        turned[axis] = std::isfinite(turned[axis]) ? turned[axis] : 0.0F;
    if (turned == modelRotation_)
        return false;
    modelRotation_ = turned;
    refreshGrid();
    return true;
}

bool MetalRenderer::hasModel() const {
    return contents_.meshIndexCount > 0;
}

bool MetalRenderer::hasResult() const {
    return hasSurface() || hasRibbons() || hasVortex();
}

ModelPlacement MetalRenderer::placement() const {
    return {contents_.meshBounds.min, contents_.meshBounds.max, modelRotation_};
}

bool MetalRenderer::hasView() const {
    return viewSizePoints_.x > 1.0F && viewSizePoints_.y > 1.0F;
}

void MetalRenderer::drawableSizeWillChange(Vec2 pixels, Vec2 points) {
    viewportSize_ = pixels;
    viewSizePoints_ = points;
    if (points.x > 0.0F)
        pointScale_ = std::max(pixels.x / points.x, 1.0F);
    snapLensShift();
    if (pendingFit_ && hasView())
        reframe(*pendingFit_);
}

bool MetalRenderer::flowMoves() const {
    return flowAnimation && !reduceMotion && streamlinesEnabled && hasRibbons();
}

bool MetalRenderer::wantsContinuousRedraw() const {
    return cameraTween_ || shiftTween_ || flowMoves();
}

FrameEncoding MetalRenderer::draw() {
    const double time = clock_();
    advanceAnimations(time);
    return encodeScene(viewportSize_, time, true);
}

FrameEncoding MetalRenderer::encodeScene(Vec2 pixelSize, double time, bool includeGizmo) {
    SceneFrame frame;
    frame.encoding.clearColor = ViewportStyle::background;
    frame.encoding.uniforms.reserve(4);
    frame.encoding.draws.reserve(12);
    frame.pixelSize = pixelSize;
    frame.time = time;
    addUniforms(frame);
    encodeGrid(frame);
    encodeBody(frame);
    encodeRibbons(frame);
    encodeVortex(frame);
    if (includeGizmo) {
        encodeRings(frame);
        encodeGizmo(frame);
    }
    return std::move(frame.encoding);
}

void MetalRenderer::addUniforms(SceneFrame& frame) const {
    const Vec2 size = frame.pixelSize;
    const float aspect = std::max(size.y > 1.0F ? size.x / size.y : size.x, 0.001F);
    ArcBallCamera lens = camera;
    const ClipRange range = ClipRange::forScene(camera, framingBounds().value_or(gridBounds()));
    lens.nearZ = range.nearZ;
    lens.farZ = range.farZ;

    const ModelPlacement place = placement();
    Uniforms block;
    block.viewMatrix = camera.viewMatrix();
    block.projectionMatrix = lens.projection(aspect, lensShift_);
    block.lightDirection = Vec4(glm::normalize(Vec3(0.3F, 0.5F, 1.0F)), 0.0F);
    block.baseColor = Vec4(ViewportStyle::shadedBaseColor, 1.0F);
    block.scalarRange = Vec4(contents_.surfaceScalarRange, 0.0F, 0.0F);
    block.modelMatrix = place.modelMatrix();
    frame.modelBlock = frame.add(block);
    block.modelMatrix = Mat4(1.0F);
    frame.worldBlock = frame.add(block);
    block.modelMatrix[3] = Vec4(place.resultOffset(), 1.0F);
    frame.resultBlock = frame.add(block);
}

} // namespace ostrella
