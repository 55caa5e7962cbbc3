#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "NastyBody.h"

namespace ostrella::generators {

/// All nasty bodies, those of every kind and the faulty ones among the test bodies.
[[nodiscard]] const std::vector<NastyBody>& nastyBodies();

/// The body of this name, or nothing.
[[nodiscard]] const NastyBody* nastyBody(std::string_view name);

} // namespace ostrella::generators
