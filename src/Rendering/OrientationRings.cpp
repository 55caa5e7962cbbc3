#include "Rendering/OrientationRings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace ostrella::OrientationRings {

namespace {

/// The distance from a point to the segment from `a` to `b`; a segment of no length is its start.
float distanceToSegment(Vec2 point, Vec2 a, Vec2 b) {
    const Vec2 along = b - a;
    const Vec2 to = point - a;
    const float squared = along.x * along.x + along.y * along.y;
    const float share =
        squared > 0.0F ? std::clamp((to.x * along.x + to.y * along.y) / squared, 0.0F, 1.0F) : 0.0F;
    const Vec2 off = to - share * along;
    return std::sqrt(off.x * off.x + off.y * off.y);
}

float distanceToRing(Vec2 point, const std::vector<std::optional<Vec2>>& ring) {
    float nearest = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const std::optional<Vec2>& a = ring[i];
        const std::optional<Vec2>& b = ring[i + 1 < ring.size() ? i + 1 : 0];
        if (a && b)
            nearest = std::min(nearest, distanceToSegment(point, *a, *b));
    }
    return nearest;
}

} // namespace

std::vector<Vec3> points(OrientationAxis axis, const Vec3& centre, float radius, int segments) {
    // x: (y, z), y: (z, x), z: (x, y), so that the ring runs right-handed about its axis.
    const int u = (static_cast<int>(axis) + 1) % 3;
    const int v = (static_cast<int>(axis) + 2) % 3;
    std::vector<Vec3> result;
    result.reserve(static_cast<std::size_t>(std::max(segments, 0)));
    for (int i = 0; i < segments; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / segments;
        Vec3 point = centre;
        point[u] += radius * static_cast<float>(std::cos(angle));
        point[v] += radius * static_cast<float>(std::sin(angle));
        result.push_back(point);
    }
    return result;
}

std::optional<OrientationAxis> hitTest(
    Vec2 point, std::span<const ProjectedRing> rings, float tolerance) {
    std::optional<OrientationAxis> nearest;
    float least = std::numeric_limits<float>::infinity();
    for (const auto& [axis, ring] : rings) {
        const float distance = distanceToRing(point, ring);
        const bool isNearer = distance < least || (distance == least && nearest && axis < *nearest);
        if (distance <= tolerance && isNearer) {
            nearest = axis;
            least = distance;
        }
    }
    return nearest;
}

} // namespace ostrella::OrientationRings
