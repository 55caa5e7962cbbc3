#pragma once

#include <cstdint>
#include <span>

namespace ostrella::fuzz {

/// Takes arbitrary bytes as an update feed, and ends the process if an item comes of them that no
/// item may be.
void appcast(std::span<const std::uint8_t> bytes);

} // namespace ostrella::fuzz
