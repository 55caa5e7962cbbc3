// Where the camera stands: what it frames, how it gets there, and the free part of the view.
#include "Rendering/MetalRenderer.h"
#include "Rendering/ViewportFraming.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

constexpr double cameraSeconds = 0.3;
constexpr double shiftSeconds = 0.25;

constexpr float pi = 3.1415925F;
constexpr float fullTurn = 6.283185F;

/// The turn from one azimuth to another that is the shorter way round.
float shortestTurn(float from, float to) {
    float turn = std::fmod(to - from, fullTurn);
    if (turn > pi)
        turn -= fullTurn;
    else if (turn <= -pi)
        turn += fullTurn;
    return turn;
}

CameraPose poseOf(const ArcBallCamera& camera) {
    return {camera.azimuth, camera.elevation, camera.distance};
}

void setPose(ArcBallCamera& camera, const CameraPose& pose) {
    camera.azimuth = pose.azimuth;
    camera.elevation = pose.elevation;
    camera.distance = pose.distance;
}

float mix(float from, float to, float share) {
    return from + (to - from) * share;
}

/// Angles move evenly; the distance by equal factors, so that the speed of zooming looks even.
CameraPose between(const CameraPose& from, const CameraPose& to, float share) {
    return {mix(from.azimuth, to.azimuth, share), mix(from.elevation, to.elevation, share),
        from.distance * std::pow(to.distance / std::max(from.distance, 1e-6F), share)};
}

float halfDiagonal(const BoundingBox& box) {
    return 0.5F * std::sqrt(squaredLength(box.max - box.min));
}

} // namespace

std::optional<BoundingBox> MetalRenderer::framingBounds() const {
    const ModelPlacement place = placement();
    const auto placed = [&](const BoundingBox& box) { return place.placeResult(box.min, box.max); };
    if (streamlinesEnabled && hasRibbons())
        return placed(contents_.streamlineBounds);
    if (colormapEnabled && hasSurface())
        return placed(contents_.surfaceBounds);
    if (hasModel())
        return ViewportFraming::transformedBounds(
            contents_.meshBounds.min, contents_.meshBounds.max, place.modelMatrix());
    if (hasSurface())
        return placed(contents_.surfaceBounds);
    return std::nullopt;
}

BoundingBox MetalRenderer::gridBounds() const {
    const ModelPlacement place = placement();
    if (hasSurface())
        return place.placeResult(contents_.surfaceBounds.min, contents_.surfaceBounds.max);
    if (hasModel())
        return ViewportFraming::transformedBounds(
            contents_.meshBounds.min, contents_.meshBounds.max, place.modelMatrix());
    return {Vec3(-1.5F, 0.0F, -1.5F), Vec3(1.5F, 0.0F, 1.5F)};
}

std::optional<float> MetalRenderer::fitDistance() const {
    const auto bounds = framingBounds();
    if (!bounds)
        return std::nullopt;
    float radius = std::max(halfDiagonal(*bounds), 0.01F);
    // The rings stand outside of the model's sphere.
    if (orientMode)
        radius = std::max(1.196F * radius, 1e-4F);
    float tangent = 0.9F * std::tan(camera.fovY / 2.0F);
    if (hasView()) {
        const ViewportInsets margins = ViewportFraming::effectiveInsets(
            viewSizePoints_, insets_, ViewportFraming::cameraFreeFraction);
        const float freeWidth = viewSizePoints_.x - static_cast<float>(margins.leading) -
                                static_cast<float>(margins.trailing);
        const float freeHeight = viewSizePoints_.y - static_cast<float>(margins.top) -
                                 static_cast<float>(margins.bottom);
        tangent *= std::min(freeWidth, freeHeight) / viewSizePoints_.y;
    }
    tangent = std::max(tangent, 1e-4F);
    return radius * std::sqrt(tangent * tangent + 1.0F) / tangent;
}

void MetalRenderer::reframe(bool keepOrientation) {
    const auto bounds = framingBounds();
    if (!bounds)
        return;
    cameraTween_.reset();
    const float azimuth = camera.azimuth;
    const float elevation = camera.elevation;
    camera.frame(bounds->min, bounds->max, viewSizePoints_, insets_);
    if (keepOrientation) {
        camera.azimuth = azimuth;
        camera.elevation = elevation;
    }
    snapLensShift();
    pendingFit_.reset();
    if (!hasView())
        pendingFit_ = keepOrientation;
}

void MetalRenderer::refitAfterOrienting() {
    const auto distance = fitDistance();
    if (!hasView() || !distance || camera.distance >= 0.98F * *distance)
        return;
    CameraPose to = poseOf(camera);
    to.distance = *distance;
    if (reduceMotion) {
        cameraTween_.reset();
        setPose(camera, to);
    } else {
        cameraTween_ = {poseOf(camera), to, clock_(), cameraSeconds};
    }
}

void MetalRenderer::applyPreset(ViewPreset preset, bool animated) {
    const ViewPose wanted = pose(preset);
    const CameraPose to{camera.azimuth + shortestTurn(camera.azimuth, wanted.azimuth),
        wanted.elevation, fitDistance().value_or(camera.distance)};
    if (animated && !reduceMotion) {
        cameraTween_ = {poseOf(camera), to, clock_(), cameraSeconds};
    } else {
        cameraTween_.reset();
        setPose(camera, to);
    }
}

void MetalRenderer::setInsets(const ViewportInsets& insets) {
    if (insets == insets_)
        return;
    insets_ = insets;
    const Vec2 target = shiftForInsets();
    if (reduceMotion || !hasView()) {
        shiftTween_.reset();
        lensShift_ = target;
    } else {
        const double now = clock_();
        shiftTween_ = {currentLensShift(now), target, now, shiftSeconds};
    }
}

Vec2 MetalRenderer::shiftForInsets() const {
    if (!hasView())
        return {0.0F, 0.0F};
    const ViewportInsets margins = ViewportFraming::effectiveInsets(
        viewSizePoints_, insets_, ViewportFraming::cameraFreeFraction);
    return {static_cast<float>(margins.leading - margins.trailing) / viewSizePoints_.x,
        static_cast<float>(margins.bottom - margins.top) / viewSizePoints_.y};
}

void MetalRenderer::snapLensShift() {
    shiftTween_.reset();
    lensShift_ = shiftForInsets();
}

Vec2 MetalRenderer::currentLensShift(double time) const {
    if (!shiftTween_)
        return lensShift_;
    if (shiftTween_->progress(time) >= 1.0)
        return shiftTween_->to;
    const float share = shiftTween_->eased(time);
    return {mix(shiftTween_->from.x, shiftTween_->to.x, share),
        mix(shiftTween_->from.y, shiftTween_->to.y, share)};
}

void MetalRenderer::advanceAnimations(double time) {
    if (cameraTween_) {
        const auto& [from, to, start, duration] = *cameraTween_;
        const bool arrived = cameraTween_->progress(time) >= 1.0;
        setPose(camera, arrived ? to : between(from, to, cameraTween_->eased(time)));
        if (arrived)
            cameraTween_.reset();
    }
    if (shiftTween_) {
        lensShift_ = currentLensShift(time);
        if (shiftTween_->progress(time) >= 1.0)
            shiftTween_.reset();
    }
}

} // namespace ostrella
