#pragma once

#include "Models/Cancellation.h"
#include "Models/Clock.h"
#include "Models/LogStore.h"
#include "Models/MeshedSurface.h"
#include "Models/NotificationCenter.h"
#include "Models/RunState.h"
#include "Models/SurfaceFitness.h"
#include "Solver/Run/SolverRunner.h"
#include "Solver/Tools/RunEnvironment.h"

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ostrella {

class AppSettings;
class HistoryStore;
class RenderSettings;
class SimulationParameters;

/// Owns the state of a run: one at a time, its inputs frozen at the start, closed by one log line
/// and one final phase. Main thread only; a setter of a published value notifies at every set.
class SimulationController : public QObject {
    Q_OBJECT
    Q_PROPERTY(int maxIterations READ maxIterations NOTIFY maxIterationsChanged)
    Q_PROPERTY(bool isCancelling READ isCancelling NOTIFY isCancellingChanged)

public:
    SimulationController(
        RunEnvironment environment, NotificationCenter& notifications, QObject* parent = nullptr);

    /// Wires the controller to the shared objects, which it holds weakly, subscribes it to its
    /// notifications and clears away old run directories. A second call changes nothing.
    void configure(SimulationParameters& parameters, LogStore& log, RenderSettings& render,
        HistoryStore& history, AppSettings& appSettings);

    const RunPhase& phase() const { return phase_; }
    /// Moment of the last start; it stays after the run.
    std::optional<Date> startedAt() const { return startedAt_; }
    /// Figures of the last finished run.
    const std::optional<RunSummary>& summary() const { return summary_; }
    /// Volume elements of the present run.
    std::optional<std::int64_t> meshCells() const { return meshCells_; }
    /// How fit for meshing the model of the last started run was, in the application's frame of
    /// axes and turned as it was then; absent until it is known, and with another model.
    const std::optional<SurfaceFitness>& surfaceFitness() const { return surfaceFitness_; }
    /// The surface that the mesher was given by the last started run; absent as the former is.
    const std::optional<MeshedSurface>& meshedSurface() const { return meshedSurface_; }
    /// Of the mesh around that surface; absent where it could not be measured.
    const std::optional<MeshQuality>& meshQuality() const { return meshQuality_; }
    /// Limit of the last started run.
    int maxIterations() const { return maxIterations_; }
    /// The user asked for a stop, and the run has not ended.
    bool isCancelling() const { return isCancelling_; }
    /// Directory of the run under way, once it exists.
    const std::optional<std::filesystem::path>& activeRunDirectory() const {
        return activeRunDirectory_;
    }
    /// Directory of the last run that gave no result.
    const std::optional<std::filesystem::path>& discardedRunDirectory() const {
        return discardedRunDirectory_;
    }
    std::int64_t runID() const { return runID_; }

    bool canRun() const;
    /// Starts a run of the loaded model if that is possible; otherwise does nothing.
    void run();
    /// Starts the built-in aerofoil case unless a run is under way.
    void runDemo();
    /// Asks the run under way to stop.
    void cancel();
    /// Resets the shown outcome for a new model.
    void clearOutcomeForNewGeometry();

    /// The closing line of a finished run.
    static std::pair<std::string, LogStore::Level> finishLine(const RunSummary& summary);
    /// What to do about an open surface that could not be meshed.
    static std::string waterTightMessage(std::int64_t openEdges);
    /// The final phase of a run that ended with `error`.
    static RunPhase failurePhase(
        const std::exception_ptr& error, std::optional<std::int64_t> openEdgeCount);
    /// The closing line of a run that ended with `error`.
    static std::string failureLine(std::string_view stage, const std::exception_ptr& error);

Q_SIGNALS:
    void phaseChanged();
    void startedAtChanged();
    void summaryChanged();
    void meshCellsChanged();
    void surfaceFitnessChanged();
    void meshedSurfaceChanged();
    void meshQualityChanged();
    void maxIterationsChanged();
    void isCancellingChanged();

private:
    friend class SimulationControllerProbe;

    using Outcome = std::variant<SimulationResult, std::exception_ptr>;

    void launch(std::optional<SolverRunner::STLContext> stl);
    void apply(const SolverRunner::Event& event, std::int64_t runID);
    void complete(
        std::int64_t runID, Outcome outcome, const SimulationInputs& inputs, Date started);
    void succeed(SimulationResult result, const SimulationInputs& inputs);
    void fail(const std::exception_ptr& error, Date started);
    void logGeometryLoaded();

    void setPhase(RunPhase phase);
    void setStartedAt(Date date);
    void setSummary(std::optional<RunSummary> summary);
    void setMeshCells(std::optional<std::int64_t> cells);
    void setSurfaceFitness(std::optional<SurfaceFitness> fitness);
    /// The quality of an earlier mesh goes with its surface.
    void setMeshedSurface(std::optional<MeshedSurface> surface);
    void setMeshQuality(std::optional<MeshQuality> quality);
    void setMaxIterations(int iterations);
    void setIsCancelling(bool cancelling);

    RunEnvironment environment_;
    NotificationCenter& notifications_;

    RunPhase phase_;
    std::optional<Date> startedAt_;
    std::optional<RunSummary> summary_;
    std::optional<std::int64_t> meshCells_;
    std::optional<SurfaceFitness> surfaceFitness_;
    std::optional<MeshedSurface> meshedSurface_;
    std::optional<MeshQuality> meshQuality_;
    int maxIterations_ = SimulationInputs().maxIterations;
    bool isCancelling_ = false;

    QPointer<SimulationParameters> parameters_;
    QPointer<LogStore> log_;
    QPointer<RenderSettings> render_;
    QPointer<HistoryStore> history_;
    QPointer<AppSettings> appSettings_;

    std::optional<CancellationSource> runTask_;
    std::int64_t runID_ = 0;
    std::optional<Date> cancelRequestedAt_;
    std::vector<NotificationCenter::Token> observers_;
    std::optional<std::filesystem::path> activeRunDirectory_;
    std::optional<std::filesystem::path> discardedRunDirectory_;
};

} // namespace ostrella
