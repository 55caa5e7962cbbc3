#include "Solver/Surface/PlanarWidth.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <limits>
#include <tuple>

namespace ostrella {

namespace {

/// Twice the least area at a corner of the hull, as a part of the squared extent.
constexpr double leastTurn = 1e-12;

double crossed(const glm::dvec2& a, const glm::dvec2& b) {
    return a.x * b.y - a.y * b.x;
}

/// The corners of the convex hull, counter-clockwise (Andrew's monotone chain), without those that
/// hardly turn: their signs would be those of rounding.
std::vector<glm::dvec2> convexHull(std::vector<glm::dvec2> points) {
    glm::dvec2 low = points.front();
    glm::dvec2 high = low;
    for (const glm::dvec2& point : points) {
        low = glm::min(low, point);
        high = glm::max(high, point);
    }
    const double least = leastTurn * glm::dot(high - low, high - low);
    std::sort(points.begin(), points.end(), [](const glm::dvec2& a, const glm::dvec2& b) {
        return std::tie(a.x, a.y) < std::tie(b.x, b.y);
    });
    std::vector<glm::dvec2> hull;
    for (int side = 0; side < 2; ++side) {
        const std::size_t start = hull.size();
        for (const glm::dvec2& point : points) {
            while (hull.size() >= start + 2 &&
                   crossed(hull.back() - hull[hull.size() - 2], point - hull.back()) <= least)
                hull.pop_back();
            hull.push_back(point);
        }
        hull.pop_back(); // the other side starts with it
        std::reverse(points.begin(), points.end());
    }
    return hull;
}

} // namespace

double planarWidth(std::vector<glm::dvec2> points) {
    if (points.empty())
        return 0;
    const std::vector<glm::dvec2> hull = convexHull(std::move(points));
    if (hull.size() < 3)
        return 0;
    // One of the lines runs along an edge; the corner farthest from it moves on as the edge does.
    double width = std::numeric_limits<double>::infinity();
    std::size_t far = 0;
    for (std::size_t i = 0; i < hull.size(); ++i) {
        const glm::dvec2& start = hull[i];
        const glm::dvec2 along = hull[(i + 1) % hull.size()] - start;
        const auto distance = [&](std::size_t corner) {
            return crossed(along, hull[corner % hull.size()] - start);
        };
        far = std::max(far, i + 1);
        while (far < i + hull.size() && distance(far + 1) > distance(far))
            ++far;
        width = std::min(width, distance(far) / glm::length(along));
    }
    return width;
}

} // namespace ostrella
