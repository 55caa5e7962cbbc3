#pragma once

#include "Models/IsoSurface.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <functional>
#include <optional>

namespace ostrella {

/// What the extraction of a vortex surface is made of, for those who answer for its failures.
namespace VortexStages {

/// Whether there is anything to look at: a volume around a body that is not flat.
bool apply(const VolumeField& volume, const std::optional<StreamlineFocus>& focus);

/// The surface around the strongest vortices on `lattice`. Throws CancellationError, and
/// IsoWeldError where VortexExtractor ends the process.
std::optional<IsoSurface> surface(const VolumeField& volume, const StreamlineFocus& focus,
    const Lattice& lattice, float percentile, const std::function<bool()>& isCancelled);

} // namespace VortexStages

} // namespace ostrella
