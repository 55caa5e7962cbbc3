#pragma once

#include "Models/IterationRate.h"
#include "Models/RunState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace ostrella {

/// What the progress line tells.
struct BatchProgress {
    RunPhase phase;
    /// Iterations done.
    std::optional<std::int64_t> iteration;
    int maxIterations = 0;
    /// Name and base-10 logarithm of the first residual.
    std::optional<std::pair<std::string, double>> residual;
    std::optional<double> cl;
    std::optional<double> cd;
    /// A stop was asked for, and the run has not ended.
    bool isCancelling = false;
    double elapsedSeconds = 0;
    std::optional<double> remainingSeconds;
};

/// One line: stage, iteration, residual, CL, CD, elapsed and remaining time.
std::string progressLine(const BatchProgress& progress);

} // namespace ostrella
