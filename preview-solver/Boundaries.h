#pragma once

#include "Config.h"
#include "DualMesh.h"

namespace ostrella::preview {

enum class BoundaryKind { wall, slip, far };

/// The condition of each boundary, and what follows from it for the points.
struct Boundaries {
    /// One for each boundary of the dual mesh.
    std::vector<BoundaryKind> kinds;
    /// Whether a point lies on a no-slip wall; those conditions come before all others.
    std::vector<char> onWall;
    /// Sum of a point's boundary area vectors that the flow crosses or slides along.
    std::vector<Vec3> outer;

    /// Throws Failure for a marker without a condition, and for names that the mesh lacks. Walls of
    /// a flow without friction are slip walls.
    static Boundaries of(const Config& config, const DualMesh& dual);
};

} // namespace ostrella::preview
