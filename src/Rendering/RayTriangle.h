#pragma once

#include "Models/Vector.h"

#include <glm/vec3.hpp>

#include <cmath>
#include <limits>
#include <optional>

namespace ostrella {

/// A ray in 64-bit floats against triangles in 32-bit ones: the products of a triangle test are
/// then free of rounding or nearly so, and a facet seen on edge is not met by a ray that passes it
/// by. Any order of tests, with any triangles left out that the ray misses, gives the same nearest
/// hit.
class RayTriangle {
public:
    RayTriangle(const Vec3& origin, const Vec3& direction)
        : origin_(origin), direction_(direction) {}

    /// The distance to the triangle in units of the direction's length, above 0. The third vertex
    /// order does not matter: both sides count. After Möller and Trumbore 1997.
    std::optional<double> distanceTo(const Vec3& a, const Vec3& b, const Vec3& c) const {
        constexpr double leastDeterminant = 1e-30;
        constexpr double mostDeterminant = std::numeric_limits<float>::max();
        const glm::dvec3 corner(a);
        const glm::dvec3 ab = glm::dvec3(b) - corner;
        const glm::dvec3 ac = glm::dvec3(c) - corner;
        const glm::dvec3 p = cross(direction_, ac);
        const double determinant = dot(ab, p);
        const double size = std::abs(determinant);
        if (!(size > leastDeterminant && size <= mostDeterminant))
            return std::nullopt;
        const glm::dvec3 s = origin_ - corner;
        const double u = dot(s, p) / determinant;
        if (!(u >= 0.0 && u <= 1.0))
            return std::nullopt;
        const glm::dvec3 q = cross(s, ab);
        const double v = dot(direction_, q) / determinant;
        if (!(v >= 0.0 && u + v <= 1.0))
            return std::nullopt;
        const double t = dot(ac, q) / determinant;
        if (!(t > 0.0))
            return std::nullopt;
        return t;
    }

    const glm::dvec3& origin() const { return origin_; }
    const glm::dvec3& direction() const { return direction_; }

private:
    static double dot(const glm::dvec3& a, const glm::dvec3& b) {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    }
    static glm::dvec3 cross(const glm::dvec3& a, const glm::dvec3& b) {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }

    glm::dvec3 origin_;
    glm::dvec3 direction_;
};

} // namespace ostrella
