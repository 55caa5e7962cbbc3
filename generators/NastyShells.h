#pragma once

#include <span>

#include "NastyBody.h"

namespace ostrella::generators {

/// Several shells: inside of, beside and upon one another, turned the wrong way.
[[nodiscard]] std::span<const NastyBody> nastyShells();

} // namespace ostrella::generators
