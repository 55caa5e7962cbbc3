#include "Solver/Run/Harvest.h"

#include "Solver/Flow/FlowScreen.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Run/HarvestTexts.h"
#include "Solver/Run/WallResolution.h"

#include <fmt/format.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr int stepCount = 400;
constexpr int vortexResolution = 64;
constexpr float vortexPercentile = 99.5F;

bool isThere(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error);
}

class Stopwatch {
public:
    explicit Stopwatch(const Clock& clock) : clock_(clock), start_(clock.now()) {}
    double seconds() const { return secondsBetween(start_, clock_.now()); }

private:
    const Clock& clock_;
    Date start_;
};

/// The parts of one harvest, each adding to the result what it can.
class Harvester {
public:
    Harvester(int dimensions, const SimulationInputs& inputs, const RunLog& log,
        const CancellationToken& token, const Clock& clock, SimulationResult& result)
        : dimensions_(dimensions),
          inputs_(inputs),
          log_(log),
          token_(token),
          clock_(clock),
          result_(result) {}

    void harvestSurface();
    void harvestVolume();
    void harvestVortex();

private:
    /// The surface's box, not the volume's, so that seeds and vortices follow the body.
    std::optional<StreamlineFocus> focus() const;
    void trace();
    /// Whether the volume's numbers can be computed with. Where they cannot, the tracing has said
    /// so.
    bool volumeIsFinite() const;
    /// Performs a part. A cancellation leaves; another failure costs one line.
    template <class Work>
    void salvage(std::string_view warning, std::string_view part, Work&& work) const;

    int dimensions_;
    const SimulationInputs& inputs_;
    const RunLog& log_;
    const CancellationToken& token_;
    const Clock& clock_;
    SimulationResult& result_;
};

template <class Work>
void Harvester::salvage(std::string_view warning, std::string_view part, Work&& work) const {
    try {
        std::forward<Work>(work)();
    } catch (const CancellationError&) {
        throw;
    } catch (...) {
        log_.warn(
            fmt::format("{}{}", warning, HarvestTexts::reason(std::current_exception(), part)));
    }
}

std::optional<StreamlineFocus> Harvester::focus() const {
    if (!result_.surfaceField) {
        return std::nullopt;
    }
    return StreamlineFocus::around(result_.surfaceField->boundingMin,
        result_.surfaceField->boundingMax, inputs_.streamlineUpstreamFactor,
        inputs_.streamlineDownstreamFactor);
}

void Harvester::harvestSurface() {
    if (!isThere(result_.surfaceVTK)) {
        return;
    }
    salvage(HarvestTexts::surfaceWarning, "surface_flow.vtk", [this] {
        const Stopwatch time(clock_);
        SurfaceField field = FlowScreen::parseSurface(result_.surfaceVTK, "Pressure_Coefficient");
        result_.surfaceField = dimensions_ == 3 ? SolverFrame::toApp(field) : std::move(field);
        result_.figures.surfaceSeconds = time.seconds();
    });
    if (result_.surfaceField) {
        log_.append(HarvestTexts::surfaceLine(*result_.surfaceField), LogStore::Level::ok);
    }
    const Stopwatch time(clock_);
    result_.figures.yPlus = reportYPlus(result_.surfaceVTK, inputs_.turbulenceModel, log_);
    if (result_.figures.yPlus) {
        result_.figures.wallReportSeconds = time.seconds();
    }
}

void Harvester::harvestVolume() {
    if (!isThere(result_.flowVTK)) {
        return;
    }
    salvage(HarvestTexts::volumeWarning, "flow.vtk", [this] {
        const Stopwatch time(clock_);
        VolumeField field = FlowScreen::parseVolume(result_.flowVTK, "Velocity");
        result_.volumeField = dimensions_ == 3 ? SolverFrame::toApp(field) : std::move(field);
        result_.figures.volumeSeconds = time.seconds();
    });
    if (!result_.volumeField) {
        return;
    }
    log_.info(HarvestTexts::volumeLine(*result_.volumeField, *result_.figures.volumeSeconds));
    log_.info(std::string(HarvestTexts::tracing));
    salvage(HarvestTexts::volumeWarning, "the streamlines", [this] { trace(); });
}

void Harvester::trace() {
    const Stopwatch time(clock_);
    result_.streamlines =
        FlowScreen::generate(*result_.volumeField, static_cast<float>(inputs_.velocity), focus(),
            inputs_.streamlineSeedCount, stepCount, [this] { return token_.isCancelled(); });
    result_.figures.streamlinesSeconds = time.seconds();
    log_.append(
        HarvestTexts::streamlinesLine(*result_.streamlines, *result_.figures.streamlinesSeconds),
        LogStore::Level::ok);
}

bool Harvester::volumeIsFinite() const {
    try {
        FlowScreen::requireFinite(*result_.volumeField);
        return true;
    } catch (const FlowScreenError&) {
        return false;
    }
}

void Harvester::harvestVortex() {
    const auto around = focus();
    if (!result_.volumeField || !around || !around->isVolumetric || !volumeIsFinite()) {
        return;
    }
    log_.info(std::string(HarvestTexts::extracting));
    salvage(HarvestTexts::volumeWarning, "the vortex surface", [this, &around] {
        const Stopwatch time(clock_);
        result_.vortex = FlowScreen::extract(*result_.volumeField, around, vortexResolution,
            vortexPercentile, [this] { return token_.isCancelled(); });
        const double seconds = time.seconds();
        if (!result_.vortex) {
            log_.warn(std::string(HarvestTexts::noVortex));
            return;
        }
        result_.figures.vortexSeconds = seconds;
        log_.append(HarvestTexts::vortexLine(*result_.vortex, seconds), LogStore::Level::ok);
    });
}

} // namespace

SimulationResult harvestResult(const fs::path& runDirectory,
    const SolverRunner::SolveOutcome& solve, std::optional<std::int64_t> meshCells, int dimensions,
    const SimulationInputs& inputs, const RunLog& log, const CancellationToken& token,
    const Clock& clock) {
    SimulationResult result;
    result.runDirectory = runDirectory;
    result.flowVTK = runDirectory / "flow.vtk";
    result.surfaceVTK = runDirectory / "surface_flow.vtk";

    Harvester harvester(dimensions, inputs, log, token, clock, result);
    harvester.harvestSurface();
    token.throwIfCancelled();
    harvester.harvestVolume();
    token.throwIfCancelled();
    if (!result.surfaceField && !result.volumeField) {
        throw SolverError::noReadableOutput();
    }
    harvester.harvestVortex();
    token.throwIfCancelled();

    const fs::path history = runDirectory / "history.csv";
    if (isThere(history)) {
        result.historyCSV = history;
    }
    const fs::path configuration = runDirectory / "run.cfg";
    if (isThere(configuration)) {
        result.configFile = configuration;
    }
    result.elapsedSeconds = solve.elapsedSeconds;
    result.stopReason = solve.stopReason;
    result.meshCells = meshCells;
    return result;
}

} // namespace ostrella
