#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// What comes out of CAD systems: needles, fans, patches that do not match, relief.
[[nodiscard]] std::span<const NastyBody> nastyCad();

} // namespace ostrella::generators
