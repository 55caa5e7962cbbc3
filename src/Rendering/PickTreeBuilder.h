#pragma once

#include "Rendering/PickTree.h"

#include "Models/LargeBuffer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella {

/// Builds a PickTree from the top down: each share of the triangles is divided where its longest
/// side is halved, or into two equal parts where that would leave nearly all on one side. So even
/// a model with far outliers has a shallow tree, and the time is one pass a level.
class PickTreeBuilder {
public:
    explicit PickTreeBuilder(PickTree& tree);

private:
    /// A triangle by the middle of its box.
    struct Item {
        Vec3 middle;
        std::uint32_t triangle;
    };
    /// The least box around the middles of some items.
    struct Extent {
        Vec3 min;
        Vec3 max;
    };
    /// Items that are still to become a node.
    struct Share {
        std::uint32_t node;
        std::size_t begin;
        std::size_t end;
        Extent extent;
    };

    void collect();
    void build();
    /// Where the second part of a share begins, and the extents of both parts.
    std::size_t divide(const Share& share, Extent& left, Extent& right);
    Extent extentOf(std::size_t begin, std::size_t end) const;
    void encloseAll();

    PickTree& tree_;
    LargeBuffer<Item> items_;
    std::size_t count_ = 0;
};

} // namespace ostrella
