#pragma once

#include "Models/Vector.h"
#include "Rendering/ViewportPicking.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace ostrella {

/// A tree of boxes over the triangles of a large model, so that what is under the pointer is found
/// in a few microseconds: the same answers as ViewportPicking::nearestHit on the same arrays.
/// Immutable; it may be built and asked on any thread.
class PickTree {
public:
    /// Hits nothing.
    PickTree() = default;

    /// The tree over these triangles, arranged as nearestHit takes them. The arrays must outlive
    /// the tree; it holds only boxes and the order of the triangles, about 20 bytes for each.
    PickTree(std::span<const Vec3> positions, std::size_t stride,
        std::span<const std::uint32_t> indices);

    /// The distance to the nearest triangle in units of the direction's length.
    std::optional<float> nearestHit(const ViewportPicking::Ray& ray) const;

    /// What the tree itself holds, bytes.
    std::size_t byteCount() const;

private:
    friend class PickTreeBuilder;

    /// A box around a share of the triangles.
    struct Node {
        Vec3 min{0.0F};
        std::uint32_t first = 0; ///< of its triangles in order_, or the first of two children
        Vec3 max{0.0F};
        std::uint32_t count = 0; ///< of its triangles; 0 for a node with children
    };

    Vec3 corner(std::size_t triangle, std::size_t which) const {
        return positions_[indices_[3 * triangle + which] * stride_];
    }

    std::span<const Vec3> positions_;
    std::size_t stride_ = 1;
    std::span<const std::uint32_t> indices_;
    std::vector<Node> nodes_; ///< the root first, children always behind their parent
    std::vector<std::uint32_t> order_;
};

} // namespace ostrella
