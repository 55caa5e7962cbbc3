#pragma once

#include "Solver/Flow/CroppedFlow.h"
#include "Solver/Flow/Lattice.h"

#include <functional>
#include <vector>

namespace ostrella {

/// The velocity (m/s) on each point of a lattice, one array for each component; NaN inside the body
/// and out of the data.
struct LatticeVelocities {
    std::vector<float> x;
    std::vector<float> y;
    std::vector<float> z;

    /// Room for `count` points, all at rest.
    explicit LatticeVelocities(std::size_t count) : x(count), y(count), z(count) {}

    /// `flow` on the points of `lattice`. Throws CancellationError; asked once a layer.
    static LatticeVelocities sampled(const CroppedFlow& flow, const Lattice& lattice,
        const std::function<bool()>& isCancelled = {});
};

} // namespace ostrella
