#include "Rendering/ViewportPicking.h"

#include "Models/Precondition.h"
#include "Rendering/RayTriangle.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella::ViewportPicking {

Ray Ray::transformed(const Mat4& by) const {
    return {Vec3(by * Vec4(origin, 1.0F)), Vec3(by * Vec4(direction, 0.0F))};
}

std::optional<Ray> ray(Vec2 through, Vec2 viewSize, const ArcBallCamera& camera, Vec2 shift) {
    if (!(viewSize.x > 1.0F && viewSize.y > 1.0F))
        return std::nullopt;
    const float aspect = viewSize.x / viewSize.y;
    const float ys = 1.0F / std::tan(camera.fovY / 2.0F);
    const float xs = ys / aspect;
    // The lens shift comes off first, so that what is picked is what is seen there.
    const Vec2 device = 2.0F * through / viewSize - 1.0F - shift;
    // The camera's own axes are the rows of its matrix.
    const Mat4 view = camera.viewMatrix();
    const auto row = [&](int i) { return Vec3(view[0][i], view[1][i], view[2][i]); };
    const Vec3 direction = device.x / xs * row(0) + device.y / ys * row(1) - row(2);
    return Ray{camera.eye(), direction / std::sqrt(squaredLength(direction))};
}

bool hitsSphere(const Ray& ray, const Vec3& centre, float radius) {
    // 64-bit floats: seen from far off, the difference of two squares would be all rounding.
    const glm::dvec3 v = glm::dvec3(centre) - glm::dvec3(ray.origin);
    const glm::dvec3 d(ray.direction);
    const double squaredRadius = static_cast<double>(radius) * static_cast<double>(radius);
    const double squaredDistance = v.x * v.x + v.y * v.y + v.z * v.z;
    if (squaredDistance <= squaredRadius)
        return true;
    const double along = d.x * v.x + d.y * v.y + d.z * v.z;
    return along > 0.0 && squaredDistance - along * along <= squaredRadius;
}

std::optional<float> nearestHit(const Ray& ray, std::span<const Vec3> positions, std::size_t stride,
    std::span<const std::uint32_t> indices) {
    precondition(stride >= 1, "positions to pick from have no stride");
    const std::size_t count = positions.size() / stride + (positions.size() % stride != 0 ? 1 : 0);
    const RayTriangle test(ray.origin, ray.direction);
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i + 3 <= indices.size(); i += 3) {
        const std::size_t a = indices[i];
        const std::size_t b = indices[i + 1];
        const std::size_t c = indices[i + 2];
        if (std::max({a, b, c}) >= count)
            continue;
        const std::optional<double> distance =
            test.distanceTo(positions[a * stride], positions[b * stride], positions[c * stride]);
        if (distance && *distance < nearest)
            nearest = *distance;
    }
    if (nearest == std::numeric_limits<double>::infinity())
        return std::nullopt;
    return static_cast<float>(nearest);
}

} // namespace ostrella::ViewportPicking
