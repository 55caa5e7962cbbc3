#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Bodies without thickness, very thin ones, and what has no surface at all.
[[nodiscard]] std::span<const NastyBody> nastySheets();

} // namespace ostrella::generators
