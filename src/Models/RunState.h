#pragma once

#include "Models/IsoSurface.h"
#include "Models/ScalarFieldStats.h"
#include "Models/Streamlines.h"
#include "Models/SurfaceField.h"
#include "Models/VolumeField.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

struct PlatformWords;

/// Where a failure of a run happened.
enum class RunStage { mesh, solver, results };

std::string_view rawValue(RunStage stage);

/// What the views see of a run; compared by value.
struct RunPhase {
    enum class Kind { idle, meshing, solving, postProcessing, finished, failed, cancelled };

    Kind kind = Kind::idle;
    /// Of `finished`: the solver reported convergence.
    bool converged = false;
    /// Of `failed`: a RunStage raw value.
    std::string stage;
    /// Of `failed`: the text the user reads.
    std::string message;

    static RunPhase idle() { return {}; }
    static RunPhase meshing() { return {Kind::meshing, false, {}, {}}; }
    static RunPhase solving() { return {Kind::solving, false, {}, {}}; }
    static RunPhase postProcessing() { return {Kind::postProcessing, false, {}, {}}; }
    static RunPhase finished(bool converged) { return {Kind::finished, converged, {}, {}}; }
    static RunPhase failed(std::string stage, std::string message) {
        return {Kind::failed, false, std::move(stage), std::move(message)};
    }
    static RunPhase cancelled() { return {Kind::cancelled, false, {}, {}}; }

    /// A run is under way.
    bool isActive() const {
        return kind == Kind::meshing || kind == Kind::solving || kind == Kind::postProcessing;
    }

    bool operator==(const RunPhase&) const = default;
};

/// Why the solver stopped, as far as its output said.
struct StopReason {
    enum class Kind { iterationCap, converged };

    Kind kind = Kind::iterationCap;
    /// Of `iterationCap`: the count, if the solver's line gave one.
    std::optional<std::int64_t> iterations;

    static StopReason iterationCap(std::optional<std::int64_t> iterations) {
        return {Kind::iterationCap, iterations};
    }
    static StopReason converged() { return {Kind::converged, std::nullopt}; }

    bool operator==(const StopReason&) const = default;
};

/// The run driver's own failures; what() is the text the user reads.
class SolverError final : public std::exception {
public:
    enum class Kind {
        binaryNotFound,
        templateNotFound,
        meshNotFound,
        noReadableOutput,
        nonZeroExit
    };

    static SolverError binaryNotFound(const PlatformWords& words);
    static SolverError templateNotFound();
    static SolverError meshNotFound();
    static SolverError noReadableOutput();
    /// The status as the platform reports it; the bare signal number for a child killed by a
    /// signal.
    static SolverError nonZeroExit(std::int32_t status);

    Kind kind() const noexcept { return kind_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    SolverError(Kind kind, std::string text);

    Kind kind_;
    std::string text_;
};

/// Adds to an error where it happened, and no words.
class RunStageError final : public std::exception {
public:
    /// `underlying` holds an error whose description is the text the user reads.
    RunStageError(RunStage stage, std::exception_ptr underlying);

    RunStage stage() const noexcept { return stage_; }
    const std::exception_ptr& underlying() const noexcept { return underlying_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    RunStage stage_;
    std::exception_ptr underlying_;
    std::string text_;
};

/// The text of any error that a run can end with.
std::string errorDescription(const std::exception_ptr& error);

/// The figures of a finished run.
struct RunSummary {
    /// Time of the solver alone, s.
    double elapsedSeconds = 0;
    std::optional<std::int64_t> iterations;
    int maxIterations = 0;
    std::optional<std::int64_t> cells;
    std::optional<double> cl;
    std::optional<double> cd;
    bool converged = false;

    bool operator==(const RunSummary&) const = default;
};

/// What the harvest of a run measured beside the fields that it gave.
struct HarvestFigures {
    /// y⁺ on the body, if the solver wrote it.
    std::optional<ScalarFieldStats> yPlus;
    /// Seconds of each part; absent where a part did not take place or gave nothing.
    std::optional<double> surfaceSeconds;
    std::optional<double> wallReportSeconds;
    std::optional<double> volumeSeconds;
    std::optional<double> streamlinesSeconds;
    std::optional<double> vortexSeconds;
};

/// Everything that a finished run leaves behind. Fields are in the application's frame of axes for
/// a run in three dimensions, in the mesh's own for one in two.
struct SimulationResult {
    std::filesystem::path runDirectory;
    /// "flow.vtk" and "surface_flow.vtk" of the directory, whether or not the files exist.
    std::filesystem::path flowVTK;
    std::filesystem::path surfaceVTK;
    /// Present only if the file exists.
    std::optional<std::filesystem::path> historyCSV;
    double elapsedSeconds = 0;
    std::optional<SurfaceField> surfaceField;
    std::optional<VolumeField> volumeField;
    std::optional<Streamlines> streamlines;
    std::optional<IsoSurface> vortex;
    std::optional<std::filesystem::path> configFile;
    std::optional<StopReason> stopReason;
    std::optional<std::int64_t> meshCells;
    HarvestFigures figures;
};

} // namespace ostrella
