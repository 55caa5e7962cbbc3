#include "Rendering/ViewportFraming.h"

#include <glm/common.hpp>

#include <algorithm>

namespace ostrella::ViewportFraming {

namespace {

/// Scales two opposite insets so that their sum is at most `limit`.
void scaleBack(double& first, double& second, double limit) {
    const double sum = first + second;
    if (sum > limit) {
        const double factor = limit / sum;
        first *= factor;
        second *= factor;
    }
}

} // namespace

ViewportInsets effectiveInsets(Vec2 viewSize, const ViewportInsets& insets, float minFreeFraction) {
    ViewportInsets result{std::max(insets.top, 0.0), std::max(insets.leading, 0.0),
        std::max(insets.bottom, 0.0), std::max(insets.trailing, 0.0)};
    const double covered = 1.0 - static_cast<double>(minFreeFraction);
    scaleBack(result.leading, result.trailing, covered * static_cast<double>(viewSize.x));
    scaleBack(result.top, result.bottom, covered * static_cast<double>(viewSize.y));
    return result;
}

BoundingBox transformedBounds(const Vec3& min, const Vec3& max, const Mat4& matrix) {
    if (matrix == Mat4(1.0F)) {
        return {min, max};
    }
    const auto corner = [&](unsigned number) {
        const Vec4 point((number & 1U) != 0 ? max.x : min.x, (number & 2U) != 0 ? max.y : min.y,
            (number & 4U) != 0 ? max.z : min.z, 1.0F);
        return Vec3(matrix * point);
    };
    BoundingBox result{corner(0), corner(0)};
    for (unsigned number = 1; number < 8; ++number) {
        result.min = glm::min(result.min, corner(number));
        result.max = glm::max(result.max, corner(number));
    }
    return result;
}

} // namespace ostrella::ViewportFraming
