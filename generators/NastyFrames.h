#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Lattices, trusses and frames of bars that cross unmerged.
[[nodiscard]] std::span<const NastyBody> nastyFrames();

} // namespace ostrella::generators
