#pragma once

#include "Models/Cancellation.h"
#include "Models/LargeBuffer.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"
#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ostrella {

/// A model's facets on shared vertices, and what is found out about each on the way.
struct JudgedFacets {
    enum Mark : std::uint8_t {
        collapsed = 1,   ///< to a line or a point
        leftOut = 2,     ///< collapsed on the weld grid, or stood for by another one
        oddEdge = 4,     ///< has an edge of an odd number of facets
        disagreeing = 8, ///< has an edge along which another one runs in the same direction
    };

    LargeBuffer<Vec3> vertices;
    LargeBuffer<std::uint32_t> indices; ///< three a facet
    LargeBuffer<std::uint8_t> marks;    ///< of each facet, sums of Mark
    DVec3 middle{0};                    ///< of the bounding box
    float extent = 0;
    /// What the rounding of the coordinates may come to, m.
    double tolerance = 0;

    std::size_t count() const { return marks.size(); }
    bool is(std::size_t facet, Mark mark) const { return (marks[facet] & mark) != 0; }
    void mark(std::size_t facet, Mark mark) {
        marks[facet] = static_cast<std::uint8_t>(marks[facet] | mark);
    }
    std::array<std::uint32_t, 3> cornersOf(std::size_t facet) const {
        return {indices[3 * facet], indices[3 * facet + 1], indices[3 * facet + 2]};
    }
    DVec3 at(std::uint32_t vertex) const { return DVec3(vertices[vertex]); }
    std::array<DVec3, 3> points(std::size_t facet) const {
        const auto [a, b, c] = cornersOf(facet);
        return {at(a), at(b), at(c)};
    }
    Vec3 middleOf(std::size_t facet) const {
        const auto [a, b, c] = points(facet);
        return Vec3((a + b + c) / 3.0);
    }

    /// Corners on one key of the mesh's weld grid become one vertex, at the place of the first.
    static JudgedFacets of(const TriangleMesh& mesh, const CancellationToken& token);
};

} // namespace ostrella
