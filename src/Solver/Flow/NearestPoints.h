#pragma once

#include "Models/FloatVectors.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace ostrella {

/// What a search for a few nearest points found, in the order of the search's result.
struct NearestPoints {
    static constexpr std::size_t most = 8;

    std::size_t count = 0;
    /// The points' places in the grid's order by cell, or their numbers in a list of candidates.
    alignas(16) std::array<std::int32_t, most> places;
    /// Squared distances to the position.
    alignas(16) std::array<float, most> dist2;
};

/// Squared distances of four points from one, each summed x, y, z from left to right.
inline Float4 squaredDistances(
    const float* x, const float* y, const float* z, const Float4 (&to)[3]) {
    const Float4 dx = loadVector<Float4>(x) - to[0];
    const Float4 dy = loadVector<Float4>(y) - to[1];
    const Float4 dz = loadVector<Float4>(z) - to[2];
    return dx * dx + dy * dy + dz * dz;
}

/// Room behind the last squared distance that choosing among them needs.
inline constexpr std::size_t distanceSlack = 36;

/// Finds the `count` least of at least as many squared distances, in ascending order and among
/// equals in that of the list: `places` become numbers in it. What follows the last distance is
/// overwritten. `bound` may be known: a distance which at least that many do not exceed.
void chooseNearest(float* dist2, std::size_t distances, std::size_t count, NearestPoints& found,
    float bound = std::numeric_limits<float>::infinity());

} // namespace ostrella
