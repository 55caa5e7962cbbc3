#pragma once

#include "Models/ParameterTable.h"

#include <string>
#include <string_view>

namespace ostrella::OptionNumber {

/// The number that `word` is as a whole, with a point as the decimal mark in every language, and
/// within the parameter's range. Throws UsageError that names the option.
double parse(std::string_view option, std::string_view word, const ParameterInfo& range);

/// The same for a whole number.
int parseWhole(std::string_view option, std::string_view word, const ParameterInfo& range);

/// "0.01 to 500 m/s".
std::string rangeText(const ParameterInfo& range);

} // namespace ostrella::OptionNumber
