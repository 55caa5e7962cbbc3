#pragma once

#include "Models/Clock.h"

#include <optional>

namespace ostrella {

/// Mean time of an iteration since the first one seen, for the estimate of the remaining time.
struct IterationRate {
    /// When the measuring began, and at which iteration.
    std::optional<Date> anchorDate;
    int anchorIteration = 0;
    /// When the newest iteration was seen.
    std::optional<Date> latestDate;
    int latestIteration = 0;

    /// Takes the newest iteration. An absent one resets, a lower one (a restart) begins anew.
    void record(std::optional<int> iteration, Date at);

    /// Absent until a second iteration has been seen.
    std::optional<double> secondsPerIteration() const;

    /// Counts down between two iterations; never negative. Absent as long as there is no rate.
    std::optional<double> remainingSeconds(int maxIterations, Date now) const;

    bool operator==(const IterationRate&) const = default;
};

} // namespace ostrella
