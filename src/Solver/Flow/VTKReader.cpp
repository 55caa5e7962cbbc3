#include "Solver/Flow/VTKReader.h"

#include "Solver/Flow/VTKNumberError.h"
#include "Solver/Flow/VTKParseError.h"
#include "Solver/Flow/VTKSections.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

namespace ostrella::VTKReader {

namespace {

/// The value that would stand at (count − 1) × 0.95 of the ascending order, NaN behind all numbers.
/// Puts the values into another order.
float percentile95(std::span<float> values) {
    const std::size_t last = values.size() - 1;
    const float product = static_cast<float>(last) * 0.95F;
    // Rounding can carry the product of a long list beyond its end.
    const auto rank = std::min(last, static_cast<std::size_t>(product));
    const auto numbersEnd =
        std::partition(values.begin(), values.end(), [](float v) { return !std::isnan(v); });
    const auto wanted = values.begin() + static_cast<std::ptrdiff_t>(rank);
    if (wanted < numbersEnd)
        std::nth_element(values.begin(), wanted, numbersEnd);
    return *wanted;
}

ScalarFieldStats statsOf(std::span<float> values) {
    ScalarFieldStats stats;
    stats.count = static_cast<std::int64_t>(values.size());
    stats.min = std::numeric_limits<float>::max();
    stats.max = std::numeric_limits<float>::lowest();
    double sum = 0.0;
    for (const float value : values) {
        stats.min = value < stats.min ? value : stats.min;
        stats.max = value > stats.max ? value : stats.max;
        sum += static_cast<double>(value);
    }
    stats.mean = static_cast<float>(sum / static_cast<double>(values.size()));
    stats.p95 = percentile95(values);
    return stats;
}

} // namespace

SurfaceField surface(VTKText text, std::string_view scalarName) {
    VTKScanner scanner(text);
    VTKSections::requireLegacyHeader(scanner);
    auto geometry = VTKSections::takeGeometry(scanner, VTKSections::Ids::keep);
    const std::size_t count = geometry.positions.size();
    auto scalar = VTKSections::takeScalar(scanner, scalarName, static_cast<std::int64_t>(count));
    text.release();
    if (scalar.isWithoutComponents) {
        scalar.values = LargeBuffer<float>(count);
        std::fill(scalar.values.begin(), scalar.values.end(), 0.0F);
    }
    constexpr std::int64_t triangle = 5;
    return {std::move(geometry.positions), std::move(scalar.values), std::string(scalarName),
        std::move(geometry.indices),
        geometry.firstCellType == triangle ? SurfaceField::Primitive::triangle
                                           : SurfaceField::Primitive::line};
}

VolumeField volume(VTKText text, std::string_view vectorName) {
    VTKScanner scanner(text);
    VTKSections::requireLegacyHeader(scanner);
    auto geometry = VTKSections::takeGeometry(scanner, VTKSections::Ids::drop);
    auto velocity = VTKSections::takeVector(
        scanner, vectorName, static_cast<std::int64_t>(geometry.positions.size()));
    text.release();
    return {std::move(geometry.positions), std::move(velocity)};
}

ScalarFieldStats scalarStats(VTKText text, std::string_view scalarName) {
    VTKScanner scanner(text);
    VTKSections::requireLegacyHeader(scanner);
    VTKSections::findSection(scanner, "POINTS");
    const std::size_t atCount = scanner.tokenNumber();
    const std::int64_t count = scanner.takeInteger();
    scanner.rewind();
    auto scalar = VTKSections::takeScalar(scanner, scalarName, std::max(count, std::int64_t{0}));
    text.release();
    if (count < 0)
        throw VTKNumberError::negative("number of points", count, atCount);
    if (count == 0)
        throw VTKParseError::missingScalar(scalarName);
    if (scalar.isWithoutComponents)
        return {.count = count};
    return statsOf({scalar.values.data(), scalar.values.size()});
}

} // namespace ostrella::VTKReader
