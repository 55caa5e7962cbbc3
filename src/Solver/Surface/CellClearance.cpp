#include "Solver/Surface/CellClearance.h"

#include "Solver/Surface/Halves.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <atomic>
#include <optional>

namespace ostrella {

namespace {

using Index = CellLattice::Index;

/// Cells along the edge of the blocks that are handed out to the threads.
constexpr std::int32_t rootEdge = 16;

/// The cells from `first` to before `end`.
struct Block {
    Index first;
    Index end;
};

class ClearanceMarker {
public:
    ClearanceMarker(CellLattice& lattice, const TriangleTree& surface, double offset,
        const CancellationToken& token)
        : lattice_(lattice), surface_(surface), offset_(offset), token_(token) {}

    /// `near` is a point of the surface that may be near, from a larger block around this one.
    void mark(const Block& block, const std::optional<DVec3>& near) {
        // Among thousands of large facets a single search takes long.
        token_.throwIfCancelled();
        const Index last{block.end[0] - 1, block.end[1] - 1, block.end[2] - 1};
        const DVec3 low = lattice_.middle(block.first);
        const DVec3 high = lattice_.middle(last);
        const DVec3 middle = 0.5 * (low + high);
        const double reach = 0.5 * glm::distance(low, high);

        double within = offset_ + reach;
        if (near) {
            const double known = glm::distance(middle, *near);
            if (known + reach < offset_)
                return; // blocked as it stands
            within = std::min(within, known);
        }
        std::optional<DVec3> nearest = near;
        if (const auto found = surface_.nearest(middle, within)) {
            if (found->distance + reach < offset_)
                return;
            nearest = found->point;
        } else if (within >= offset_ + reach) {
            setFree(block);
            return;
        }
        if (block.first != last)
            split(block, nearest);
    }

private:
    void split(const Block& block, const std::optional<DVec3>& near) {
        Index middle;
        for (std::size_t axis = 0; axis < 3; ++axis)
            middle[axis] = block.first[axis] + (block.end[axis] - block.first[axis] + 1) / 2;
        for (unsigned part = 0; part < 8; ++part) {
            Block child = block;
            bool isEmpty = false;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                ((part >> axis) & 1 ? child.first : child.end)[axis] = middle[axis];
                isEmpty = isEmpty || child.first[axis] >= child.end[axis];
            }
            if (!isEmpty)
                mark(child, near);
        }
    }

    void setFree(const Block& block) {
        for (std::int32_t z = block.first[2]; z < block.end[2]; ++z) {
            for (std::int32_t y = block.first[1]; y < block.end[1]; ++y) {
                Cell* row = lattice_.row(y, z);
                std::fill(row + block.first[0], row + block.end[0], Cell::free);
            }
        }
    }

    CellLattice& lattice_;
    const TriangleTree& surface_;
    double offset_;
    const CancellationToken& token_;
};

} // namespace

void markClearance(CellLattice& lattice, const TriangleTree& surface, double offset,
    const CancellationToken& token) {
    std::fill(lattice.cells.begin(), lattice.cells.end(), Cell::blocked);
    std::array<std::int64_t, 3> roots;
    for (std::size_t axis = 0; axis < 3; ++axis)
        roots[axis] = (lattice.counts[axis] + rootEdge - 1) / rootEdge;
    const std::int64_t rootCount = roots[0] * roots[1] * roots[2];

    ClearanceMarker marker(lattice, surface, offset, token);
    std::atomic<std::int64_t> next = 0;
    // Each thread takes the next block that is left: blocks differ much in work. No two blocks
    // share a cell.
    inHalves(2, 2, [&](std::size_t, std::size_t, int) {
        for (std::int64_t root = next++; root < rootCount; root = next++) {
            token.throwIfCancelled();
            const std::array<std::int64_t, 3> at{
                root % roots[0], root / roots[0] % roots[1], root / roots[0] / roots[1]};
            Block block;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                block.first[axis] = static_cast<std::int32_t>(at[axis]) * rootEdge;
                block.end[axis] = std::min(block.first[axis] + rootEdge, lattice.counts[axis]);
            }
            marker.mark(block, std::nullopt);
        }
    });
}

} // namespace ostrella
