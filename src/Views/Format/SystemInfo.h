#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ostrella::SystemInfo {

/// What the status bar says of the machine: "412.6 GB free · " and the processor's name, as far as
/// they are known.
std::string summary(std::optional<std::int64_t> freeBytes, const std::optional<std::string>& chip);

} // namespace ostrella::SystemInfo
