#pragma once

#include "Batch/BatchOptions.h"
#include "Models/RunState.h"
#include "Solver/Tools/RunEnvironment.h"
#include "Solver/Tools/RunLog.h"
#include "Solver/Tools/SU2ConfigReader.h"

#include <QPointer>

#include <optional>

namespace ostrella {

class CancellationToken;
class HistoryStore;

/// How the harvest of an earlier run ended.
struct EarlierRunOutcome {
    int status = 0;
    /// Finished, failed or cancelled.
    RunPhase phase;
    /// What the harvest went by; the rest is not known.
    ConfiguredInputs inputs;
    std::optional<SimulationResult> result;
};

/// A folder with the files of a run that is over: one of ours, an exported one, or one of the real
/// solver's from elsewhere. It is only read.
namespace EarlierRun {

/// What the user said, over what the configuration tells. What neither does is the default where
/// the harvest needs it, and absent elsewhere.
ConfiguredInputs merged(const BatchOptions& options, const ConfiguredInputs& configured);

/// Reads the convergence history into `history` and harvests the folder of `options`, and logs how
/// that ended. For a worker thread.
EarlierRunOutcome harvest(const BatchOptions& options, const RunEnvironment& environment,
    const RunLog& log, const QPointer<HistoryStore>& history, const CancellationToken& token);

} // namespace EarlierRun

} // namespace ostrella
