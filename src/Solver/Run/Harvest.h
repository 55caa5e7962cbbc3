#pragma once

#include "Solver/Run/SolverRunner.h"

namespace ostrella {

/// What the solver left in the run directory. Throws SolverError::noReadableOutput if there is
/// neither a surface nor a volume file.
SimulationResult harvestResult(const std::filesystem::path& runDirectory,
    const SolverRunner::SolveOutcome& solve, std::optional<std::int64_t> meshCells,
    const CancellationToken& token);

} // namespace ostrella
