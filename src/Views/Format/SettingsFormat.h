#pragma once

#include <cstdint>
#include <string>

namespace ostrella::SettingsFormat {

/// A count with an ordinary space between groups of three digits.
std::string count(std::int64_t n);

} // namespace ostrella::SettingsFormat
