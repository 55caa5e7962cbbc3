#include "Solver/Flow/VortexExtractor.h"

#include "Models/Precondition.h"
#include "Solver/Flow/IsoWeld.h"
#include "Solver/Flow/VortexStages.h"

namespace ostrella {

std::optional<IsoSurface> VortexExtractor::extract(const VolumeField& volume,
    const std::optional<StreamlineFocus>& focus, int resolution, float percentile,
    const std::function<bool()>& isCancelled) {
    if (!VortexStages::apply(volume, focus))
        return std::nullopt;
    try {
        return VortexStages::surface(
            volume, *focus, Lattice::around(*focus, resolution), percentile, isCancelled);
    } catch (const IsoWeldError& error) {
        precondition(false, error.what());
        throw;
    }
}

} // namespace ostrella
