#include "Solver/Surface/CellBorder.h"

#include "Models/Precondition.h"

#include <algorithm>
#include <limits>

namespace ostrella {

namespace {

using Index = CellLattice::Index;
using Square = std::array<std::uint32_t, 4>;

constexpr std::uint32_t noVertex = std::numeric_limits<std::uint32_t>::max();

class BorderWalk {
public:
    explicit BorderWalk(const CellLattice& lattice)
        : lattice_(lattice), rowVertices_(static_cast<std::size_t>(lattice.counts[0]) + 1) {
        const std::size_t plane = rowVertices_ * (static_cast<std::size_t>(lattice.counts[1]) + 1);
        for (std::vector<std::uint32_t>& level : levels_)
            level.assign(plane, noVertex);
    }

    /// The squares above, behind and beside each cell of the layer `z`. Layers come upward.
    void walkLayer(std::int32_t z) {
        const Index& counts = lattice_.counts;
        for (std::int32_t y = 0; y < counts[1]; ++y) {
            const Cell* row = lattice_.row(y, z);
            const Cell* behind = y + 1 < counts[1] ? lattice_.row(y + 1, z) : nullptr;
            const Cell* above = z + 1 < counts[2] ? lattice_.row(y, z + 1) : nullptr;
            for (std::int32_t x = 0; x < counts[0]; ++x) {
                const bool isInside = row[x] != Cell::outside;
                if (x + 1 < counts[0] && isInside != (row[x + 1] != Cell::outside))
                    addSquare({x, y, z}, 0, isInside);
                if (behind != nullptr && isInside != (behind[x] != Cell::outside))
                    addSquare({x, y, z}, 1, isInside);
                if (above != nullptr && isInside != (above[x] != Cell::outside))
                    addSquare({x, y, z}, 2, isInside);
            }
        }
        // The upper level of this layer is the lower one of the next.
        levels_[0].swap(levels_[1]);
        std::fill(levels_[1].begin(), levels_[1].end(), noVertex);
    }

    IndexedSurface finish() && {
        surface_.triangles.reserve(2 * squares_.size());
        for (const Square& s : squares_) {
            const int across = squaresAt_[s[0]] + squaresAt_[s[2]];
            const int other = squaresAt_[s[1]] + squaresAt_[s[3]];
            // A cut adds a triangle to both of its ends. Where both ways are alike, all planes of
            // one direction are cut in the same direction.
            if (across <= other) {
                surface_.triangles.push_back({s[0], s[1], s[2]});
                surface_.triangles.push_back({s[0], s[2], s[3]});
            } else {
                surface_.triangles.push_back({s[0], s[1], s[3]});
                surface_.triangles.push_back({s[1], s[2], s[3]});
            }
        }
        return std::move(surface_);
    }

private:
    /// The square between `cell` and the next one along `axis`.
    void addSquare(const Index& cell, std::size_t axis, bool facesUpward) {
        const std::size_t second = (axis + 1) % 3;
        const std::size_t third = (axis + 2) % 3;
        Square square;
        for (unsigned i = 0; i < 4; ++i) {
            Index corner = cell;
            ++corner[axis];
            corner[second] += i == 1 || i == 2 ? 1 : 0;
            corner[third] += i >= 2 ? 1 : 0;
            square[i] = vertexAt(corner, cell[2]);
            ++squaresAt_[square[i]];
        }
        if (!facesUpward)
            std::swap(square[1], square[3]);
        squares_.push_back(square);
    }

    std::uint32_t vertexAt(const Index& corner, std::int32_t layer) {
        std::uint32_t& vertex = levels_[static_cast<std::size_t>(corner[2] - layer)]
                                       [static_cast<std::size_t>(corner[1]) * rowVertices_ +
                                           static_cast<std::size_t>(corner[0])];
        if (vertex == noVertex) {
            precondition(surface_.vertices.size() < noVertex, "a wrap has at most 2³² vertices");
            vertex = static_cast<std::uint32_t>(surface_.vertices.size());
            surface_.vertices.push_back(lattice_.corner(corner));
            squaresAt_.push_back(0);
        }
        return vertex;
    }

    const CellLattice& lattice_;
    std::size_t rowVertices_;
    /// The vertices on the lower and on the upper level of a layer.
    std::array<std::vector<std::uint32_t>, 2> levels_;
    std::vector<std::uint8_t> squaresAt_;
    std::vector<Square> squares_;
    IndexedSurface surface_;
};

} // namespace

IndexedSurface borderOf(const CellLattice& lattice, const CancellationToken& token) {
    BorderWalk walk(lattice);
    for (std::int32_t z = 0; z < lattice.counts[2]; ++z) {
        token.throwIfCancelled();
        walk.walkLayer(z);
    }
    return std::move(walk).finish();
}

} // namespace ostrella
