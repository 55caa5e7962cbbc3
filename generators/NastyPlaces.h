#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Sound shapes at unusual places, sizes and distances.
[[nodiscard]] std::span<const NastyBody> nastyPlaces();

} // namespace ostrella::generators
