#pragma once

#include "Models/BoundingBox.h"
#include "Models/Vector.h"

#include <vector>

namespace ostrella {

/// The ground grid: thin lines below the body at a round number of metres, every few of them
/// stronger.
namespace GridGeometry {

struct Plan {
    Vec2 centre{0.0F};  ///< x and z of the grid's middle, m
    float y = 0;        ///< height of the plane, m
    float spacing = 1;  ///< of neighbouring lines, m
    int majorEvery = 5; ///< every how many lines one is major
    int halfCount = 1;  ///< lines on each side of the middle

    bool operator==(const Plan&) const = default;
};

/// Line lists, two points a line.
struct Layers {
    std::vector<Vec3> minor;
    std::vector<Vec3> major;
};

/// The number of the form 1, 2 or 5 × 10ⁿ that is nearest to `x` on a logarithmic scale; 1 for what
/// is not finite or not above 0.
float niceSpacing(float x);

/// The grid for what stands in this box (m).
Plan planFor(const BoundingBox& bounds);

/// The lines of a plan.
Layers makeLayers(const Plan& plan);

} // namespace GridGeometry

} // namespace ostrella
