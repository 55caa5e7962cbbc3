#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Bodies on wheels, which touch them and the ground along lines.
[[nodiscard]] std::span<const NastyBody> nastyVehicles();

} // namespace ostrella::generators
