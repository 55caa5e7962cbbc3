#include "Views/Format/SteppedValue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace ostrella::SteppedValue {

namespace {

/// Finer than any step, and coarser than what rounding leaves behind.
double withoutNoise(double value) {
    constexpr double grain = 1e6;
    return std::round(value * grain) / grain;
}

} // namespace

int Counts::stepped(int value, int steps) const {
    const std::int64_t wanted = std::int64_t{value} + std::int64_t{steps} * step;
    return static_cast<int>(std::clamp<std::int64_t>(wanted, from, to));
}

bool Counts::canStep(int value, int steps) const {
    return stepped(value, steps) != value;
}

double Factors::stepped(double value, int steps) const {
    return withoutNoise(inRange(value + steps * step));
}

double Factors::inRange(double value) const {
    return std::isnan(value) ? from : std::clamp(value, from, to);
}

double Factors::snapped(double value) const {
    const double steps = std::round((inRange(value) - from) / step);
    return withoutNoise(inRange(from + steps * step));
}

} // namespace ostrella::SteppedValue
