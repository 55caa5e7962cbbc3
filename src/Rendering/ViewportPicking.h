#pragma once

#include "Models/Vector.h"
#include "Rendering/ArcBallCamera.h"

#include <cstdint>
#include <optional>
#include <span>

namespace ostrella {

/// What lies under the pointer.
namespace ViewportPicking {

struct Ray {
    Vec3 origin{0.0F};
    Vec3 direction{0.0F};

    /// The ray under a matrix; the direction is not normalised again.
    Ray transformed(const Mat4& by) const;
    bool operator==(const Ray&) const = default;
};

/// The ray through a point of the view (y up); nothing for a view of no size.
std::optional<Ray> ray(Vec2 through, Vec2 viewSize, const ArcBallCamera& camera, Vec2 shift);

bool hitsSphere(const Ray& ray, const Vec3& centre, float radius);

/// The distance along the ray to the nearest of the triangles, in units of its direction's length;
/// `positions` holds one position every `stride` vectors. Triangles with an index beyond them are
/// passed over. Möller and Trumbore 1997.
std::optional<float> nearestHit(const Ray& ray, std::span<const Vec3> positions, std::size_t stride,
    std::span<const std::uint32_t> indices);

} // namespace ViewportPicking

} // namespace ostrella
