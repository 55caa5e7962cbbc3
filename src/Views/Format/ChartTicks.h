#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrella {

/// Range of the values that a chart shows.
struct ChartRange {
    double min = 0;
    double max = 0;

    bool operator==(const ChartRange&) const = default;
};

/// One axis of a chart: its ends, and where its lines and numbers are.
struct ChartAxis {
    double from = 0;
    double to = 1;
    std::vector<double> ticks;
    /// One for each tick.
    std::vector<std::string> labels;

    bool operator==(const ChartAxis&) const = default;
};

/// Axes with round numbers.
namespace ChartTicks {

/// At or below this power of ten a residual is numerical zero.
inline constexpr double zeroResidual = -20;

/// An axis around a range, with 4 to 6 ticks at round numbers, the first and the last of them at
/// its ends. A range of no width gets some; one that is not finite is taken for 0 to 1, as is none.
ChartAxis values(const std::optional<ChartRange>& range);

/// The iterations before this one belong to the start: some equations begin at next to nothing.
inline constexpr std::int64_t settledIteration = 10;
/// That many powers of ten below all that comes later, a value of the start is left out.
inline constexpr double farBelow = 2;

/// The axis of residuals whose values above zeroResidual have this range, in all and from
/// settledIteration on. One point of numerical zero, or one of the start far below all the others,
/// would flatten every line: such points stay in the data and lie below the axis.
ChartAxis residuals(
    const std::optional<ChartRange>& aboveZero, const std::optional<ChartRange>& settled);

/// The range that holds both; absent only if both are.
std::optional<ChartRange> joined(
    const std::optional<ChartRange>& a, const std::optional<ChartRange>& b);

/// The axis of iterations, from the first to the last one, with ticks at round whole numbers
/// within, at most 7, and none beyond the last one.
ChartAxis iterations(std::int64_t first, std::int64_t last);

} // namespace ChartTicks

} // namespace ostrella
