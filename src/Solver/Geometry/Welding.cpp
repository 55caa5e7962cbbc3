#include "Solver/Geometry/Welding.h"

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/CornerIndices.h"
#include "Solver/Geometry/EdgeBuckets.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

namespace ostrella {

namespace {

/// The vertices of a weld under way: positions, and sums of the adjacent facets' normals.
class Vertices {
public:
    explicit Vertices(std::size_t expected) : positions_(expected), normals_(expected) {}

    void append(std::size_t index, const Vec3& position, const Vec3& normal) {
        if (index == positions_.size())
            grow();
        positions_[index] = position;
        normals_[index] = normal;
    }

    void add(std::size_t index, const Vec3& normal) { normals_[index] += normal; }

    WeldedMesh finish(std::size_t count, LargeBuffer<std::uint32_t> indices) && {
        for (std::size_t i = 0; i < count; ++i) {
            const float squared = squaredLength(normals_[i]);
            normals_[i] =
                squared > 1e-12F ? normals_[i] / std::sqrt(squared) : Vec3(0.0F, 1.0F, 0.0F);
        }
        positions_.truncate(count);
        normals_.truncate(count);
        return {std::move(positions_), std::move(normals_), std::move(indices)};
    }

private:
    void grow() {
        positions_ = enlarged(positions_);
        normals_ = enlarged(normals_);
    }

    static LargeBuffer<Vec3> enlarged(const LargeBuffer<Vec3>& old) {
        LargeBuffer<Vec3> larger(2 * old.size());
        std::copy(old.begin(), old.end(), larger.begin());
        return larger;
    }

    LargeBuffer<Vec3> positions_;
    LargeBuffer<Vec3> normals_;
};

/// How many values of `uses` occur only once.
std::size_t singles(std::span<std::uint32_t> uses) {
    std::size_t found = 0;
    constexpr std::size_t few = 24;
    if (uses.size() <= few) {
        for (const std::uint32_t use : uses)
            found += static_cast<std::size_t>(std::count(uses.begin(), uses.end(), use) == 1);
        return found;
    }
    std::sort(uses.begin(), uses.end());
    for (auto at = uses.begin(); at != uses.end();) {
        const auto next = std::find_if(at, uses.end(), [at](auto use) { return use != *at; });
        found += static_cast<std::size_t>(next - at == 1);
        at = next;
    }
    return found;
}

} // namespace

WeldedMesh welded(const TriangleMesh& mesh, std::optional<float> epsilon) {
    const Vec3* positions = mesh.positions().data();
    const std::size_t corners = mesh.positions().size();
    if (corners < 3)
        return {};
    LargeBuffer<std::uint32_t> indices(corners);
    Vertices vertices(corners / 6 + 16);
    Vec3 facetNormal;
    const std::size_t count = forEachCornerIndex(mesh, WeldGrid(mesh.boundingBox(), epsilon),
        [&](std::size_t corner, std::uint32_t index, bool isNew) {
            if (corner % 3 == 0) {
                const Vec3& a = positions[corner];
                facetNormal = cross(positions[corner + 1] - a, positions[corner + 2] - a);
            }
            if (isNew)
                vertices.append(index, positions[corner], facetNormal);
            else
                vertices.add(index, facetNormal);
            indices[corner] = index;
        });
    return std::move(vertices).finish(count, std::move(indices));
}

std::size_t openEdgeCount(const TriangleMesh& mesh, std::optional<float> epsilon) {
    const std::size_t corners = mesh.positions().size();
    if (corners < 3)
        return 0;
    LargeBuffer<std::uint32_t> indices(corners);
    const std::size_t count = forEachCornerIndex(mesh, WeldGrid(mesh.boundingBox(), epsilon),
        [&](std::size_t corner, std::uint32_t index, bool) { indices[corner] = index; });
    EdgeBuckets<std::uint32_t> edges(std::span<const std::uint32_t>(indices.data(), corners), count,
        [](std::uint32_t larger, std::uint32_t) { return larger; });
    std::size_t open = 0;
    for (std::size_t vertex = 0; vertex < edges.bucketCount(); ++vertex)
        open += singles(edges.bucket(vertex));
    return open;
}

} // namespace ostrella
