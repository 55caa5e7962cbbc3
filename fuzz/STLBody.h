#pragma once

#include <cstdint>
#include <span>

namespace ostrella::fuzz {

/// Takes arbitrary bytes as an STL file, and does to the model all that is done to one that the
/// loader lets in.
void stl(std::span<const std::uint8_t> bytes);

} // namespace ostrella::fuzz
