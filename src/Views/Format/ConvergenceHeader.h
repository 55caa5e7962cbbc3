#pragma once

#include "Models/RunState.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrella::ConvergenceHeader {

/// "1 200 iter · solving" and the like; empty without iterations.
std::string text(const RunPhase& phase, std::optional<std::int64_t> iterations);

} // namespace ostrella::ConvergenceHeader
