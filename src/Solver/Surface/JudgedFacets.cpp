#include "Solver/Surface/JudgedFacets.h"

#include "Solver/Geometry/CornerIndices.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ostrella {

namespace {

/// The mesh's weld grid; a coarser one, as fine as 32-bit coordinates, for a body so far from the
/// origin that the usual one has no keys for it.
WeldGrid gridOf(const TriangleMesh& mesh, float furthest) {
    const WeldGrid usual(mesh.boundingBox());
    constexpr float mostCells = 1e9F;
    return usual.covers(mesh.boundingBox())
               ? usual
               : WeldGrid(mesh.boundingBox(), std::max(furthest / mostCells, 1e-30F));
}

} // namespace

JudgedFacets JudgedFacets::of(const TriangleMesh& mesh, const CancellationToken& token) {
    JudgedFacets result;
    if (mesh.empty())
        return result;
    const Vec3 low = mesh.boundingMin();
    const Vec3 high = mesh.boundingMax();
    const Vec3 size = mesh.size();
    const Vec3 reach = glm::max(glm::abs(low), glm::abs(high));
    const float furthest = std::max({reach.x, reach.y, reach.z});
    result.extent = std::max({size.x, size.y, size.z});
    result.middle = 0.5 * (DVec3(low) + DVec3(high));
    // Four units in the last place of the greatest coordinate.
    result.tolerance = std::ldexp(static_cast<double>(furthest), -22);

    const auto corners = mesh.positions().span();
    result.indices = LargeBuffer<std::uint32_t>(corners.size());
    result.marks = LargeBuffer<std::uint8_t>(mesh.facetCount());
    std::memset(result.marks.data(), 0, result.marks.size());
    LargeBuffer<std::uint32_t> firsts(corners.size());
    constexpr std::size_t between = std::size_t{1} << 18;
    const std::size_t vertices = forEachCornerIndex(
        mesh, gridOf(mesh, furthest), [&](std::size_t corner, std::uint32_t index, bool isNew) {
            if (corner % between == 0)
                token.throwIfCancelled();
            result.indices[corner] = index;
            if (isNew)
                firsts[index] = static_cast<std::uint32_t>(corner);
        });
    result.vertices = LargeBuffer<Vec3>(vertices);
    for (std::size_t i = 0; i < vertices; ++i)
        result.vertices[i] = corners[firsts[i]];
    return result;
}

} // namespace ostrella
