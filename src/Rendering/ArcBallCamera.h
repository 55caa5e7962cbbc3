#pragma once

#include "Models/Vector.h"
#include "Models/ViewPreset.h"

namespace ostrella {

/// The camera of the viewport: an eye on a sphere around a target. World y is up; angles are in
/// radians; all arithmetic is 32-bit. A plain value.
struct ArcBallCamera {
    /// The point looked at.
    Vec3 target{0, 0, 0};
    /// From the target to the eye.
    float distance = 5;
    /// About +y, from +z: 0 looks at the target from +z, −π/2 from −x, upstream.
    float azimuth = 3.1415925F / 4;
    /// Above the x-z plane.
    float elevation = 0.5654867F;
    /// Vertical field of view.
    float fovY = 3.1415925F / 4;
    float nearZ = 0.01F;
    float farZ = 10000;
    /// Bound of the elevation during an orbit.
    float elevationLimit = 3.1415925F / 2;

    Vec3 eye() const;

    /// World to camera, right-handed, looking along −z. Upright at every elevation, straight up and
    /// down included, since the right-hand axis does not depend on the elevation.
    Mat4 viewMatrix() const;

    /// Camera to clip space with depth 0 to 1. `shift` moves the picture in normalised device units
    /// without changing perspective or depth: a lens shift, no move of the camera.
    Mat4 projection(float aspect, Vec2 shift = {0, 0}) const;

    /// Moves the target across the view by a distance in points; a point stays under the pointer.
    void pan(float deltaX, float deltaY, float viewportHeight);

    /// Looks at a box from the pose of `iso`, from where its sphere fits into the part of the view
    /// (in points) that the insets leave free.
    void frame(const Vec3& boundingMin, const Vec3& boundingMax, Vec2 viewSize,
        const ViewportInsets& insets);

    bool operator==(const ArcBallCamera&) const = default;
};

} // namespace ostrella
