#include "Solver/Run/SimulationController.h"

#include "Models/AppSettings.h"
#include "Models/HistoryStore.h"
#include "Models/MainThread.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Tools/Background.h"
#include "Solver/Tools/RunDirectories.h"

#include <fmt/format.h>

#include <cmath>
#include <set>
#include <thread>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

/// How many old run directories outlive a prune, besides the one on show.
constexpr int keptRunDirectories = 2;

bool isCancellation(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const CancellationError&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

SimulationController::SimulationController(
    RunEnvironment environment, NotificationCenter& notifications, QObject* parent)
    : QObject(parent), environment_(std::move(environment)), notifications_(notifications) {}

void SimulationController::configure(SimulationParameters& parameters, LogStore& log,
    RenderSettings& render, HistoryStore& history, AppSettings& appSettings) {
    if (parameters_) {
        return;
    }
    parameters_ = &parameters;
    log_ = &log;
    render_ = &render;
    history_ = &history;
    appSettings_ = &appSettings;

    const auto subscribe = [this](std::string_view name, void (SimulationController::*handler)()) {
        observers_.push_back(
            notifications_.observe(name, [weak = QPointer(this), handler](const std::any&) {
                if (weak) {
                    (weak.data()->*handler)();
                }
            }));
    };
    subscribe(Notifications::runSimulationRequested, &SimulationController::run);
    subscribe(Notifications::runDemoRequested, &SimulationController::runDemo);
    subscribe(Notifications::cancelSimulationRequested, &SimulationController::cancel);
    subscribe(Notifications::geometryLoaded, &SimulationController::logGeometryLoaded);

    Background::run([parent = environment_.temporaryDirectory] {
        RunDirectories::prune(parent, std::nullopt, {}, keptRunDirectories);
    });
}

bool SimulationController::canRun() const {
    return parameters_ && !phase_.isActive() && parameters_->mesh() &&
           !parameters_->loadingFileName();
}

void SimulationController::run() {
    if (!canRun() || !parameters_->stlURL()) {
        return;
    }
    launch(SolverRunner::STLContext{
        *parameters_->stlURL(), rotated(*parameters_->mesh(), parameters_->rotationRadians())});
}

void SimulationController::runDemo() {
    if (!phase_.isActive()) {
        launch(std::nullopt);
    }
}

void SimulationController::launch(std::optional<SolverRunner::STLContext> stl) {
    if (!parameters_ || !log_ || !render_ || !history_ || !appSettings_) {
        return;
    }
    const SimulationInputs inputs = parameters_->snapshot(appSettings_);
    parameters_->setMaxIterations(inputs.maxIterations);
    setMaxIterations(inputs.maxIterations);
    setSummary(std::nullopt);
    setMeshCells(std::nullopt);
    setSurfaceFitness(std::nullopt);
    setMeshedSurface(std::nullopt);
    setIsCancelling(false);
    cancelRequestedAt_.reset();
    const Date started = environment_.clock->now();
    setStartedAt(started);
    setPhase(stl ? RunPhase::meshing() : RunPhase::solving());

    std::optional<fs::path> shown;
    if (const auto& result = parameters_->lastRunResult()) {
        shown = result->runDirectory;
    }
    std::set<fs::path> discarded;
    if (discardedRunDirectory_) {
        discarded.insert(*std::exchange(discardedRunDirectory_, std::nullopt));
    }
    activeRunDirectory_.reset();
    parameters_->setLastRunResult(std::nullopt);
    parameters_->setIsRunning(true);
    const std::int64_t id = ++runID_;
    runTask_.emplace();
    if (isCancelling_) {
        // Asked for by a listener to one of the values set above.
        runTask_->cancel();
    }

    // The worker holds the controller weakly and everything else by value or weakly too, so that it
    // can outlive the main loop. It is never waited for.
    std::thread([weak = QPointer(this), environment = environment_, token = runTask_->token(), id,
                    started, inputs, shown, discarded, stl = std::move(stl), log = RunLog(*log_),
                    history = history_] {
        Outcome outcome;
        try {
            RunDirectories::prune(
                environment.temporaryDirectory, shown, discarded, keptRunDirectories);
            const SolverRunner runner(environment, token);
            const auto events = [weak, id](const SolverRunner::Event& event) {
                if (weak) {
                    weak->apply(event, id);
                }
            };
            MainThread::run([&history] {
                if (!history) {
                    throw CancellationError();
                }
                history->reset();
            });
            outcome = stl ? runner.runSTL(*stl, inputs, log, history, events)
                          : runner.runDemo(inputs, log, history, events);
        } catch (...) {
            outcome = std::current_exception();
        }
        MainThread::post([weak, id, started, inputs, outcome = std::move(outcome)]() mutable {
            if (weak) {
                weak->complete(id, std::move(outcome), inputs, started);
            }
        });
    }).detach();
}

void SimulationController::apply(const SolverRunner::Event& event, std::int64_t runID) {
    if (runID != runID_ || !phase_.isActive()) {
        return;
    }
    if (const auto* phase = std::get_if<RunPhase>(&event)) {
        setPhase(*phase);
    } else if (const auto* cells = std::get_if<SolverRunner::MeshCells>(&event)) {
        setMeshCells(cells->count);
    } else if (const auto* directory = std::get_if<SolverRunner::RunDirectory>(&event)) {
        activeRunDirectory_ = directory->url;
    } else if (const auto* fitness = std::get_if<SurfaceFitness>(&event)) {
        setSurfaceFitness(*fitness);
    } else if (const auto* surface = std::get_if<MeshedSurface>(&event)) {
        setMeshedSurface(*surface);
    } else if (const auto* quality = std::get_if<MeshQuality>(&event)) {
        setMeshQuality(*quality);
    }
}

void SimulationController::complete(
    std::int64_t runID, Outcome outcome, const SimulationInputs& inputs, Date started) {
    if (runID != runID_) {
        return;
    }
    if (auto* result = std::get_if<SimulationResult>(&outcome)) {
        succeed(std::move(*result), inputs);
    } else {
        fail(std::get<std::exception_ptr>(outcome), started);
    }
    if (runID != runID_) {
        // A listener to the final phase has begun the next run; the rest is that run's.
        return;
    }
    if (parameters_) {
        parameters_->setIsRunning(false);
    }
    setIsCancelling(false);
    runTask_.reset();
    activeRunDirectory_.reset();
}

void SimulationController::succeed(SimulationResult result, const SimulationInputs& inputs) {
    RunSummary summary;
    summary.elapsedSeconds = result.elapsedSeconds;
    summary.maxIterations = inputs.maxIterations;
    if (history_) {
        if (const auto latest = history_->latestIteration()) {
            summary.iterations = *latest + 1;
        }
        summary.cl = history_->latestValue("CL");
        summary.cd = history_->latestValue("CD");
    }
    if (!summary.iterations && result.stopReason &&
        result.stopReason->kind == StopReason::Kind::iterationCap) {
        summary.iterations = result.stopReason->iterations;
    }
    summary.cells = meshCells_ ? meshCells_ : result.meshCells;
    summary.converged = result.stopReason == StopReason::converged();

    const bool hasSurface = result.surfaceField.has_value();
    const bool hasStreamlines = result.streamlines.has_value();
    const bool hasVortex = result.vortex.has_value();
    if (parameters_) {
        parameters_->setLastRunResult(std::move(result));
    }
    if (render_) {
        // A layer with nothing to show is left as the user had it.
        if (hasSurface) {
            render_->setColormapEnabled(true);
        }
        if (hasStreamlines) {
            render_->setStreamlinesEnabled(true);
        }
        if (hasVortex) {
            render_->setVortexEnabled(true);
        }
        render_->setReframeRequestID(QUuid::createUuid());
    }
    setMeshCells(summary.cells);
    setSummary(summary);
    if (log_) {
        auto [text, level] = finishLine(summary);
        log_->append(std::move(text), level);
    }
    setPhase(RunPhase::finished(summary.converged));
}

void SimulationController::fail(const std::exception_ptr& error, Date started) {
    discardedRunDirectory_ = activeRunDirectory_;
    if (!isCancelling_ && !isCancellation(error)) {
        const RunPhase next =
            failurePhase(error, parameters_ ? parameters_->openEdgeCount() : std::nullopt);
        if (log_) {
            log_->append(failureLine(next.stage, error), LogStore::Level::error);
        }
        setPhase(next);
        return;
    }
    // Up to the request, not to the end of the winding-down.
    const Date moment = cancelRequestedAt_.value_or(environment_.clock->now());
    if (log_) {
        log_->append(fmt::format("Cancelled by user after {} s",
                         std::llround(secondsBetween(started, moment))),
            LogStore::Level::warn);
    }
    setPhase(RunPhase::cancelled());
}

void SimulationController::cancel() {
    if (!phase_.isActive() || isCancelling_) {
        return;
    }
    setIsCancelling(true);
    cancelRequestedAt_ = environment_.clock->now();
    if (runTask_) {
        runTask_->cancel();
    }
}

void SimulationController::logGeometryLoaded() {
    clearOutcomeForNewGeometry();
    if (!parameters_ || !log_ || !parameters_->mesh()) {
        return;
    }
    const TriangleMesh& mesh = *parameters_->mesh();
    const auto& url = parameters_->stlURL();
    log_->append(
        LogStore::loadedLine(url ? url->filename().string() : "geometry",
            static_cast<std::int64_t>(mesh.facetCount()), mesh.boundingMax() - mesh.boundingMin()),
        LogStore::Level::info);
    if (const auto open = parameters_->openEdgeCount(); open.value_or(0) >= 1) {
        log_->append(LogStore::openEdgesLine(*open), LogStore::Level::warn);
    }
    log_->append(fmt::format("Ready. Press {} to run.", environment_.words->runShortcut),
        LogStore::Level::info);
}

void SimulationController::clearOutcomeForNewGeometry() {
    if (phase_.isActive()) {
        return;
    }
    setPhase(RunPhase::idle());
    setSummary(std::nullopt);
    setSurfaceFitness(std::nullopt);
    setMeshedSurface(std::nullopt);
    if (!discardedRunDirectory_) {
        return;
    }
    Background::run([directory = *std::exchange(discardedRunDirectory_, std::nullopt),
                        parent = environment_.temporaryDirectory] {
        if (const auto name = RunDirectories::name(directory, parent)) {
            RunDirectories::remove(*name, parent);
        }
    });
}

void SimulationController::setPhase(RunPhase phase) {
    phase_ = std::move(phase);
    Q_EMIT phaseChanged();
}

void SimulationController::setStartedAt(Date date) {
    startedAt_ = date;
    Q_EMIT startedAtChanged();
}

void SimulationController::setSummary(std::optional<RunSummary> summary) {
    summary_ = std::move(summary);
    Q_EMIT summaryChanged();
}

void SimulationController::setMeshCells(std::optional<std::int64_t> cells) {
    meshCells_ = cells;
    Q_EMIT meshCellsChanged();
}

void SimulationController::setSurfaceFitness(std::optional<SurfaceFitness> fitness) {
    surfaceFitness_ = std::move(fitness);
    Q_EMIT surfaceFitnessChanged();
}

void SimulationController::setMeshedSurface(std::optional<MeshedSurface> surface) {
    meshedSurface_ = std::move(surface);
    setMeshQuality(std::nullopt);
    Q_EMIT meshedSurfaceChanged();
}

void SimulationController::setMeshQuality(std::optional<MeshQuality> quality) {
    meshQuality_ = quality;
    Q_EMIT meshQualityChanged();
}

void SimulationController::setMaxIterations(int iterations) {
    maxIterations_ = iterations;
    Q_EMIT maxIterationsChanged();
}

void SimulationController::setIsCancelling(bool cancelling) {
    isCancelling_ = cancelling;
    Q_EMIT isCancellingChanged();
}

} // namespace ostrella
