#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/CellLattice.h"

namespace ostrella {

/// The squares between inside and outside cells, facing outside, each cut into two triangles, on
/// shared vertices. They are cut so that the vertices have a like number of triangles: six on a
/// plane. Throws CancellationError.
IndexedSurface borderOf(const CellLattice& lattice, const CancellationToken& token);

} // namespace ostrella
