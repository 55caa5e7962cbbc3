#pragma once

#include "Models/NumberFormatting.h"
#include "Models/RunState.h"

#include <cmath>
#include <optional>
#include <string>

namespace ostrella {

/// Lift over drag with 2 decimals, or 1 from a magnitude of 10 on; nothing without both
/// coefficients or where there is no drag.
inline std::optional<std::string> liftToDragText(const RunSummary& summary) {
    if (!summary.cl || !summary.cd || *summary.cd == 0) {
        return std::nullopt;
    }
    const double ratio = *summary.cl / *summary.cd;
    return NumberFormatting::fixed(ratio, std::abs(ratio) < 10 ? 2 : 1);
}

} // namespace ostrella
