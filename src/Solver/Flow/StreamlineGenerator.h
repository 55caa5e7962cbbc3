#pragma once

#include "Models/Streamlines.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <functional>
#include <optional>

namespace ostrella {

/// Traces streamlines forward through scattered velocities, from a rake of seeds ahead of the body,
/// with the classic fourth-order Runge-Kutta scheme at one fixed time step. One line after the
/// other: the result is the same bytes in every run.
namespace StreamlineGenerator {

using Focus = StreamlineFocus;

/// The lines through `volume`, whose numbers must be finite; `freeStreamVelocity` in m/s. An absent
/// focus is made from the volume's box; an absent seed count is 196 for a volumetric focus, else
/// 100. A line has at most `stepCount` vertices. `isCancelled` is asked ahead of each seed; when it
/// holds, CancellationError is thrown. An empty one never holds.
Streamlines generate(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<Focus>& focus, std::optional<int> seedCount, int stepCount,
    const std::function<bool()>& isCancelled = {});

} // namespace StreamlineGenerator

} // namespace ostrella
