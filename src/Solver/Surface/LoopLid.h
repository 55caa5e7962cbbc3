#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A loop's lid, and what it tells of the loop.
struct LoopLid {
    /// Without triangles that collapse to a line. Their orientation follows the loop.
    std::vector<Triangle> triangles;
    /// m².
    double area = 0;
    /// How far apart the sides of the loop are, m: the least width of its projection along its
    /// area's direction, or that of a crooked slot, whose lid has no triangle that is more than
    /// half as high.
    double width = 0;
};

/// Cuts triangles off the loop, the one with the shortest third edge first, so that a slot is
/// closed from side to side and a round hole evenly. Corners that point into the hole come last.
LoopLid lidOn(const std::vector<DVec3>& points, std::span<const std::uint32_t> loop);

} // namespace ostrella
