#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// What scanners leave: noise, spikes, specks, ragged openings.
[[nodiscard]] std::span<const NastyBody> nastyScans();

} // namespace ostrella::generators
