#pragma once

#include "Models/Clock.h"

#include <cstdint>
#include <optional>

namespace ostrella {

/// Mean time of an iteration since the first one seen, for the estimate of the remaining time.
struct IterationRate {
    /// When the measuring began, and at which iteration.
    std::optional<Date> anchorDate;
    std::int64_t anchorIteration = 0;
    /// When the newest iteration was seen.
    std::optional<Date> latestDate;
    std::int64_t latestIteration = 0;

    /// Takes the newest iteration. An absent one resets, a lower one (a restart) begins anew.
    void record(std::optional<std::int64_t> iteration, Date at);

    /// Absent until a second iteration has been seen.
    std::optional<double> secondsPerIteration() const;

    /// Counts down between two iterations; never negative. Absent as long as there is no rate.
    std::optional<double> remainingSeconds(std::int64_t maxIterations, Date now) const;

    bool operator==(const IterationRate&) const = default;
};

} // namespace ostrella
