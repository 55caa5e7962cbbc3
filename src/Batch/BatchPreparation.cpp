#include "Batch/BatchPreparation.h"

#include "Batch/ExitStatus.h"
#include "Solver/Tools/RunLog.h"
#include "Solver/Run/SimulationController.h"

#include <fmt/format.h>

namespace ostrella {

PreparationOutcome prepareCase(const SolverRunner& runner,
    const std::optional<SolverRunner::STLContext>& stl, const SimulationInputs& inputs,
    const std::filesystem::path& folder, LogStore& log) {
    const RunLog runLog(log);
    PreparationOutcome outcome;
    try {
        const SolverRunner::PreparedCase prepared =
            stl ? runner.prepareSTL(*stl, inputs, log, {}) : runner.prepareDemo(inputs, log, {});
        outcome.cells = prepared.meshCells;
        outcome.phase = "prepared";
        runLog.append(fmt::format("Case prepared · run SU2_CFD run.cfg in {}", folder.string()),
            LogStore::Level::ok);
    } catch (const CancellationError&) {
        outcome.phase = "cancelled";
        outcome.status = ExitStatus::cancelled;
        runLog.warn("Cancelled by user before the case was complete");
    } catch (...) {
        const auto error = std::current_exception();
        const RunPhase failure = SimulationController::failurePhase(error, std::nullopt);
        outcome.phase = "failed";
        outcome.failure = {failure.stage, failure.message};
        outcome.status = ExitStatus::ofStage(failure.stage);
        runLog.append(
            SimulationController::failureLine(failure.stage, error), LogStore::Level::error);
    }
    return outcome;
}

} // namespace ostrella
