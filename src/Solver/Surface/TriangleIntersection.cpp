#include "Solver/Surface/TriangleIntersection.h"

#include "Solver/Surface/ExactSign.h"

#include <algorithm>
#include <optional>

namespace ostrella {

namespace {

using Corners = std::array<DVec3, 3>;

/// The axis along which a triangle is seen with an area; none for one that is a line or a point.
std::optional<int> openAxis(const Corners& t) {
    for (int axis = 0; axis < 3; ++axis) {
        if (ExactSign::area(t[0], t[1], t[2], axis) != 0)
            return axis;
    }
    return std::nullopt;
}

/// Of a point on the line through p and q, seen along `axis`: whether it is between them.
bool isWithin(const DVec3& point, const DVec3& p, const DVec3& q, int axis) {
    for (const int i : {(axis + 1) % 3, (axis + 2) % 3}) {
        if (point[i] < std::min(p[i], q[i]) || point[i] > std::max(p[i], q[i]))
            return false;
    }
    return true;
}

/// Two segments, seen along `axis`.
bool segmentsMeet(const DVec3& p, const DVec3& q, const DVec3& r, const DVec3& s, int axis) {
    const int pSide = ExactSign::area(r, s, p, axis);
    const int qSide = ExactSign::area(r, s, q, axis);
    const int rSide = ExactSign::area(p, q, r, axis);
    const int sSide = ExactSign::area(p, q, s, axis);
    if (pSide * qSide < 0 && rSide * sSide < 0)
        return true;
    return (pSide == 0 && isWithin(p, r, s, axis)) || (qSide == 0 && isWithin(q, r, s, axis)) ||
           (rSide == 0 && isWithin(r, p, q, axis)) || (sSide == 0 && isWithin(s, p, q, axis));
}

/// A point in the plane of a triangle, seen along an axis along which the triangle has an area.
bool holds(const Corners& t, const DVec3& point, int axis) {
    const int a = ExactSign::area(t[0], t[1], point, axis);
    const int b = ExactSign::area(t[1], t[2], point, axis);
    const int c = ExactSign::area(t[2], t[0], point, axis);
    return (a >= 0 && b >= 0 && c >= 0) || (a <= 0 && b <= 0 && c <= 0);
}

/// A segment in the plane of a triangle.
bool flatSegmentMeets(const DVec3& p, const DVec3& q, const Corners& t, int axis) {
    return holds(t, p, axis) || holds(t, q, axis) || segmentsMeet(p, q, t[0], t[1], axis) ||
           segmentsMeet(p, q, t[1], t[2], axis) || segmentsMeet(p, q, t[2], t[0], axis);
}

/// A segment whose ends are not both in the triangle's plane and not both on one side of it.
bool crossingSegmentMeets(const DVec3& p, const DVec3& q, const Corners& t) {
    const int a = ExactSign::volume(p, q, t[0], t[1]);
    const int b = ExactSign::volume(p, q, t[1], t[2]);
    const int c = ExactSign::volume(p, q, t[2], t[0]);
    return (a >= 0 && b >= 0 && c >= 0) || (a <= 0 && b <= 0 && c <= 0);
}

int sideOf(const Corners& t, const DVec3& point) {
    return ExactSign::volume(t[0], t[1], t[2], point);
}

/// The ends of what a triangle without area is: the two corners furthest apart.
std::array<DVec3, 2> ends(const Corners& t) {
    std::array<DVec3, 2> result{t[0], t[0]};
    const auto less = [](const DVec3& a, const DVec3& b) {
        return a.x != b.x ? a.x < b.x : a.y != b.y ? a.y < b.y : a.z < b.z;
    };
    // The corners are on one line, and along a line this order is that of the places.
    for (const DVec3& corner : t) {
        if (less(corner, result[0]))
            result[0] = corner;
        if (less(result[1], corner))
            result[1] = corner;
    }
    return result;
}

/// Two segments in space.
bool segmentsMeet(const std::array<DVec3, 2>& a, const std::array<DVec3, 2>& b) {
    if (ExactSign::volume(a[0], a[1], b[0], b[1]) != 0)
        return false;
    // In a common plane they meet if they are seen to along every axis: along one of them the plane
    // is seen open, and there it is decided.
    return segmentsMeet(a[0], a[1], b[0], b[1], 0) && segmentsMeet(a[0], a[1], b[0], b[1], 1) &&
           segmentsMeet(a[0], a[1], b[0], b[1], 2);
}

} // namespace

bool segmentMeetsTriangle(const DVec3& p, const DVec3& q, const Corners& t) {
    const int pSide = sideOf(t, p);
    const int qSide = sideOf(t, q);
    if (pSide * qSide > 0)
        return false;
    if (pSide != 0 || qSide != 0)
        return crossingSegmentMeets(p, q, t);
    if (const auto axis = openAxis(t))
        return flatSegmentMeets(p, q, t, *axis);
    return segmentsMeet({p, q}, ends(t));
}

bool trianglesMeet(const Corners& a, const Corners& b) {
    std::array<int, 3> aSides;
    std::array<int, 3> bSides;
    for (std::size_t i = 0; i < 3; ++i)
        aSides[i] = sideOf(b, a[i]);
    const auto onOneSide = [](const std::array<int, 3>& sides) {
        return sides[0] != 0 && sides[0] == sides[1] && sides[0] == sides[2];
    };
    if (onOneSide(aSides))
        return false;
    for (std::size_t i = 0; i < 3; ++i)
        bSides[i] = sideOf(a, b[i]);
    if (onOneSide(bSides))
        return false;

    const auto anyEdgeMeets = [](const Corners& of, const std::array<int, 3>& sides,
                                  const Corners& other) {
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = i == 2 ? 0 : i + 1;
            if (sides[i] * sides[j] > 0)
                continue;
            if (sides[i] != 0 || sides[j] != 0) {
                if (crossingSegmentMeets(of[i], of[j], other))
                    return true;
            } else if (segmentMeetsTriangle(of[i], of[j], other)) {
                return true;
            }
        }
        return false;
    };
    return anyEdgeMeets(a, aSides, b) || anyEdgeMeets(b, bSides, a);
}

} // namespace ostrella
