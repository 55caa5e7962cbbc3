#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <array>

namespace ostrella {

/// Whether two triangles that share no corner have a point in common; touching counts. Exact, in
/// one plane too; a triangle that is a line or a point counts as that.
bool trianglesMeet(const std::array<DVec3, 3>& a, const std::array<DVec3, 3>& b);

/// Whether the segment from `p` to `q` has a point in common with a triangle; touching counts.
/// Exact, as above.
bool segmentMeetsTriangle(const DVec3& p, const DVec3& q, const std::array<DVec3, 3>& triangle);

} // namespace ostrella
