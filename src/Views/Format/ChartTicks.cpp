#include "Views/Format/ChartTicks.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ostrella::ChartTicks {

namespace {

/// Beyond this magnitude nothing is told apart any more, and sums stay finite.
constexpr double largest = 1e300;
/// Numbers from here on are written as powers of ten.
constexpr double longestNumber = 1e6;
constexpr int mostDigits = 6;
constexpr std::int64_t mostIterationTicks = 7;

/// A round distance between ticks: `digits` × 10^`power`.
struct Step {
    double digits = 1;
    int power = 0;

    double width() const { return digits * std::pow(10.0, power); }
    bool isHalf() const { return digits != std::trunc(digits); }

    /// The `count`th multiple; exact decimals as near as a double comes.
    double multiple(double count) const {
        return power < 0 ? count * digits / std::pow(10.0, -power) : count * width();
    }
};

/// None more than twice the one before: a range of 2 to 4 steps has 3 to 5 intervals around it, and
/// so there is always a step that fits.
constexpr std::array stepDigits{1.0, 2.0, 2.5, 5.0};
/// A step of 2.5 asks for one more digit; it must leave that much less room empty.
constexpr double halfPenalty = 1.15;

/// A range that an axis can be made for.
ChartRange drawable(const std::optional<ChartRange>& range) {
    if (!range || std::isnan(range->min) || std::isnan(range->max)) {
        return {0, 1};
    }
    double min = std::clamp(std::min(range->min, range->max), -largest, largest);
    double max = std::clamp(std::max(range->min, range->max), -largest, largest);
    const double magnitude = std::max(std::abs(min), std::abs(max));
    if (magnitude < 1 / largest) {
        return {-1, 1};
    }
    // A narrower range would ask for more digits than a number has.
    if (max - min < magnitude * 1e-9) {
        const double middle = min / 2 + max / 2;
        min = middle - magnitude * 0.1;
        max = middle + magnitude * 0.1;
    }
    return {min, max};
}

struct Choice {
    Step step;
    double first = 0;
    double last = 0;

    double intervals() const { return last - first; }
    double width() const { return intervals() * step.width(); }
};

Choice around(const ChartRange& range, const Step& step) {
    // Ends that are a multiple but for rounding do not ask for one more tick.
    constexpr double slack = 1e-9;
    const double width = step.width();
    return {step, std::floor(range.min / width + slack), std::ceil(range.max / width - slack)};
}

/// The step of 3 to 5 intervals that leaves the least room empty.
Choice bestAround(const ChartRange& range) {
    const int power = static_cast<int>(std::floor(std::log10(range.max - range.min)));
    Choice best = around(range, {1, power});
    double leastCost = std::numeric_limits<double>::infinity();
    for (int p = power - 2; p <= power + 1; ++p) {
        for (const double digits : stepDigits) {
            const Choice choice = around(range, {digits, p});
            const double cost = choice.width() * (choice.step.isHalf() ? halfPenalty : 1);
            if (choice.intervals() >= 3 && choice.intervals() <= 5 && cost < leastCost) {
                best = choice;
                leastCost = cost;
            }
        }
    }
    return best;
}

int decimals(const Step& step) {
    return std::max(0, (step.isHalf() ? 1 : 0) - step.power);
}

std::string label(double value, const Choice& choice) {
    const double magnitude = std::max(
        std::abs(choice.step.multiple(choice.first)), std::abs(choice.step.multiple(choice.last)));
    if (magnitude < longestNumber && decimals(choice.step) <= mostDigits) {
        return NumberFormatting::fixed(value, decimals(choice.step));
    }
    if (value == 0) {
        return "0";
    }
    // As many digits as tell neighbours apart.
    const int order = static_cast<int>(std::floor(std::log10(magnitude)));
    const int digits = order - choice.step.power + (choice.step.isHalf() ? 1 : 0);
    return fmt::format("{:.{}e}", value, std::clamp(digits, 0, 9));
}

} // namespace

ChartAxis values(const std::optional<ChartRange>& range) {
    const Choice choice = bestAround(drawable(range));
    ChartAxis axis;
    for (double count = choice.first; count <= choice.last; ++count) {
        const double tick = choice.step.multiple(count) + 0.0;
        axis.ticks.push_back(tick);
        axis.labels.push_back(label(tick, choice));
    }
    axis.from = axis.ticks.front();
    axis.to = axis.ticks.back();
    return axis;
}

ChartAxis residuals(
    const std::optional<ChartRange>& aboveZero, const std::optional<ChartRange>& settled) {
    ChartRange range = aboveZero.value_or(ChartRange{zeroResidual, zeroResidual + 4});
    if (settled && range.min < settled->min - farBelow) {
        range.min = settled->min;
    }
    return values(range);
}

std::optional<ChartRange> joined(
    const std::optional<ChartRange>& a, const std::optional<ChartRange>& b) {
    if (!a || !b) {
        return a ? a : b;
    }
    return ChartRange{std::min(a->min, b->min), std::max(a->max, b->max)};
}

ChartAxis iterations(std::int64_t first, std::int64_t last) {
    ChartAxis axis;
    const auto from = static_cast<double>(std::min(first, last));
    const auto to = static_cast<double>(std::max(first, last));
    axis.from = from;
    axis.to = std::max(to, from + 1);
    for (int power = 0;; ++power) {
        for (const double digits : {1.0, 2.0, 5.0}) {
            const double width = digits * std::pow(10.0, power);
            const double begin = std::ceil(from / width);
            const double end = std::floor(to / width);
            if (end - begin + 1 > static_cast<double>(mostIterationTicks)) {
                continue;
            }
            for (double count = begin; count <= end; ++count) {
                axis.ticks.push_back(count * width + 0.0);
                axis.labels.push_back(fmt::format("{:.0f}", count * width + 0.0));
            }
            return axis;
        }
    }
}

} // namespace ostrella::ChartTicks
