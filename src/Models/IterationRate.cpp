#include "Models/IterationRate.h"

#include <algorithm>

namespace ostrella {

void IterationRate::record(std::optional<std::int64_t> iteration, Date at) {
    if (!iteration) {
        *this = IterationRate();
        return;
    }
    if (!anchorDate || *iteration < latestIteration) {
        *this = IterationRate{at, *iteration, at, *iteration};
        return;
    }
    if (*iteration > latestIteration) {
        latestDate = at;
        latestIteration = *iteration;
    }
}

std::optional<double> IterationRate::secondsPerIteration() const {
    if (!anchorDate || !latestDate || latestIteration <= anchorIteration) {
        return std::nullopt;
    }
    return secondsBetween(*anchorDate, *latestDate) /
           static_cast<double>(latestIteration - anchorIteration);
}

std::optional<double> IterationRate::remainingSeconds(std::int64_t maxIterations, Date now) const {
    const auto rate = secondsPerIteration();
    if (!rate || !latestDate) {
        return std::nullopt;
    }
    const auto toGo = std::max<std::int64_t>(maxIterations - latestIteration, 0);
    return std::max(*rate * static_cast<double>(toGo) - secondsBetween(*latestDate, now), 0.0);
}

} // namespace ostrella
