#pragma once

#include "Models/Cancellation.h"
#include "Models/LargeBuffer.h"
#include "Solver/Surface/BoxTree.h"
#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

namespace ostrella {

/// A tree of boxes over the triangles of a surface, for the point nearest to another one and for
/// triangles near a box. Immutable; safe on several threads. It holds its own copy of the corners.
class TriangleTree {
public:
    struct Nearest {
        std::uint32_t triangle = 0;
        DVec3 point{0};
        double distance = 0;
    };

    /// At most 2³¹ triangles; their vertices are finite.
    /// Throws CancellationError.
    explicit TriangleTree(const IndexedSurface& surface, const CancellationToken& token = {});

    /// The nearest point of any triangle, if one is nearer than `within`. Triangles that collapse
    /// to a line or a point count as that. Of triangles equally near it is the one of the least
    /// index.
    std::optional<Nearest> nearest(
        const DVec3& point, double within = std::numeric_limits<double>::infinity()) const;

    /// Calls `visit` with each triangle whose box meets the box `low` to `high`.
    void visitBox(
        const DVec3& low, const DVec3& high, const std::function<void(std::uint32_t)>& visit) const;

    std::size_t triangleCount() const { return tree_.order().size(); }

private:
    BoxFrame frame_;
    BoxTree tree_;
    LargeBuffer<std::array<DVec3, 3>> corners_; ///< in the tree's order
};

/// The point of a triangle that is nearest to `point`.
DVec3 nearestOnTriangle(const DVec3& point, const std::array<DVec3, 3>& corners);

} // namespace ostrella
