#include "Batch/RunFigures.h"

#include "Ostrella/OstrellaApp.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Run/ReferenceArea.h"

namespace ostrella::RunFigures {

namespace {

std::string_view stageName(const RunPhase& phase) {
    switch (phase.kind) {
    case RunPhase::Kind::meshing:
        return rawValue(RunStage::mesh);
    case RunPhase::Kind::solving:
        return rawValue(RunStage::solver);
    default:
        return rawValue(RunStage::results);
    }
}

} // namespace

BatchReport collect(const OstrellaApp& app, const BatchOptions& options) {
    BatchReport report;
    report.options = options;
    report.openEdges = app.parameters.openEdgeCount();
    report.cells = app.simulation.meshCells();
    if (const auto& summary = app.simulation.summary()) {
        report.converged = summary->converged;
        report.iterations = summary->iterations;
    } else {
        // Of an earlier run nobody saw the end.
        report.converged = options.resultsFolder ? std::nullopt : std::optional(false);
    }
    if (const auto latest = app.historyStore.latestIteration(); latest && !report.iterations) {
        report.iterations = *latest + 1;
    }
    for (const auto& [label, value] : app.historyStore.latestCoefficients()) {
        // "Cm" repeats one of the solver's own.
        if (label != "Cm") {
            report.coefficients.emplace_back(label, value);
        }
    }
    if (options.demo) {
        report.referenceArea = 1.0; // Chord 1 m by a span of 1 m.
    } else if (const auto& mesh = app.parameters.mesh(); mesh && options.jsonFile) {
        report.referenceArea =
            referenceArea(SolverFrame::toSolver(rotated(*mesh, app.parameters.rotationRadians())));
    }
    if (!options.demo && !options.resultsFolder && !options.noRun) {
        report.surface = {app.simulation.surfaceFitness(), app.simulation.meshedSurface(),
            std::nullopt, app.simulation.meshQuality()};
    }
    if (const auto& result = app.parameters.lastRunResult()) {
        report.stopReason = result->stopReason;
        report.runDirectory = result->runDirectory;
        if (!report.cells) {
            report.cells = result->meshCells;
        }
    } else {
        report.runDirectory = app.simulation.discardedRunDirectory();
    }
    return report;
}

std::vector<std::pair<std::string, double>> stageTimes(
    const std::vector<std::pair<RunPhase, Date>>& phases) {
    std::vector<std::pair<std::string, double>> times;
    for (std::size_t i = 0; i + 1 < phases.size(); ++i) {
        if (phases[i].first.isActive()) {
            times.emplace_back(std::string(stageName(phases[i].first)),
                secondsBetween(phases[i].second, phases[i + 1].second));
        }
    }
    return times;
}

} // namespace ostrella::RunFigures
