#include "Solver/Flow/LatticeVelocities.h"

#include "Solver/Flow/CancelPoint.h"

#include <cstddef>

namespace ostrella {

LatticeVelocities LatticeVelocities::sampled(
    const CroppedFlow& flow, const Lattice& lattice, const std::function<bool()>& isCancelled) {
    LatticeVelocities velocities(lattice.count());
    CroppedFlow::Probe probe(flow);
    std::size_t at = 0;
    for (std::size_t k = 0; k < lattice.points; ++k) {
        cancelPoint(isCancelled);
        for (std::size_t j = 0; j < lattice.points; ++j) {
            for (std::size_t i = 0; i < lattice.points; ++i, ++at) {
                const Vec3 velocity = probe.latticeVelocityAt(lattice.position(i, j, k));
                velocities.x[at] = velocity.x;
                velocities.y[at] = velocity.y;
                velocities.z[at] = velocity.z;
            }
        }
    }
    return velocities;
}

} // namespace ostrella
