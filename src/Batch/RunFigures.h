#pragma once

#include "Batch/BatchReport.h"
#include "Models/Clock.h"
#include "Models/RunState.h"

#include <utility>
#include <vector>

namespace ostrella {

class OstrellaApp;

/// The figures of a run for its report, gathered from the shared objects. Main thread only.
namespace RunFigures {

/// Everything but how the run ended, the tools, and the files written afterwards.
BatchReport collect(const OstrellaApp& app, const BatchOptions& options);

/// Seconds of each stage by its name, "mesh", "solver" and "results", from the moments at which the
/// phases began; the last of them is the run's end.
std::vector<std::pair<std::string, double>> stageTimes(
    const std::vector<std::pair<RunPhase, Date>>& phases);

} // namespace RunFigures

} // namespace ostrella
