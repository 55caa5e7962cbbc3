#include "Batch/OptionNumber.h"

#include "Batch/UsageError.h"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <system_error>

namespace ostrella::OptionNumber {

namespace {

std::optional<double> finiteNumber(std::string_view word) {
    if (word.starts_with('+') && !word.starts_with("+-")) {
        word.remove_prefix(1);
    }
    double value = 0;
    const char* const end = word.data() + word.size();
    const auto read = fast_float::from_chars(word.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

double parse(std::string_view option, std::string_view word, const ParameterInfo& range) {
    const auto value = finiteNumber(word);
    if (!value) {
        throw UsageError(fmt::format("--{} wants a number, not \"{}\".", option, word));
    }
    if (*value < range.minimum || *value > range.maximum) {
        throw UsageError(
            fmt::format("--{} {} is out of range: {}.", option, word, rangeText(range)));
    }
    return *value;
}

int parseWhole(std::string_view option, std::string_view word, const ParameterInfo& range) {
    const double value = parse(option, word, range);
    if (value != std::trunc(value)) {
        throw UsageError(fmt::format("--{} wants a whole number, not \"{}\".", option, word));
    }
    return static_cast<int>(value);
}

std::string rangeText(const ParameterInfo& range) {
    return fmt::format(
        "{} to {}{}{}", range.minimum, range.maximum, range.unit.empty() ? "" : " ", range.unit);
}

} // namespace ostrella::OptionNumber
