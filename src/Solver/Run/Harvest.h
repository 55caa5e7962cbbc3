#pragma once

#include "Models/Clock.h"
#include "Solver/Run/SolverRunner.h"

namespace ostrella {

/// What the solver left in the run directory, read, and computed from it what is drawn: surface,
/// wall report, volume, streamlines and vortex surface, in this order. Each is optional: a part
/// that fails costs a line of warning and that part alone. `dimensions` is 3, and the fields are
/// turned into the application's frame of axes, or 2, and they stay as they are. Works on the
/// calling worker; only log lines hop to the main thread. Throws SolverError::noReadableOutput if
/// there is neither surface nor volume, and CancellationError, with which all is dropped.
SimulationResult harvestResult(const std::filesystem::path& runDirectory,
    const SolverRunner::SolveOutcome& solve, std::optional<std::int64_t> meshCells, int dimensions,
    const SimulationInputs& inputs, const RunLog& log, const CancellationToken& token,
    const Clock& clock = Clock::system());

} // namespace ostrella
