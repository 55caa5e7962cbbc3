#pragma once

#include "Models/Vector.h"

#include <optional>
#include <vector>

namespace ostrella {

/// The small axes in the corner of the viewport, with the free stream's arrow beside them, as thick
/// soft lines in a box of 112 × 64 points.
namespace OrientationGizmo {

/// One line, in pixels of the box from its lower left corner.
struct Segment {
    Vec4 ends{0.0F}; ///< x0, y0, x1, y1
    Vec4 color{0.0F};
    Vec4 params{0.0F}; ///< half width, feather of the edge, 0, 0

    bool operator==(const Segment&) const = default;
};
static_assert(sizeof(Segment) == 48);

/// The lines for this view matrix; `scale` is pixels per point. No arrow without a free stream.
std::vector<Segment> build(const Mat4& view, const std::optional<Vec3>& freeStream, float scale);

/// Unit vector of the free stream in the application's frame; angles in radians.
Vec3 freeStreamDirection(float alpha, float beta);

} // namespace OrientationGizmo

} // namespace ostrella
