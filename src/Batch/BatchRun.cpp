#include "Batch/BatchRun.h"

#include "Batch/BatchConclusion.h"
#include "Batch/BatchPreparation.h"
#include "Batch/BatchProgress.h"
#include "Batch/ExitStatus.h"
#include "Models/MainThread.h"
#include "Platform/SystemFacts.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Run/ReferenceArea.h"
#include "Solver/Tools/Background.h"

#include <QCoreApplication>

#include <utility>

namespace ostrella {

BatchRun::BatchRun(RunEnvironment environment, BatchOptions options, BatchConsole& console)
    : environment_(environment),
      options_(std::move(options)),
      console_(console),
      app_(std::move(environment), preferences_, SystemFacts::bootFacts(),
          [this](const std::string& message, const std::string& text) { alert(message, text); }) {
    connect(&app_.logStore, &LogStore::linesChanged, this, &BatchRun::printNewLines);
    connect(&app_.simulation, &SimulationController::phaseChanged, this, &BatchRun::trackPhase);
    connect(&app_.historyStore, &HistoryStore::residualsChanged, this, [this] {
        const auto latest = app_.historyStore.latestIteration();
        rate_.record(latest ? std::optional<std::int64_t>(*latest + 1) : std::nullopt,
            environment_.clock->now());
    });
    connect(&progressTimer_, &QTimer::timeout, this, &BatchRun::updateProgress);
}

void BatchRun::start() {
    printNewLines();
    applyOptions();
    app_.start();
    if (options_.demo) {
        begin();
    } else {
        // Subscribed after the controller, so that the load is logged before the run begins.
        geometryObserver_ = app_.notifications.observe(
            Notifications::geometryLoaded, [this](const std::any&) { begin(); });
        loadModel();
    }
}

void BatchRun::applyOptions() {
    const SimulationInputs& inputs = options_.inputs;
    app_.parameters.setVelocity(inputs.velocity);
    app_.parameters.setAlpha(inputs.alpha);
    app_.parameters.setBeta(inputs.beta);
    app_.parameters.setDensity(inputs.density);
    app_.parameters.setTurbulenceModel(inputs.turbulenceModel);
    app_.parameters.setRegime(inputs.regime);
    app_.parameters.setSARotationCorrection(inputs.saRotationCorrection);
    app_.parameters.setSATransition(inputs.saTransition);
    app_.parameters.setRotationX(options_.rotationX);
    app_.parameters.setRotationY(options_.rotationY);
    app_.parameters.setRotationZ(options_.rotationZ);
    app_.appSettings.setDefaultMaxIterations(inputs.maxIterations);
    app_.appSettings.setStreamlineUpstreamFactor(inputs.streamlineUpstreamFactor);
    app_.appSettings.setStreamlineDownstreamFactor(inputs.streamlineDownstreamFactor);
    app_.appSettings.setStreamlineSeedCount(inputs.streamlineSeedCount);
}

void BatchRun::loadModel() {
    if (options_.sample) {
        app_.samples.load(*options_.sample, app_.parameters);
    } else {
        app_.importer.open(std::filesystem::absolute(*options_.model), app_.parameters);
    }
}

void BatchRun::begin() {
    if (isEnding_ || hasBegun_) {
        return;
    }
    hasBegun_ = true;
    if (options_.prepareFolder) {
        prepare();
        return;
    }
    if (console_.showsProgress()) {
        progressTimer_.start(250);
    }
    app_.notifications.post(
        options_.demo ? Notifications::runDemoRequested : Notifications::runSimulationRequested);
}

void BatchRun::cancel() {
    if (options_.prepareFolder && hasBegun_) {
        preparation_.cancel();
    } else if (app_.simulation.phase().isActive()) {
        app_.notifications.post(Notifications::cancelSimulationRequested);
    } else if (!isEnding_) {
        app_.logStore.append("Cancelled by user before the run", LogStore::Level::warn);
        isEnding_ = true;
        QCoreApplication::exit(ExitStatus::cancelled);
    }
}

void BatchRun::printNewLines() {
    const auto& lines = app_.logStore.lines();
    for (; printedLines_ < lines.size(); ++printedLines_) {
        console_.print(lines[printedLines_]);
    }
}

void BatchRun::trackPhase() {
    const RunPhase& phase = app_.simulation.phase();
    if (phases_.empty() || phases_.back().first != phase) {
        phases_.emplace_back(phase, environment_.clock->now());
    }
    if (hasBegun_ && !phase.isActive() && !isEnding_) {
        isEnding_ = true;
        // After the controller's own closing steps.
        QMetaObject::invokeMethod(
            this, [this] { finish(); }, Qt::QueuedConnection);
    }
}

void BatchRun::updateProgress() {
    BatchProgress progress;
    const HistoryStore& history = app_.historyStore;
    const Date now = environment_.clock->now();
    progress.phase = app_.simulation.phase();
    if (!progress.phase.isActive()) {
        console_.setProgress("");
        return;
    }
    if (const auto latest = history.latestIteration()) {
        progress.iteration = *latest + 1;
        if (progress.phase.kind != RunPhase::Kind::postProcessing) {
            progress.remainingSeconds =
                rate_.remainingSeconds(app_.simulation.maxIterations(), now);
        }
    }
    progress.maxIterations = app_.simulation.maxIterations();
    if (!history.residualLabels().empty()) {
        const std::string& label = history.residualLabels().front();
        if (const auto value = history.latestValue(label)) {
            progress.residual = {label, *value};
        }
    }
    progress.cl = history.latestValue("CL");
    progress.cd = history.latestValue("CD");
    progress.elapsedSeconds = secondsBetween(app_.simulation.startedAt().value_or(now), now);
    console_.setProgress(progressLine(progress));
}

void BatchRun::finish() {
    progressTimer_.stop();
    console_.setProgress("");
    BatchReport report;
    collectResult(report);
    int status = ExitStatus::finished;
    const RunPhase& phase = app_.simulation.phase();
    if (phase.kind == RunPhase::Kind::failed) {
        report.phase = "failed";
        report.failure = {phase.stage, phase.message};
        status = ExitStatus::ofStage(phase.stage);
    } else if (phase.kind == RunPhase::Kind::cancelled) {
        report.phase = "cancelled";
        status = ExitStatus::cancelled;
    } else {
        report.phase = "finished";
    }
    conclude(std::move(report), status);
}

void BatchRun::collectResult(BatchReport& report) const {
    report.options = options_;
    report.openEdges = app_.parameters.openEdgeCount();
    report.cells = app_.simulation.meshCells();
    if (const auto& summary = app_.simulation.summary()) {
        report.converged = summary->converged;
        report.iterations = summary->iterations;
    } else if (const auto latest = app_.historyStore.latestIteration()) {
        report.iterations = *latest + 1;
    }
    for (const auto& [label, value] : app_.historyStore.latestCoefficients()) {
        // "Cm" repeats one of the solver's own.
        if (label != "Cm") {
            report.coefficients.emplace_back(label, value);
        }
    }
    if (options_.demo) {
        report.referenceArea = 1.0;
    } else if (const auto& mesh = app_.parameters.mesh()) {
        report.referenceArea =
            referenceArea(SolverFrame::toSolver(rotated(*mesh, app_.parameters.rotationRadians())));
    }
    if (const auto& result = app_.parameters.lastRunResult()) {
        report.stopReason = result->stopReason;
        report.runDirectory = result->runDirectory;
    } else {
        report.runDirectory = app_.simulation.discardedRunDirectory();
    }
    const auto nameOf = [](const RunPhase& phase) {
        return phase.kind == RunPhase::Kind::meshing   ? "mesh"
               : phase.kind == RunPhase::Kind::solving ? "solver"
                                                       : "results";
    };
    for (std::size_t i = 0; i + 1 < phases_.size(); ++i) {
        if (phases_[i].first.isActive()) {
            report.times.emplace_back(
                nameOf(phases_[i].first), secondsBetween(phases_[i].second, phases_[i + 1].second));
        }
    }
}

void BatchRun::prepare() {
    SolverRunner runner(environment_, preparation_.token(), options_.prepareFolder);
    std::optional<SolverRunner::STLContext> stl;
    if (!options_.demo) {
        stl = SolverRunner::STLContext{*app_.parameters.stlURL(),
            rotated(*app_.parameters.mesh(), app_.parameters.rotationRadians())};
    }
    isEnding_ = true;
    Background::run(
        [this, runner = std::move(runner), stl = std::move(stl),
            inputs = app_.parameters.snapshot(&app_.appSettings)] {
            auto outcome = prepareCase(runner, stl, inputs, *options_.prepareFolder, app_.logStore);
            MainThread::post([this, outcome = std::move(outcome)] {
                BatchReport report;
                collectResult(report);
                report.phase = outcome.phase;
                report.failure = outcome.failure;
                report.cells = outcome.cells;
                report.runDirectory = options_.prepareFolder;
                conclude(std::move(report), outcome.status);
            });
        },
        Background::Priority::userInitiated);
}

void BatchRun::conclude(BatchReport report, int status) {
    Background::run(
        [this, report = std::move(report), status, result = app_.parameters.lastRunResult()] {
            const int final = concludeRun(report, status, result, environment_, app_.logStore);
            MainThread::post([final] { QCoreApplication::exit(final); });
        },
        Background::Priority::userInitiated);
}

void BatchRun::alert(const std::string& message, const std::string& text) {
    app_.logStore.append(message + " · " + text, LogStore::Level::error);
    isEnding_ = true;
    QCoreApplication::exit(ExitStatus::wrongUsage);
}

} // namespace ostrella
