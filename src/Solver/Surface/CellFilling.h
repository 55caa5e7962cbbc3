#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/CellLattice.h"

#include <cstdint>

namespace ostrella {

/// Fills outside cells until the border between inside and outside is a surface that nowhere
/// touches itself: around each corner of the lattice it is one disc, or absent. Cells are filled
/// only between others that are inside, so their box does not grow. Gives the number of cells
/// filled. Throws CancellationError.
std::int64_t fillToManifold(CellLattice& lattice, const CancellationToken& token);

} // namespace ostrella
