#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <type_traits>

namespace ostrella {

/// The vectors and the column-major matrix of all geometry: 32-bit float, three components packed
/// in 12 bytes, which is how STL files and arrays on the way to disk hold them. Buffers for the
/// graphics device pad to 16 bytes themselves.
using Vec2 = glm::vec2;
using Vec3 = glm::vec3;
using Vec4 = glm::vec4;
using Mat4 = glm::mat4;

static_assert(sizeof(Vec3) == 12 && std::is_trivially_copyable_v<Vec3>);

/// Scalar product, summed x, y, z from left to right. GLM promises no order, and results here are
/// compared with thresholds, so the order is part of them.
inline float dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// a × b, each component one difference of two products.
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Squared length, summed x, y, z from left to right.
inline float squaredLength(const Vec3& v) {
    return dot(v, v);
}

} // namespace ostrella
