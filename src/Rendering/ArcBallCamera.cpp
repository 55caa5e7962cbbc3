#include "Rendering/ArcBallCamera.h"

#include "Rendering/ViewportFraming.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

/// The camera's own axes in the world: to the right, up, and back towards the eye. Unit vectors.
struct Axes {
    Vec3 right;
    Vec3 up;
    Vec3 back;

    Axes(float azimuth, float elevation)
        : right(std::cos(azimuth), 0.0F, -std::sin(azimuth)),
          back(std::cos(elevation) * std::sin(azimuth), std::sin(elevation),
              std::cos(elevation) * std::cos(azimuth)) {
        up = cross(back, right);
    }
};

} // namespace

Vec3 ArcBallCamera::eye() const {
    return target + distance * Axes(azimuth, elevation).back;
}

Mat4 ArcBallCamera::viewMatrix() const {
    const Axes axes(azimuth, elevation);
    const Vec3 from = eye();
    return {Vec4(axes.right.x, axes.up.x, axes.back.x, 0.0F),
        Vec4(axes.right.y, axes.up.y, axes.back.y, 0.0F),
        Vec4(axes.right.z, axes.up.z, axes.back.z, 0.0F),
        Vec4(-dot(axes.right, from), -dot(axes.up, from), -dot(axes.back, from), 1.0F)};
}

Mat4 ArcBallCamera::projection(float aspect, Vec2 shift) const {
    const float ys = 1.0F / std::tan(fovY / 2.0F);
    const float xs = ys / aspect;
    const Mat4 perspective(Vec4(xs, 0.0F, 0.0F, 0.0F), Vec4(0.0F, ys, 0.0F, 0.0F),
        Vec4(0.0F, 0.0F, farZ / (nearZ - farZ), -1.0F),
        Vec4(0.0F, 0.0F, nearZ * farZ / (nearZ - farZ), 0.0F));
    if (shift == Vec2(0.0F, 0.0F)) {
        return perspective;
    }
    Mat4 translation(1.0F);
    translation[3] = Vec4(shift.x, shift.y, 0.0F, 1.0F);
    return translation * perspective;
}

void ArcBallCamera::pan(float deltaX, float deltaY, float viewportHeight) {
    const float unitsPerPoint =
        2.0F * distance * std::tan(fovY / 2.0F) / std::max(viewportHeight, 1.0F);
    const Axes axes(azimuth, elevation);
    target -= unitsPerPoint * (deltaX * axes.right + deltaY * axes.up);
}

void ArcBallCamera::frame(
    const Vec3& boundingMin, const Vec3& boundingMax, Vec2 viewSize, const ViewportInsets& insets) {
    // A little of the field of view is left as a margin around the body.
    constexpr float filled = 0.9F;
    constexpr float smallestRadius = 0.01F;
    constexpr float smallestTangent = 1e-4F;

    target = (boundingMin + boundingMax) * 0.5F;
    float tangent = filled * std::tan(fovY / 2.0F);
    if (viewSize.x > 1.0F && viewSize.y > 1.0F) {
        const ViewportInsets effective =
            ViewportFraming::effectiveInsets(viewSize, insets, ViewportFraming::cameraFreeFraction);
        const float freeWidth = viewSize.x - static_cast<float>(effective.leading) -
                                static_cast<float>(effective.trailing);
        const float freeHeight =
            viewSize.y - static_cast<float>(effective.top) - static_cast<float>(effective.bottom);
        tangent *= std::min(freeWidth, freeHeight) / viewSize.y;
    }
    const float halfDiagonal = 0.5F * std::sqrt(squaredLength(boundingMax - boundingMin));
    const float radius = halfDiagonal > smallestRadius ? halfDiagonal : smallestRadius;
    tangent = std::max(tangent, smallestTangent);
    // The distance at which a sphere touches a cone of this half-angle's tangent.
    distance = radius * std::sqrt(tangent * tangent + 1.0F) / tangent;
    const ViewPose iso = pose(ViewPreset::iso);
    azimuth = iso.azimuth;
    elevation = iso.elevation;
}

} // namespace ostrella
