#pragma once

#include <cstdint>
#include <string>

namespace ostrella::SettingsFormat {

/// A count with an ordinary space between groups of three digits.
std::string count(std::int64_t n);

/// A multiple of the body's length c: "0.50 ×c".
std::string factor(double value);

} // namespace ostrella::SettingsFormat
