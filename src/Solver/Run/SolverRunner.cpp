#include "Solver/Run/SolverRunner.h"

#include "Models/FileError.h"
#include "Models/HistoryStore.h"
#include "Platform/PackageUse.h"
#include "Solver/Run/Harvest.h"
#include "Solver/Run/SolverLaunch.h"
#include "Solver/Run/StageExit.h"
#include "Solver/Tools/BundledTool.h"
#include "Solver/Tools/RunDirectories.h"

#include <fmt/format.h>

#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

SolverRunner::SolverRunner(
    RunEnvironment environment, CancellationToken token, std::optional<fs::path> directory)
    : environment_(std::move(environment)),
      token_(std::move(token)),
      directory_(std::move(directory)) {}

SimulationResult SolverRunner::runSTL(const STLContext& stl, const SimulationInputs& inputs,
    const RunLog& log, const QPointer<HistoryStore>& history, const Events& events) const {
    const PackageUse use(environment_.bundle.root());
    return solveAndHarvest(prepareSTL(stl, inputs, log, events), inputs, log, history, events);
}

SimulationResult SolverRunner::runDemo(const SimulationInputs& inputs, const RunLog& log,
    const QPointer<HistoryStore>& history, const Events& events) const {
    const PackageUse use(environment_.bundle.root());
    return solveAndHarvest(prepareDemo(inputs, log, events), inputs, log, history, events);
}

SimulationResult SolverRunner::solveAndHarvest(const PreparedCase& prepared,
    const SimulationInputs& inputs, const RunLog& log, const QPointer<HistoryStore>& history,
    const Events& events) const {
    log.info("Launching SU2_CFD…");
    const SolveOutcome outcome = atStage(RunStage::solver, [&] {
        return launchSU2(prepared.solver, prepared.directory, prepared.dimensions, log, history,
            environment_, token_);
    });
    token_.throwIfCancelled();
    sendEvent(events, RunPhase::postProcessing());
    return atStage(RunStage::results, [&] {
        return harvestResult(prepared.directory, outcome, prepared.meshCells, prepared.dimensions,
            inputs, log, token_, *environment_.clock);
    });
}

fs::path SolverRunner::makeRunDirectory() const {
    if (directory_) {
        std::error_code error;
        fs::create_directories(*directory_, error);
        if (error) {
            throw FileError("Cannot make the folder " + directory_->string(), *directory_, error,
                "choose another folder");
        }
        return *directory_;
    }
    return RunDirectories::create(environment_.temporaryDirectory);
}

fs::path SolverRunner::locateSolver(const RunLog& log) const {
    const auto solver = BundledTools::locate(BundledTool::su2, environment_.bundle, false);
    if (!solver) {
        throw SolverError::binaryNotFound(*environment_.words);
    }
    log.info(fmt::format("Using solver: {}", solver->string()));
    if (environment_.bundle.solverIsStandIn()) {
        log.warn("The built-in preview solver stands in for SU2_CFD · figures are indicative");
    }
    return *solver;
}

fs::path SolverRunner::locateTemplate(std::string_view name) const {
    const auto found = environment_.bundle.resource(name, "cfg", "su2/templates");
    if (!found) {
        throw SolverError::templateNotFound();
    }
    return *found;
}

} // namespace ostrella
