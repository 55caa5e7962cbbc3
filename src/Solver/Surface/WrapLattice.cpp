#include "Solver/Surface/WrapLattice.h"

#include "Models/Precondition.h"
#include "Solver/Surface/CellBorder.h"
#include "Solver/Surface/CellClearance.h"
#include "Solver/Surface/CellFilling.h"
#include "Solver/Surface/CellFlood.h"

#include <glm/common.hpp>

#include <cmath>

namespace ostrella {

namespace {

/// A box of a whole number of cells gets these whatever its unit of length; the margin is far
/// wider.
constexpr double roundingShare = 1e-3;

/// Cells of the lattice along x, y and z.
DVec3 latticeSize(const DVec3& low, const DVec3& high, const WrapSettings& settings) {
    const double margin = std::ceil(settings.offset / settings.spacing) + 3;
    return glm::ceil((high - low) / settings.spacing - roundingShare) + 2 * margin;
}

CellLattice latticeAround(const DVec3& low, const DVec3& high, const WrapSettings& settings) {
    const DVec3 size = latticeSize(low, high, settings);
    CellLattice lattice;
    lattice.spacing = settings.spacing;
    lattice.origin = 0.5 * (low + high) - 0.5 * settings.spacing * size;
    for (int axis = 0; axis < 3; ++axis)
        lattice.counts[static_cast<std::size_t>(axis)] = static_cast<std::int32_t>(size[axis]);
    lattice.cells.resize(static_cast<std::size_t>(size.x * size.y * size.z), Cell::blocked);
    return lattice;
}

} // namespace

double wrapCellCount(const DVec3& low, const DVec3& high, const WrapSettings& settings) {
    const DVec3 size = latticeSize(low, high, settings);
    return size.x * size.y * size.z;
}

IndexedSurface wrapped(const TriangleTree& surface, const DVec3& low, const DVec3& high,
    const WrapSettings& settings, const CancellationToken& token) {
    precondition(settings.spacing > 0 && settings.offset >= settings.spacing,
        "a wrap keeps at least one cell's edge from the surface");
    precondition(wrapCellCount(low, high, settings) <= static_cast<double>(mostWrapCells),
        "a wrap has too many cells");
    CellLattice lattice = latticeAround(low, high, settings);
    markClearance(lattice, surface, settings.offset, token);
    // Filling may cut off pockets of the outside; these count as inside from then on, which can
    // leave corners to be filled again.
    do
        floodOutside(lattice, token);
    while (fillToManifold(lattice, token) > 0);
    return borderOf(lattice, token);
}

} // namespace ostrella
