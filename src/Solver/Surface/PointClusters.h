#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// For each of the points `chosen`, in their order: the first chosen one before it that is no
/// farther than `width` and stands for itself, or itself. Those that stand for themselves are thus
/// more than `width` apart, however closely the points lie. `width` is positive.
std::vector<std::uint32_t> clusterPoints(
    const std::vector<DVec3>& points, std::span<const std::uint32_t> chosen, double width);

} // namespace ostrella
