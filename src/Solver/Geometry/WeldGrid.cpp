#include "Solver/Geometry/WeldGrid.h"

#include "Models/Precondition.h"

#include <algorithm>

namespace ostrella {

namespace {

/// 2³¹, the least float above the 32-bit range; the greatest below it, 2³¹ − 128, is whole.
constexpr float keyLimit = 2147483648.0F;

bool hasKey(float scaled) {
    return scaled >= -keyLimit && scaled < keyLimit;
}

float step(const BoundingBox& box, std::optional<float> epsilon) {
    if (epsilon)
        return *epsilon;
    const Vec3 size = box.max - box.min;
    const float relative = std::max({size.x, size.y, size.z}) * 1e-5F;
    return relative > 1e-9F ? relative : 1e-9F;
}

} // namespace

WeldGrid::WeldGrid(const BoundingBox& box, std::optional<float> epsilon)
    : scale_(1.0F / step(box, epsilon)) {}

bool WeldGrid::covers(const BoundingBox& box) const {
    bool all = true;
    for (int axis = 0; axis < 3; ++axis)
        all = all && hasKey(scale_ * box.min[axis]) && hasKey(scale_ * box.max[axis]);
    return all;
}

void WeldGrid::keys(std::span<const Vec3> points, WeldKey* keys) const {
    static_assert(sizeof(Vec3) == 3 * sizeof(float) && sizeof(WeldKey) == 3 * sizeof(std::int32_t));
    const float* coordinates = reinterpret_cast<const float*>(points.data());
    auto* rounded = reinterpret_cast<std::int32_t*>(keys);
    const float scale = scale_;
    int outside = 0;
    for (std::size_t i = 0; i < 3 * points.size(); ++i) {
        const float scaled = scale * coordinates[i];
        const bool valid = hasKey(scaled);
        outside |= static_cast<int>(!valid);
        // Half away from zero without a call, so that the loop vectorises: the cut-off part is
        // exact in 32-bit float, unlike scaled + 0.5, which carries 0.49999997 up to 1.
        const float bounded = valid ? scaled : 0.0F;
        const auto whole = static_cast<std::int32_t>(bounded);
        const float cutOff = bounded - static_cast<float>(whole);
        rounded[i] = whole + static_cast<std::int32_t>(cutOff >= 0.5F) -
                     static_cast<std::int32_t>(cutOff <= -0.5F);
    }
    precondition(outside == 0, "a vertex is too far from the origin, or not finite, to be welded");
}

} // namespace ostrella
