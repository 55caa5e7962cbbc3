#pragma once

#include "Models/Vector.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <cstddef>

namespace ostrella {

/// A regular box of points: as many along each axis, at spacings that differ from axis to axis.
/// Arrays over it hold point (i, j, k) at (k × points + j) × points + i.
struct Lattice {
    std::size_t points = 0; ///< along each axis
    Vec3 origin{0.0F};      ///< the low corner, m
    Vec3 cellSize{0.0F};    ///< spacing along each axis, m

    /// The lattice around a body and its wake, from corner to corner inclusive; at least 16 points
    /// along each axis.
    static Lattice around(const StreamlineFocus& focus, int resolution);

    /// The number of points in all.
    std::size_t count() const { return points * points * points; }

    std::size_t index(std::size_t i, std::size_t j, std::size_t k) const {
        return (k * points + j) * points + i;
    }

    /// Where point (i, j, k) lies, m.
    Vec3 position(std::size_t i, std::size_t j, std::size_t k) const {
        return {coordinate(0, i), coordinate(1, j), coordinate(2, k)};
    }

    /// The coordinate along `axis` of the points of one number along it, m.
    float coordinate(int axis, std::size_t number) const {
        return origin[axis] + cellSize[axis] * static_cast<float>(number);
    }

    bool operator==(const Lattice&) const = default;
};

} // namespace ostrella
