#pragma once

#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/LatticeVelocities.h"

#include <functional>
#include <vector>

namespace ostrella {

/// Q = (‖Ω‖² − ‖S‖²) / 2 (1/s²) on each point of the lattice, from central differences of the
/// velocity: positive where rotation outweighs strain. NaN on the outer layer and where one of the
/// six neighbours has no velocity. Throws CancellationError; asked once an inner layer.
std::vector<float> qCriterion(const LatticeVelocities& velocities, const Lattice& lattice,
    const std::function<bool()>& isCancelled = {});

} // namespace ostrella
