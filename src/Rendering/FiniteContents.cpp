#include "Rendering/FiniteContents.h"

#include <glm/common.hpp>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella::FiniteContents {

bool isPlaced(const Vec3& point) {
    // A comparison with what is no number fails.
    return std::abs(point.x) <= farthest && std::abs(point.y) <= farthest &&
           std::abs(point.z) <= farthest;
}

BoundingBox boundsOf(const BoundingBox& box, std::span<const Vec3> points) {
    if (isPlaced(box.min) && isPlaced(box.max))
        return box;
    std::optional<BoundingBox> placed;
    for (const Vec3& point : points) {
        if (!isPlaced(point))
            continue;
        if (!placed)
            placed = BoundingBox{point, point};
        placed->min = glm::min(placed->min, point);
        placed->max = glm::max(placed->max, point);
    }
    return placed.value_or(BoundingBox{});
}

Vec2 rangeOf(float least, float greatest, std::span<const float> values, std::size_t stride) {
    if (std::isfinite(least) && std::isfinite(greatest))
        return {least, greatest};
    std::optional<ValueRange> finite;
    for (std::size_t i = 0; i < values.size(); i += stride) {
        if (!std::isfinite(values[i]))
            continue;
        if (!finite)
            finite = ValueRange{values[i], values[i]};
        finite->include(values[i]);
    }
    return finite ? Vec2(finite->min, finite->max) : Vec2(0.0F, 1.0F);
}

float withinReach(float value, Vec2 range) {
    if (std::isfinite(value))
        return value;
    return value > range.y ? range.y : range.x;
}

SharedArray<std::uint32_t> presentPrimitives(
    const SharedArray<std::uint32_t>& indices, std::size_t corners, std::size_t vertexCount) {
    const auto present = [&](std::uint32_t index) { return index < vertexCount; };
    const std::size_t whole = indices.size() - indices.size() % corners;
    if (whole == indices.size() && std::all_of(indices.begin(), indices.end(), present))
        return indices;
    std::vector<std::uint32_t> kept;
    kept.reserve(whole);
    for (std::size_t i = 0; i < whole; i += corners) {
        const std::uint32_t* primitive = indices.data() + i;
        if (std::all_of(primitive, primitive + corners, present))
            kept.insert(kept.end(), primitive, primitive + corners);
    }
    return kept;
}

} // namespace ostrella::FiniteContents
