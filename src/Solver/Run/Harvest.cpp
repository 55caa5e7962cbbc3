#include "Solver/Run/Harvest.h"

namespace ostrella {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> ifPresent(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error) ? std::optional(file) : std::nullopt;
}

bool hasContent(const fs::path& file) {
    std::error_code error;
    const auto size = fs::file_size(file, error);
    return !error && size > 0;
}

} // namespace

SimulationResult harvestResult(const fs::path& runDirectory,
    const SolverRunner::SolveOutcome& solve, std::optional<std::int64_t> meshCells,
    const CancellationToken& token) {
    SimulationResult result;
    result.runDirectory = runDirectory;
    result.flowVTK = runDirectory / "flow.vtk";
    result.surfaceVTK = runDirectory / "surface_flow.vtk";
    token.throwIfCancelled();
    if (!hasContent(result.flowVTK) && !hasContent(result.surfaceVTK)) {
        throw SolverError::noReadableOutput();
    }
    result.historyCSV = ifPresent(runDirectory / "history.csv");
    result.configFile = ifPresent(runDirectory / "run.cfg");
    result.elapsedSeconds = solve.elapsedSeconds;
    result.stopReason = solve.stopReason;
    result.meshCells = meshCells;
    return result;
}

} // namespace ostrella
