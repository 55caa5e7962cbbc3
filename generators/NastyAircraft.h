#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Aeroplanes put together of parts that stick through one another.
[[nodiscard]] std::span<const NastyBody> nastyAircraft();

} // namespace ostrella::generators
