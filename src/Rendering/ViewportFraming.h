#pragma once

#include "Models/BoundingBox.h"
#include "Models/Vector.h"
#include "Models/ViewPreset.h"

namespace ostrella {

/// Arithmetic of the free part of the viewport and of turned boxes.
namespace ViewportFraming {

/// The share of each side of the view that the camera and the renderer keep free of overlays.
inline constexpr float cameraFreeFraction = 0.3F;

/// The insets (points) scaled back, a pair of opposite ones by the same factor, so that at least
/// the share `minFreeFraction` of `viewSize` (width, height in points) stays free. Negative insets
/// are 0.
ViewportInsets effectiveInsets(Vec2 viewSize, const ViewportInsets& insets, float minFreeFraction);

/// The box around the eight corners of a box under `matrix`; the box itself for the identity.
BoundingBox transformedBounds(const Vec3& min, const Vec3& max, const Mat4& matrix);

} // namespace ViewportFraming

} // namespace ostrella
