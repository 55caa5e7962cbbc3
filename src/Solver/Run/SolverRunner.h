#pragma once

#include "Models/Cancellation.h"
#include "Models/MeshedSurface.h"
#include "Models/RunState.h"
#include "Models/SimulationInputs.h"
#include "Models/SurfaceFitness.h"
#include "Models/TriangleMesh.h"
#include "Solver/Tools/MeshQuality.h"
#include "Solver/Tools/RunEnvironment.h"
#include "Solver/Tools/RunLog.h"

#include <QPointer>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <variant>

namespace ostrella {

class HistoryStore;

/// The driver of one run: from a turned model, or the built-in aerofoil case, to the solver's exit
/// and its results. It works synchronously on the run's worker thread and speaks through four
/// channels only: the log, the history, the events, and what it returns or throws. It holds log and
/// history weakly, so that it may outlive them at the end of the process. Cancellation leaves as
/// CancellationError, every other failure as RunStageError.
class SolverRunner {
public:
    /// The number of volume elements of the mesh.
    struct MeshCells {
        std::int64_t count = 0;
        bool operator==(const MeshCells&) const = default;
    };
    /// The directory of the run, which exists from now on.
    struct RunDirectory {
        std::filesystem::path url;
        bool operator==(const RunDirectory&) const = default;
    };
    /// What the driver reports while it works. The fitness is that of the model as it was turned,
    /// its places in the application's frame of axes; of surfaces that are given to the mesher one
    /// after the other each is reported and then the quality of its mesh, and at the end the one
    /// whose mesh was kept.
    using Event =
        std::variant<RunPhase, MeshCells, RunDirectory, SurfaceFitness, MeshedSurface, MeshQuality>;
    /// Called on the main thread; may be empty.
    using Events = std::function<void(const Event&)>;

    struct STLContext {
        /// The file of the model.
        std::filesystem::path url;
        /// The model in the application's frame, already turned by the user's rotation.
        TriangleMesh mesh;
    };

    /// What the solver's own part of a run gave.
    struct SolveOutcome {
        std::optional<StopReason> stopReason;
        /// Wall-clock time of the solver alone, s.
        double elapsedSeconds = 0;
    };

    /// A case that lies complete in its directory: mesh and configuration are written.
    struct PreparedCase {
        std::filesystem::path solver;
        std::filesystem::path directory;
        /// 3, or 2 for the built-in aerofoil.
        int dimensions = 3;
        std::optional<std::int64_t> meshCells;
    };

    /// `directory` is the run's directory; absent, a fresh one is made in the environment's
    /// temporary directory.
    SolverRunner(RunEnvironment environment, CancellationToken token,
        std::optional<std::filesystem::path> directory = std::nullopt);

    /// Meshes the air around the model and solves the flow.
    SimulationResult runSTL(const STLContext& stl, const SimulationInputs& inputs,
        const RunLog& log, const QPointer<HistoryStore>& history, const Events& events) const;

    /// Solves the built-in two-dimensional NACA0012 case.
    SimulationResult runDemo(const SimulationInputs& inputs, const RunLog& log,
        const QPointer<HistoryStore>& history, const Events& events) const;

    /// The part of runSTL up to and including the written configuration.
    PreparedCase prepareSTL(const STLContext& stl, const SimulationInputs& inputs,
        const RunLog& log, const Events& events) const;

    /// The part of runDemo up to and including the written configuration.
    PreparedCase prepareDemo(
        const SimulationInputs& inputs, const RunLog& log, const Events& events) const;

private:
    std::filesystem::path makeRunDirectory() const;
    std::filesystem::path locateSolver(const RunLog& log) const;
    std::filesystem::path locateTemplate(std::string_view name) const;
    SimulationResult solveAndHarvest(const PreparedCase& prepared, const SimulationInputs& inputs,
        const RunLog& log, const QPointer<HistoryStore>& history, const Events& events) const;

    RunEnvironment environment_;
    CancellationToken token_;
    std::optional<std::filesystem::path> directory_;
};

} // namespace ostrella
