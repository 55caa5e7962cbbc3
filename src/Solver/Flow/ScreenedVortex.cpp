#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/IsoWeld.h"
#include "Solver/Flow/VortexStages.h"

#include <cmath>

namespace ostrella {

namespace {

/// The box may be as large as the settings make it, but its points must be such that distances to
/// them can be computed.
void requireFinite(const Lattice& lattice) {
    const std::size_t last = lattice.points - 1;
    const Vec3 high = lattice.position(last, last, last);
    for (int axis = 0; axis < 3; ++axis) {
        if (!(std::fabs(lattice.origin[axis]) <= FlowScreen::largestNumber &&
                std::fabs(high[axis]) <= FlowScreen::largestNumber))
            throw FlowScreenError("The box around the body in which vortices are looked for is not "
                                  "finite or too large. Check the surface's coordinates and the "
                                  "upstream and downstream factors.");
    }
}

} // namespace

std::optional<IsoSurface> FlowScreen::extract(const VolumeField& volume,
    const std::optional<StreamlineGenerator::Focus>& focus, int resolution, float percentile,
    const std::function<bool()>& isCancelled) {
    if (!VortexStages::apply(volume, focus))
        return std::nullopt;
    requireFinite(volume);
    const auto lattice = Lattice::around(*focus, resolution);
    ::ostrella::requireFinite(lattice);
    try {
        return VortexStages::surface(volume, *focus, lattice, percentile, isCancelled);
    } catch (const IsoWeldError&) {
        throw FlowScreenError("The vortex surface is so small and so far from the origin that its "
                              "vertices cannot be told apart. Move the model closer to the "
                              "origin.");
    }
}

} // namespace ostrella
