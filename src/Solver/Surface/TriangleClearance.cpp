#include "Solver/Surface/TriangleClearance.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>

namespace ostrella::TriangleClearance {

namespace {

/// Least angle between two triangles at a common corner, rad.
constexpr double leastAngle = 1e-4;

struct Range {
    double low;
    double high;
};

Range along(const DVec3& axis, const Corners& triangle) {
    const double p = glm::dot(axis, triangle[0]);
    const double q = glm::dot(axis, triangle[1]);
    const double r = glm::dot(axis, triangle[2]);
    return {std::min({p, q, r}), std::max({p, q, r})};
}

/// Whether the axis parts the two; an axis that is next to nothing parts nothing.
bool parts(const DVec3& axis, const Corners& a, const Corners& b, double clearance) {
    const double length = std::sqrt(glm::dot(axis, axis));
    if (!(length > 0)) {
        return false;
    }
    const Range first = along(axis, a);
    const Range second = along(axis, b);
    return std::max(first.low - second.high, second.low - first.high) > clearance * length;
}

/// All of these unit vectors lean towards `axis` by a clear angle.
bool allLeanTowards(const DVec3& axis, const std::array<DVec3, 4>& vectors) {
    const double least = leastAngle * std::sqrt(glm::dot(axis, axis));
    return least > 0 &&
           std::ranges::all_of(vectors, [&](const DVec3& v) { return glm::dot(axis, v) > least; });
}

/// Two unit vectors lie clearly on the same side of the plane across `axis`.
bool beyond(const DVec3& axis, const DVec3& first, const DVec3& second) {
    const double least = leastAngle * std::sqrt(glm::dot(axis, axis));
    const double a = glm::dot(axis, first);
    const double b = glm::dot(axis, second);
    return least > 0 && ((a > least && b > least) || (a < -least && b < -least));
}

/// A direction that all four unit vectors lean towards clearly, if there is one: the sum of those
/// normals of pairs of them that none leans away from.
bool inOneHalfSpace(const std::array<DVec3, 4>& vectors) {
    DVec3 sum(0);
    const auto consider = [&](const DVec3& axis) {
        const double length = glm::length(axis);
        if (!(length > leastAngle)) {
            return;
        }
        int towards = 0;
        int away = 0;
        for (const DVec3& v : vectors) {
            const double leaning = glm::dot(axis, v) / length;
            towards += leaning > 1e-9 ? 1 : 0;
            away += leaning < -1e-9 ? 1 : 0;
        }
        if (towards > 0 && away == 0) {
            sum += axis / length;
        } else if (away > 0 && towards == 0) {
            sum -= axis / length;
        }
    };
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = i + 1; j < 4; ++j) {
            const DVec3 normal = glm::cross(vectors[i], vectors[j]);
            consider(normal);
            // For vectors that lie in one plane.
            consider(glm::cross(normal, vectors[i]));
            consider(glm::cross(normal, vectors[j]));
        }
    }
    return allLeanTowards(sum, vectors);
}

} // namespace

bool apart(const Corners& a, const Corners& b, double clearance) {
    // About the first corner, so that the products stay small far from the middle.
    const Corners p{DVec3(0), a[1] - a[0], a[2] - a[0]};
    const Corners q{b[0] - a[0], b[1] - a[0], b[2] - a[0]};
    const Corners alongP{p[1], p[2] - p[1], -p[2]};
    const Corners alongQ{q[1] - q[0], q[2] - q[1], q[0] - q[2]};
    const DVec3 normalP = glm::cross(alongP[0], alongP[1]);
    if (parts(normalP, p, q, clearance)) {
        return true;
    }
    const DVec3 normalQ = glm::cross(alongQ[0], alongQ[1]);
    if (parts(normalQ, p, q, clearance)) {
        return true;
    }
    for (const DVec3& edge : alongP) {
        for (const DVec3& other : alongQ) {
            if (parts(glm::cross(edge, other), p, q, clearance)) {
                return true;
            }
        }
    }
    for (int i = 0; i < 3; ++i) {
        if (parts(glm::cross(normalP, alongP[i]), p, q, clearance) ||
            parts(glm::cross(normalQ, alongQ[i]), p, q, clearance)) {
            return true;
        }
    }
    return false;
}

bool apartBeyondCorner(
    const DVec3& apex, const std::array<DVec3, 2>& a, const std::array<DVec3, 2>& b) {
    const std::array<DVec3, 4> leaning{glm::normalize(a[0] - apex), glm::normalize(a[1] - apex),
        -glm::normalize(b[0] - apex), -glm::normalize(b[1] - apex)};
    // Cones share nothing but their tip if some plane has one of them before it and the other
    // behind. Most lead away from each other: the plane across both middles will do.
    if (allLeanTowards(leaning[0] + leaning[1] + leaning[2] + leaning[3], leaning)) {
        return true;
    }
    const DVec3 normalA = glm::cross(leaning[0], leaning[1]);
    const DVec3 normalB = glm::cross(leaning[2], leaning[3]);
    return beyond(normalA, leaning[2], leaning[3]) || beyond(normalB, leaning[0], leaning[1]) ||
           inOneHalfSpace(leaning);
}

bool apartBeyondEdge(
    const DVec3& from, const DVec3& to, const DVec3& a, const DVec3& b, double leastAngleCosine) {
    const DVec3 edge = to - from;
    const double squared = glm::dot(edge, edge);
    if (!(squared > 0)) {
        return false;
    }
    const DVec3 p = (a - from) - edge * (glm::dot(a - from, edge) / squared);
    const DVec3 q = (b - from) - edge * (glm::dot(b - from, edge) / squared);
    return glm::dot(p, q) < leastAngleCosine * std::sqrt(glm::dot(p, p) * glm::dot(q, q));
}

} // namespace ostrella::TriangleClearance
