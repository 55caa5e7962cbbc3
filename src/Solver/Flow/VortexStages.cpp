#include "Solver/Flow/VortexStages.h"

#include "Solver/Flow/BoxFilter.h"
#include "Solver/Flow/CancelPoint.h"
#include "Solver/Flow/CroppedFlow.h"
#include "Solver/Flow/IsoLevel.h"
#include "Solver/Flow/IsoWeld.h"
#include "Solver/Flow/LatticeVelocities.h"
#include "Solver/Flow/MarchingCubes.h"
#include "Solver/Flow/QCriterion.h"

#include <vector>

namespace ostrella::VortexStages {

namespace {

/// Q on the lattice, smoothed once.
std::vector<float> smoothQ(const VolumeField& volume, const StreamlineFocus& focus,
    const Lattice& lattice, const std::function<bool()>& isCancelled) {
    const CroppedFlow flow(volume, focus);
    const auto velocities = LatticeVelocities::sampled(flow, lattice, isCancelled);
    const auto q = qCriterion(velocities, lattice, isCancelled);
    return boxFilter(q, lattice.points, isCancelled);
}

} // namespace

bool apply(const VolumeField& volume, const std::optional<StreamlineFocus>& focus) {
    return !volume.positions.empty() && focus && focus->isVolumetric;
}

std::optional<IsoSurface> surface(const VolumeField& volume, const StreamlineFocus& focus,
    const Lattice& lattice, float percentile, const std::function<bool()>& isCancelled) {
    const auto q = smoothQ(volume, focus, lattice, isCancelled);
    const auto iso = isoLevel(q, percentile);
    if (!iso)
        return std::nullopt;
    const auto triangles =
        marchingCubes(q, lattice.points, lattice.origin, lattice.cellSize, *iso, isCancelled);
    if (triangles.empty())
        return std::nullopt;
    cancelPoint(isCancelled);
    return weld(triangles, *iso);
}

} // namespace ostrella::VortexStages
