#pragma once

#include "Models/IsoSurface.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <functional>
#include <optional>

namespace ostrella {

/// The surface around the strongest vortices of a flow by the Q-criterion: Q = (‖Ω‖² − ‖S‖²) / 2 of
/// the velocity gradient's rotation and strain (Hunt, Wray and Moin 1988).
namespace VortexExtractor {

/// Resamples the velocities of `volume`, which must be finite, onto a lattice of `resolution`³
/// points around the body and gives the surface at the level of Q that `percentile` per cent of the
/// positive values do not reach. Nothing without a volumetric focus, or where no Q is positive.
/// Throws CancellationError soon after `isCancelled` holds; an empty one never holds.
std::optional<IsoSurface> extract(const VolumeField& volume,
    const std::optional<StreamlineFocus>& focus, int resolution, float percentile,
    const std::function<bool()>& isCancelled = {});

} // namespace VortexExtractor

} // namespace ostrella
