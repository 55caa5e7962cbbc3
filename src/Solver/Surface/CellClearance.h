#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/CellLattice.h"
#include "Solver/Surface/TriangleTree.h"

namespace ostrella {

/// Marks the cells whose middles lie nearer than `offset` to the surface as blocked and all others
/// as free. Whole blocks of cells are decided by their middle where it is far enough from the
/// border between both, so that the work grows with the surface and not with the lattice. Two
/// threads. Throws CancellationError.
void markClearance(CellLattice& lattice, const TriangleTree& surface, double offset,
    const CancellationToken& token);

} // namespace ostrella
