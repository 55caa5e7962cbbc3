#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella {

/// What is known of a cell of the wrap's lattice.
enum class Cell : std::uint8_t {
    blocked, ///< its middle is too near to the surface, or it was filled
    free,    ///< its middle is far enough from the surface
    outside, ///< free, and reached from the lattice's border
};

/// Cubes of one edge in rows along x, layers along z. All that is not `outside` counts as inside.
struct CellLattice {
    using Index = std::array<std::int32_t, 3>;

    DVec3 origin{0};
    /// Edge of the cells, m.
    double spacing = 0;
    /// Cells along x, y and z.
    Index counts{};
    std::vector<Cell> cells;

    std::size_t rowStart(std::int32_t y, std::int32_t z) const {
        return (static_cast<std::size_t>(z) * static_cast<std::size_t>(counts[1]) +
                   static_cast<std::size_t>(y)) *
               static_cast<std::size_t>(counts[0]);
    }
    Cell* row(std::int32_t y, std::int32_t z) { return cells.data() + rowStart(y, z); }
    const Cell* row(std::int32_t y, std::int32_t z) const { return cells.data() + rowStart(y, z); }

    bool isInside(const Index& cell) const {
        return row(cell[1], cell[2])[cell[0]] != Cell::outside;
    }
    DVec3 middle(const Index& cell) const {
        return origin + spacing * (DVec3(cell[0], cell[1], cell[2]) + 0.5);
    }
    DVec3 corner(const Index& vertex) const {
        return origin + spacing * DVec3(vertex[0], vertex[1], vertex[2]);
    }
};

} // namespace ostrella
