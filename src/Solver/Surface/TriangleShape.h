#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>

namespace ostrella {

/// Measures of single triangles.
namespace TriangleShape {

/// 1 for an equilateral triangle, 0 for one without area: 4√3 · area / sum of the squared edges.
inline double quality(const DVec3& a, const DVec3& b, const DVec3& c) {
    const DVec3 ab = b - a;
    const DVec3 bc = c - b;
    const DVec3 ca = a - c;
    const double squares = glm::dot(ab, ab) + glm::dot(bc, bc) + glm::dot(ca, ca);
    return squares > 0 ? 2 * std::sqrt(3.0) * glm::length(glm::cross(ab, ca)) / squares : 0;
}

/// Squared distance of a point from the nearest point of a triangle (regions of the corners, the
/// sides and the inside, after Ericson, "Real-time collision detection", 2005, 5.1.5).
inline double squaredDistance(const DVec3& p, const DVec3& a, const DVec3& b, const DVec3& c) {
    const auto squared = [](const DVec3& v) { return glm::dot(v, v); };
    const DVec3 ab = b - a;
    const DVec3 ac = c - a;
    const DVec3 ap = p - a;
    const double d1 = glm::dot(ab, ap);
    const double d2 = glm::dot(ac, ap);
    if (d1 <= 0 && d2 <= 0) {
        return squared(ap);
    }
    const DVec3 bp = p - b;
    const double d3 = glm::dot(ab, bp);
    const double d4 = glm::dot(ac, bp);
    if (d3 >= 0 && d4 <= d3) {
        return squared(bp);
    }
    const double vc = d1 * d4 - d3 * d2;
    if (vc <= 0 && d1 >= 0 && d3 <= 0) {
        return squared(ap - ab * (d1 / std::max(d1 - d3, 1e-300)));
    }
    const DVec3 cp = p - c;
    const double d5 = glm::dot(ab, cp);
    const double d6 = glm::dot(ac, cp);
    if (d6 >= 0 && d5 <= d6) {
        return squared(cp);
    }
    const double vb = d5 * d2 - d1 * d6;
    if (vb <= 0 && d2 >= 0 && d6 <= 0) {
        return squared(ap - ac * (d2 / std::max(d2 - d6, 1e-300)));
    }
    const double va = d3 * d6 - d5 * d4;
    if (va <= 0 && d4 - d3 >= 0 && d5 - d6 >= 0) {
        return squared(bp - (c - b) * ((d4 - d3) / std::max((d4 - d3) + (d5 - d6), 1e-300)));
    }
    const DVec3 normal = glm::cross(ab, ac);
    const double height = glm::dot(normal, ap);
    return height * height / std::max(squared(normal), 1e-300);
}

} // namespace TriangleShape

} // namespace ostrella
