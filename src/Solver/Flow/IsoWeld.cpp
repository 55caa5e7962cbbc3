#include "Solver/Flow/IsoWeld.h"

#include "Models/BoundingBox.h"
#include "Solver/Flow/IsoVertexTable.h"
#include "Solver/Flow/SmallComponents.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrella {

namespace {

/// Steps of the weld grid per metre.
float weldScale(std::span<const Vec3> corners) {
    const auto box = BoundingBox::of(corners);
    const Vec3 extent = box.max - box.min;
    return 1.0F / std::max(1e-5F * std::max({extent.x, extent.y, extent.z}), 1e-9F);
}

std::int32_t rounded(float steps) {
    const float whole = std::round(steps);
    constexpr float limit = 0x1p31F;
    if (!(whole >= -limit && whole < limit))
        throw IsoWeldError();
    return static_cast<std::int32_t>(whole);
}

IsoWeldKey keyOf(const Vec3& corner, float scale) {
    return {rounded(scale * corner.x), rounded(scale * corner.y), rounded(scale * corner.z)};
}

/// The shared vertices and triangles, with sums of the triangles' normals at the vertices.
TriangleSurface shared(std::span<const Vec3> corners) {
    const float scale = weldScale(corners);
    TriangleSurface surface;
    IsoVertexTable table(corners.size());
    surface.indices.reserve(corners.size());
    for (std::size_t at = 0; at + 2 < corners.size(); at += 3) {
        const Vec3& a = corners[at];
        const Vec3 normal = cross(corners[at + 1] - a, corners[at + 2] - a);
        if (squaredLength(normal) < 1e-20F)
            continue;
        for (const Vec3& corner : corners.subspan(at, 3)) {
            const std::uint32_t index = table.indexOf(keyOf(corner, scale));
            if (index == surface.positions.size()) {
                surface.positions.push_back(corner);
                surface.normals.push_back(normal);
            } else {
                surface.normals[index] += normal;
            }
            surface.indices.push_back(index);
        }
    }
    return surface;
}

Vec3 unit(const Vec3& normal) {
    const float squared = squaredLength(normal);
    return squared > 1e-12F ? normal / std::sqrt(squared) : Vec3(0.0F, 1.0F, 0.0F);
}

} // namespace

std::optional<IsoSurface> weld(std::span<const float> rawTriangles, float iso) {
    static_assert(sizeof(Vec3) == 3 * sizeof(float));
    const std::span corners(
        reinterpret_cast<const Vec3*>(rawTriangles.data()), rawTriangles.size() / 9 * 3);
    TriangleSurface surface = shared(corners);
    for (Vec3& normal : surface.normals)
        normal = unit(normal);
    surface = filterSmallComponents(std::move(surface));
    if (surface.positions.empty() || surface.indices.size() < 3)
        return std::nullopt;
    const auto box = BoundingBox::of(surface.positions);
    return IsoSurface{std::move(surface.positions), std::move(surface.normals),
        std::move(surface.indices), box.min, box.max, iso};
}

} // namespace ostrella
