#include "Batch/BatchRun.h"

#include "Batch/BatchConclusion.h"
#include "Batch/BatchPreparation.h"
#include "Batch/BatchProgress.h"
#include "Batch/EarlierRun.h"
#include "Batch/ExitStatus.h"
#include "Batch/RunFigures.h"
#include "Models/MainThread.h"
#include "Platform/SystemFacts.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Run/HarvestTexts.h"
#include "Solver/Tools/AboutInfo.h"

#include <QCoreApplication>

#include <utility>

namespace ostrella {

namespace {

constexpr int progressPeriod = 250; // ms

RunEnvironment withChoice(RunEnvironment environment, SurfaceChoice surface) {
    environment.surface = surface;
    return environment;
}

} // namespace

BatchRun::BatchRun(RunEnvironment environment, BatchOptions options, BatchConsole& console)
    : environment_(withChoice(std::move(environment), options.surface)),
      options_(std::move(options)),
      console_(console),
      app_(environment_, preferences_, SystemFacts::bootFacts(),
          [this](const std::string& message, const std::string& text) { refuse(message, text); }) {
    connect(&app_.logStore, &LogStore::linesChanged, this, &BatchRun::printNewLines);
    connect(&app_.simulation, &SimulationController::phaseChanged, this, &BatchRun::showPhaseOfRun);
    connect(&app_.historyStore, &HistoryStore::residualsChanged, this, [this] {
        const auto latest = app_.historyStore.latestIteration();
        rate_.record(latest ? std::optional<std::int64_t>(*latest + 1) : std::nullopt,
            environment_.clock->now());
    });
    connect(&progressTimer_, &QTimer::timeout, this, &BatchRun::updateProgress);
    if (options_.imageFile) {
        picture_.emplace(environment_.bundle);
        connect(&app_.parameters, &SimulationParameters::meshChanged, this, [this] {
            if (options_.noRun && app_.parameters.mesh()) {
                picture_->prepare(*app_.parameters.mesh(), options_.picture);
            }
        });
    }
}

void BatchRun::start() {
    printNewLines();
    for (const std::string& note : optionsWithoutEffect(options_)) {
        app_.logStore.append(note, LogStore::Level::warn);
    }
    applyOptions();
    probeTools();
    if (picture_ && (options_.noRun || options_.resultsFolder)) {
        picture_->begin();
    }
    app_.start();
    if (options_.demo || options_.resultsFolder) {
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

/// Beside the load, so that a mesher that hangs when it is asked for its version delays no end.
void BatchRun::probeTools() {
    if (!options_.jsonFile || options_.resultsFolder) {
        return;
    }
    probe_ = Background::run([tools = tools_, environment = environment_] {
        tools->mesher = AboutInfo::probeGMSH(environment.bundle, *environment.timers);
        tools->solver = AboutInfo::probeSU2(environment.bundle, *environment.words);
        tools->solverIsStandIn = environment.bundle.solverIsStandIn();
    });
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
    if (console_.showsProgress()) {
        progressTimer_.start(progressPeriod);
    }
    if (options_.prepareFolder) {
        prepare();
        return;
    }
    if (options_.resultsFolder) {
        harvestEarlierRun();
        return;
    }
    if (options_.noRun) {
        finish(RunPhase::idle(), ExitStatus::finished);
        return;
    }
    app_.notifications.post(
        options_.demo ? Notifications::runDemoRequested : Notifications::runSimulationRequested);
    if (phases_.empty()) {
        refuse("Couldn't start the run", "The model holds nothing that could be run.");
    }
}

void BatchRun::cancel() {
    if (isEnding_) {
        return;
    }
    if (!hasBegun_) {
        app_.importer.newToken(); // What is still being loaded is no longer wanted.
        app_.logStore.append("Cancelled by user before the run", LogStore::Level::warn);
        finish(RunPhase::cancelled(), ExitStatus::cancelled);
    } else if (options_.prepareFolder || options_.resultsFolder) {
        ownWork_.cancel();
    } else {
        app_.notifications.post(Notifications::cancelSimulationRequested);
    }
}

void BatchRun::printNewLines() {
    const auto& lines = app_.logStore.lines();
    for (; printedLines_ < lines.size(); ++printedLines_) {
        console_.print(lines[printedLines_]);
    }
}

void BatchRun::enter(const RunPhase& phase) {
    if (phases_.empty() || phases_.back().first != phase) {
        phases_.emplace_back(phase, environment_.clock->now());
    }
}

void BatchRun::showPhaseOfRun() {
    const RunPhase& phase = app_.simulation.phase();
    if (!hasBegun_ || isEnding_) {
        return;
    }
    enter(phase);
    if (phase.isActive()) {
        return;
    }
    int status = ExitStatus::finished;
    if (phase.kind == RunPhase::Kind::failed) {
        status = ExitStatus::ofStage(phase.stage);
    } else if (phase.kind == RunPhase::Kind::cancelled) {
        status = ExitStatus::cancelled;
    }
    isEnding_ = true;
    // After the controller's own closing steps.
    QMetaObject::invokeMethod(
        this, [this, phase, status] { finish(phase, status); }, Qt::QueuedConnection);
}

void BatchRun::updateProgress() {
    if (phases_.empty() || !phases_.back().first.isActive()) {
        console_.setProgress("");
        return;
    }
    BatchProgress progress;
    const HistoryStore& history = app_.historyStore;
    const Date now = environment_.clock->now();
    progress.phase = phases_.back().first;
    progress.maxIterations = options_.inputs.maxIterations;
    progress.isCancelling = isCancelling();
    progress.elapsedSeconds = secondsBetween(phases_.front().second, now);
    if (const auto latest = history.latestIteration()) {
        progress.iteration = *latest + 1;
        if (progress.phase.kind != RunPhase::Kind::postProcessing) {
            progress.remainingSeconds = rate_.remainingSeconds(progress.maxIterations, now);
        }
    }
    if (!history.residualLabels().empty()) {
        const std::string& label = history.residualLabels().front();
        if (const auto value = history.latestValue(label)) {
            progress.residual = {label, *value};
        }
    }
    progress.cl = history.latestValue("CL");
    progress.cd = history.latestValue("CD");
    console_.setProgress(progressLine(progress));
}

void BatchRun::finish(const RunPhase& phase, int status) {
    isEnding_ = true;
    progressTimer_.stop();
    console_.setProgress("");
    BatchReport report = RunFigures::collect(app_, options_);
    report.times = RunFigures::stageTimes(phases_);
    if (options_.prepareFolder) {
        report.cells = preparedCells_;
        if (report.surface) {
            report.surface = preparedSurface_;
        }
    }
    if (report.surface && report.surface->meshed) {
        report.times.emplace_back("surface", report.surface->meshed->seconds);
    }
    if (options_.resultsFolder) {
        report.runDirectory = options_.resultsFolder;
        report.earlierInputs = earlierInputs_;
        if (earlierInputs_) {
            report.referenceArea = earlierInputs_->referenceArea;
        }
    }
    switch (phase.kind) {
    case RunPhase::Kind::failed:
        report.phase = "failed";
        report.failure = {phase.stage, phase.message};
        if (phase.stage == rawValue(RunStage::mesh) && report.openEdges.value_or(0) > 0) {
            // The closing line has the mesher's own words; this is what to do about them.
            app_.logStore.append(phase.message, LogStore::Level::warn);
        }
        break;
    case RunPhase::Kind::cancelled:
        report.phase = "cancelled";
        break;
    case RunPhase::Kind::idle:
        report.phase = "loaded";
        break;
    default:
        report.phase = options_.prepareFolder ? "prepared" : "finished";
        if (options_.prepareFolder) {
            report.runDirectory = options_.prepareFolder;
        }
    }
    conclude(std::move(report), status);
}

void BatchRun::prepare() {
    const SolverRunner runner(environment_, ownWork_.token(), options_.prepareFolder);
    std::optional<SolverRunner::STLContext> stl;
    if (!options_.demo) {
        stl = SolverRunner::STLContext{*app_.parameters.stlURL(),
            rotated(*app_.parameters.mesh(), app_.parameters.rotationRadians())};
    }
    const SolverRunner::Events events = [this](const SolverRunner::Event& event) {
        if (const auto* phase = std::get_if<RunPhase>(&event)) {
            enter(*phase);
        } else if (const auto* fitness = std::get_if<SurfaceFitness>(&event)) {
            preparedSurface_.fitness = *fitness;
        } else if (const auto* surface = std::get_if<MeshedSurface>(&event)) {
            preparedSurface_.meshed = *surface;
            preparedSurface_.quality.reset();
        } else if (const auto* quality = std::get_if<MeshQuality>(&event)) {
            preparedSurface_.quality = *quality;
        }
    };
    Background::run(
        [this, runner, stl = std::move(stl), events, log = RunLog(app_.logStore),
            inputs = app_.parameters.snapshot(&app_.appSettings),
            openEdges = app_.parameters.openEdgeCount(),
            preparation = CasePreparation(*options_.prepareFolder, options_.keepRunDirectory)] {
            const auto outcome = preparation.run(runner, stl, inputs, openEdges, log, events);
            MainThread::post([this, outcome] {
                preparedCells_ = outcome.cells;
                enter(outcome.phase);
                finish(outcome.phase, outcome.status);
            });
        },
        Background::Priority::userInitiated);
}

void BatchRun::harvestEarlierRun() {
    enter(RunPhase::postProcessing());
    Background::run(
        [this, log = RunLog(app_.logStore), history = QPointer(&app_.historyStore),
            token = ownWork_.token()] {
            auto outcome = EarlierRun::harvest(options_, environment_, log, history, token);
            MainThread::post([this, outcome = std::move(outcome)]() mutable {
                earlierInputs_ = std::move(outcome.inputs);
                app_.parameters.setLastRunResult(std::move(outcome.result));
                enter(outcome.phase);
                finish(outcome.phase, outcome.status);
            });
        },
        Background::Priority::userInitiated);
}

bool BatchRun::isCancelling() const {
    return app_.simulation.isCancelling() || ownWork_.isCancelled();
}

void BatchRun::conclude(BatchReport report, int status) {
    BatchPicture* const picture = picture_ ? &*picture_ : nullptr;
    if (picture && !options_.noRun && app_.parameters.mesh()) {
        picture->prepare(*app_.parameters.mesh(), options_.picture);
    }
    Background::run(
        [this, report = std::move(report), status, log = RunLog(app_.logStore), tools = tools_,
            probe = probe_, picture, rotation = app_.parameters.rotationRadians(),
            result = app_.parameters.lastRunResult()]() mutable {
            int final = ExitStatus::resultsFailed;
            try {
                probe.wait();
                if (!report.options.resultsFolder) {
                    report.tools = *tools;
                }
                final = concludeRun(
                    std::move(report), status, result, picture, rotation, environment_, log);
            } catch (const std::exception&) {
                const std::string reason =
                    HarvestTexts::reason(std::current_exception(), "what the run is to leave");
                MainThread::post([this, text = reason] {
                    app_.logStore.append("Conclusion failed · " + text, LogStore::Level::error);
                });
            }
            MainThread::post([final] { QCoreApplication::exit(final); });
        },
        Background::Priority::userInitiated);
}

void BatchRun::refuse(const std::string& message, const std::string& text) {
    app_.logStore.append(message + " · " + text, LogStore::Level::error);
    finish(RunPhase::failed("model", text), ExitStatus::wrongUsage);
}

} // namespace ostrella
