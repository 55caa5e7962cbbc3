#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace ostrella::preview {

/// Reverse Cuthill-McKee order of a graph in compressed rows: the old number at each new place.
/// Every component starts from a point of small degree far from the others.
std::vector<std::int32_t> reverseCuthillMcKee(
    std::span<const std::int32_t> start, std::span<const std::int32_t> neighbours);

} // namespace ostrella::preview
