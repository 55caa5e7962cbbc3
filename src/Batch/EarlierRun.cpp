#include "Batch/EarlierRun.h"

#include "Batch/ExitStatus.h"
#include "Batch/ResultFolder.h"
#include "Models/Cancellation.h"
#include "Models/HistoryStore.h"
#include "Models/NumberFormatting.h"
#include "Solver/Run/Harvest.h"
#include "Solver/Run/HarvestTexts.h"
#include "Solver/Run/SimulationController.h"
#include "Solver/Run/SolverLaunch.h"
#include "Solver/Run/StageExit.h"
#include "Solver/Tools/TextFile.h"

#include <fmt/format.h>

#include <cmath>

namespace ostrella::EarlierRun {

namespace fs = std::filesystem;

namespace {

/// Performs `work` with a file beside the fields, if it is there; one that cannot be read costs a
/// line.
template <class Work>
void withFile(const fs::path& file, const RunLog& log, Work&& work) {
    std::error_code error;
    if (!fs::exists(file, error)) {
        return;
    }
    const std::string name = file.filename().string();
    try {
        work(readText(file));
    } catch (const CancellationError&) {
        throw;
    } catch (...) {
        log.warn(fmt::format(
            "{} left out · {}", name, HarvestTexts::reason(std::current_exception(), name)));
    }
}

/// The record that the harvest takes.
SimulationInputs complete(const ConfiguredInputs& known) {
    SimulationInputs inputs;
    inputs.velocity = known.velocity.value_or(inputs.velocity);
    inputs.alpha = known.alpha.value_or(inputs.alpha);
    inputs.beta = known.beta.value_or(inputs.beta);
    inputs.density = known.density.value_or(inputs.density);
    inputs.maxIterations = known.maxIterations.value_or(inputs.maxIterations);
    inputs.turbulenceModel = known.turbulenceModel.value_or(inputs.turbulenceModel);
    inputs.regime = known.regime.value_or(inputs.regime);
    inputs.saRotationCorrection = known.saRotationCorrection.value_or(false);
    inputs.saTransition = known.saTransition.value_or(false);
    inputs.streamlineUpstreamFactor =
        known.streamlineUpstreamFactor.value_or(inputs.streamlineUpstreamFactor);
    inputs.streamlineDownstreamFactor =
        known.streamlineDownstreamFactor.value_or(inputs.streamlineDownstreamFactor);
    inputs.streamlineSeedCount = known.streamlineSeedCount.value_or(inputs.streamlineSeedCount);
    return inputs;
}

void tellGuesses(const BatchOptions& options, const ConfiguredInputs& configured,
    const ConfiguredInputs& inputs, const RunLog& log) {
    if (!configured.velocity && !options.isGiven("velocity")) {
        log.warn(fmt::format("No free-stream speed in run.cfg · {} m/s is taken · --velocity tells "
                             "another",
            *inputs.velocity));
    }
    if (!configured.turbulenceModel && !options.isGiven("turbulence")) {
        log.warn(fmt::format("No turbulence model in run.cfg · {} is taken · --turbulence tells "
                             "another",
            rawValue(*inputs.turbulenceModel)));
    }
}

std::string closingLine(const QPointer<HistoryStore>& history, double seconds) {
    std::string text = "Results read";
    MainThread::run([&] {
        if (!history) {
            return;
        }
        if (const auto cl = history->latestValue("CL")) {
            text += fmt::format(" · CL {:.4f}", *cl);
        }
        if (const auto cd = history->latestValue("CD")) {
            text += fmt::format(" · CD {:.4f}", *cd);
        }
    });
    return text + fmt::format(" · {:.1f} s", seconds);
}

/// Everything but the exits.
SimulationResult read(const BatchOptions& options, const RunEnvironment& environment,
    const RunLog& log, const QPointer<HistoryStore>& history, const CancellationToken& token,
    ConfiguredInputs& inputs) {
    const fs::path& folder = *options.resultsFolder;
    log.info(fmt::format("Results folder: {}", folder.string()));
    ConfiguredInputs configured;
    withFile(folder / "run.cfg", log,
        [&](const std::string& text) { configured = SU2ConfigReader::parse(text); });
    inputs = merged(options, configured);
    tellGuesses(options, configured, inputs, log);
    token.throwIfCancelled();
    const int dimensions = options.dimensions
                               ? *options.dimensions
                               : ResultFolder::dimensions(folder, inputs.meshFilename).value_or(3);
    log.info(fmt::format(
        "V={:.2f} m/s, {}, {}D", *inputs.velocity, rawValue(*inputs.turbulenceModel), dimensions));
    withFile(folder / "history.csv", log,
        [&](const std::string& text) { storeHistory(text, dimensions, history, token); });
    const auto cells = ResultFolder::cells(folder, inputs.meshFilename);
    token.throwIfCancelled();
    return atStage(RunStage::results, [&] {
        return harvestResult(
            folder, {}, cells, dimensions, complete(inputs), log, token, *environment.clock);
    });
}

} // namespace

ConfiguredInputs merged(const BatchOptions& options, const ConfiguredInputs& configured) {
    ConfiguredInputs result = configured;
    const SimulationInputs& inputs = options.inputs;
    const auto take = [&options](std::string_view option, auto& target, auto value) {
        if (options.isGiven(option)) {
            target = value;
        }
    };
    take("velocity", result.velocity, inputs.velocity);
    take("alpha", result.alpha, inputs.alpha);
    take("beta", result.beta, inputs.beta);
    take("density", result.density, inputs.density);
    take("iterations", result.maxIterations, inputs.maxIterations);
    take("turbulence", result.turbulenceModel, inputs.turbulenceModel);
    take("regime", result.regime, inputs.regime);
    take("sa-rotation-correction", result.saRotationCorrection, true);
    take("sa-transition", result.saTransition, true);
    take("inlet-offset", result.streamlineUpstreamFactor, inputs.streamlineUpstreamFactor);
    take("wake-length", result.streamlineDownstreamFactor, inputs.streamlineDownstreamFactor);
    take("seed-count", result.streamlineSeedCount, inputs.streamlineSeedCount);

    const SimulationInputs used = complete(result);
    result.velocity = used.velocity;
    result.turbulenceModel = used.turbulenceModel;
    result.streamlineUpstreamFactor = used.streamlineUpstreamFactor;
    result.streamlineDownstreamFactor = used.streamlineDownstreamFactor;
    result.streamlineSeedCount = used.streamlineSeedCount;
    return result;
}

EarlierRunOutcome harvest(const BatchOptions& options, const RunEnvironment& environment,
    const RunLog& log, const QPointer<HistoryStore>& history, const CancellationToken& token) {
    EarlierRunOutcome outcome;
    const Date start = environment.clock->now();
    const auto elapsed = [&] { return secondsBetween(start, environment.clock->now()); };
    try {
        outcome.result = read(options, environment, log, history, token, outcome.inputs);
        outcome.phase = RunPhase::finished(false);
        log.append(closingLine(history, elapsed()), LogStore::Level::ok);
    } catch (const CancellationError&) {
        outcome.phase = RunPhase::cancelled();
        outcome.status = ExitStatus::cancelled;
        log.warn(fmt::format("Cancelled by user after {} s", std::llround(elapsed())));
    } catch (...) {
        const auto error = std::current_exception();
        const std::string stage(rawValue(RunStage::results));
        outcome.phase = RunPhase::failed(stage, errorDescription(error));
        outcome.status = ExitStatus::resultsFailed;
        log.append(SimulationController::failureLine(stage, error), LogStore::Level::error);
    }
    return outcome;
}

} // namespace ostrella::EarlierRun
