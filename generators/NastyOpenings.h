#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Closed bodies that are not quite: holes, missing panels, gaps, open ends.
[[nodiscard]] std::span<const NastyBody> nastyOpenings();

} // namespace ostrella::generators
