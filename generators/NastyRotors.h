#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Hubs with thin twisted blades, gears.
[[nodiscard]] std::span<const NastyBody> nastyRotors();

} // namespace ostrella::generators
