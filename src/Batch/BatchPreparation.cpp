#include "Batch/BatchPreparation.h"

#include "Batch/ExitStatus.h"
#include "Solver/Run/SimulationController.h"

#include <fmt/format.h>

#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

CasePreparation::CasePreparation(fs::path folder, bool keepsRest)
    : folder_(std::move(folder)), keepsRest_(keepsRest) {
    std::error_code error;
    isNew_ = !fs::exists(folder_, error);
}

PreparationOutcome CasePreparation::run(const SolverRunner& runner,
    const std::optional<SolverRunner::STLContext>& stl, const SimulationInputs& inputs,
    std::optional<std::int64_t> openEdges, const RunLog& log,
    const SolverRunner::Events& events) const {
    PreparationOutcome outcome;
    try {
        const SolverRunner::PreparedCase prepared =
            stl ? runner.prepareSTL(*stl, inputs, log, events)
                : runner.prepareDemo(inputs, log, events);
        outcome.cells = prepared.meshCells;
        outcome.phase = RunPhase::finished(false);
        log.append(fmt::format("Case prepared · run SU2_CFD run.cfg in {}", folder_.string()),
            LogStore::Level::ok);
        return outcome;
    } catch (const CancellationError&) {
        outcome.phase = RunPhase::cancelled();
        outcome.status = ExitStatus::cancelled;
        log.warn("Cancelled by user before the case was complete");
    } catch (...) {
        const auto error = std::current_exception();
        outcome.phase = SimulationController::failurePhase(error, openEdges);
        outcome.status = ExitStatus::ofStage(outcome.phase.stage);
        log.append(
            SimulationController::failureLine(outcome.phase.stage, error), LogStore::Level::error);
    }
    if (!keepsRest_) {
        clearRest();
    }
    return outcome;
}

/// So that the same command can be given again; nothing but the files of a case is touched.
void CasePreparation::clearRest() const {
    std::error_code error;
    for (const char* name : {"input.stl", "mesh.geo", "mesh.su2", "run.cfg"}) {
        fs::remove(folder_ / name, error);
    }
    if (isNew_) {
        fs::remove(folder_, error); // Not if anything is left in it.
    }
}

} // namespace ostrella
