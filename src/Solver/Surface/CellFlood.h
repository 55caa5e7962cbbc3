#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/CellLattice.h"

namespace ostrella {

/// Makes the free cells that hang together with the lattice's first cell over faces the outside
/// ones; the others that were outside before become free. The first cell is not blocked. Throws
/// CancellationError.
void floodOutside(CellLattice& lattice, const CancellationToken& token);

} // namespace ostrella
