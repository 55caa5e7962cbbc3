#pragma once

#include "Models/Vector.h"

#include <optional>

namespace ostrella {

/// From the world to points of the view, y up.
struct ScreenProjector {
    Mat4 matrix{1.0F}; ///< projection × view
    Vec2 viewSize{0.0F};

    /// Nothing for a point that is not in front of the eye.
    std::optional<Vec2> project(const Vec3& point) const;
};

} // namespace ostrella
