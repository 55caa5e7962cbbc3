// The orientation rings: where they are, how they look, and what the pointer does to them.
#include "Rendering/BufferBytes.h"
#include "Rendering/MetalRenderer.h"

#include "Brand/ViewportStyle.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr int ringPoints = 128;

SceneBuffer bufferOf(OrientationAxis axis) {
    switch (axis) {
    case OrientationAxis::x:
        return SceneBuffer::ringX;
    case OrientationAxis::y:
        return SceneBuffer::ringY;
    case OrientationAxis::z:
        break;
    }
    return SceneBuffer::ringZ;
}

Vec3 colorOf(OrientationAxis axis) {
    switch (axis) {
    case OrientationAxis::x:
        return Vec3(ViewportStyle::gizmoAxisX);
    case OrientationAxis::y:
        return Vec3(ViewportStyle::gizmoAxisY);
    case OrientationAxis::z:
        break;
    }
    return Vec3(ViewportStyle::gizmoAxisZ);
}

} // namespace

float MetalRenderer::modelRadius() const {
    const Vec3 size = contents_.meshBounds.max - contents_.meshBounds.min;
    return std::max(0.5F * std::sqrt(squaredLength(size)), 0.01F);
}

float MetalRenderer::ringRadius() const {
    return 1.15F * modelRadius();
}

void MetalRenderer::renewRings() {
    const RingKey key{placement().centre, ringRadius()};
    if (ringKey_ == key)
        return;
    ringKey_ = key;
    for (const OrientationAxis axis : allOrientationAxes) {
        const auto circle = OrientationRings::points(axis, key.centre, key.radius, ringPoints);
        buffers_.replace(bufferOf(axis), BufferBytes::ofPoints(circle));
    }
}

void MetalRenderer::encodeRings(SceneFrame& frame) {
    if (!orientMode || !hasModel())
        return;
    renewRings();
    const auto add = [&](OrientationAxis axis) {
        DrawCommand draw;
        draw.pipeline = Pipeline::ring;
        draw.depth = DepthState::overlay;
        draw.topology = Topology::triangleStrip;
        draw.vertices = bufferOf(axis);
        draw.count = 2 * (ringPoints + 1);
        draw.uniforms = frame.worldBlock;
        draw.extra = ringStyle(axis, frame.pixelSize);
        frame.add(draw);
    };
    // The emphasised ring comes last and so lies on top.
    const auto emphasised = activeRing ? activeRing : hoveredRing;
    for (const OrientationAxis axis : allOrientationAxes) {
        if (axis != emphasised)
            add(axis);
    }
    if (emphasised)
        add(*emphasised);
}

RingStyle MetalRenderer::ringStyle(OrientationAxis axis, Vec2 pixelSize) const {
    const bool emphasised = axis == (activeRing ? activeRing : hoveredRing);
    const bool steppedBack = activeRing && activeRing != axis;
    const float width = emphasised ? 2.5F : 1.5F;
    RingStyle style;
    style.color =
        Vec4(emphasised ? ViewportStyle::accent : colorOf(axis), steppedBack ? 0.2F : 0.8F);
    style.view = {pixelSize, 0.5F * width * pointScale_, 1.0F};
    style.centre = Vec4(placement().centre, static_cast<float>(ringPoints));
    style.eye = Vec4(camera.eye(), 0.0F);
    style.behind = {0.35F, 0.15F, 0.0F, 0.0F};
    return style;
}

ScreenProjector MetalRenderer::projectorNow() const {
    const float aspect = std::max(viewSizePoints_.x / std::max(viewSizePoints_.y, 1.0F), 0.001F);
    return {camera.projection(aspect, currentLensShift(clock_())) * camera.viewMatrix(),
        viewSizePoints_};
}

std::optional<OrientationAxis> MetalRenderer::ringHit(Vec2 point) const {
    constexpr float tolerance = 6.0F;
    if (!orientMode || !hasModel() || !hasView())
        return std::nullopt;
    const ScreenProjector projector = projectorNow();
    const Vec3 centre = placement().centre;
    std::vector<OrientationRings::ProjectedRing> rings;
    for (const OrientationAxis axis : allOrientationAxes) {
        OrientationRings::ProjectedRing ring{axis, {}};
        for (const Vec3& onRing : OrientationRings::points(axis, centre, ringRadius(), ringPoints))
            ring.second.push_back(projector.project(onRing));
        rings.push_back(std::move(ring));
    }
    return OrientationRings::hitTest(point, rings, tolerance);
}

std::optional<OrientationRings::Drag> MetalRenderer::beginRingDrag(
    OrientationAxis axis, Vec2 point) const {
    if (!orientMode || !hasModel())
        return std::nullopt;
    const auto mode = OrientationRings::Drag::modeFor(
        axis, placement().centre, modelRadius(), camera.eye(), projectorNow());
    if (!mode)
        return std::nullopt;
    return OrientationRings::Drag{axis, *mode, point, 0, 0};
}

} // namespace ostrella
