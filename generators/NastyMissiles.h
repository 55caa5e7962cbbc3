#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Finned projectiles whose fins meet body and each other in edges of more than two facets.
[[nodiscard]] std::span<const NastyBody> nastyMissiles();

} // namespace ostrella::generators
