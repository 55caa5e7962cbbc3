#pragma once

#include "Models/RunState.h"

#include <string_view>

namespace ostrella::ExitStatus {

inline constexpr int finished = 0;
inline constexpr int wrongUsage = 2;
inline constexpr int meshFailed = 3;
inline constexpr int solverFailed = 4;
inline constexpr int resultsFailed = 5;
inline constexpr int cancelled = 130;

/// The status for a stage's raw value.
inline int ofStage(std::string_view stage) {
    if (stage == rawValue(RunStage::mesh)) {
        return meshFailed;
    }
    return stage == rawValue(RunStage::results) ? resultsFailed : solverFailed;
}

} // namespace ostrella::ExitStatus
