#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <array>

namespace ostrella {

/// Corners of a triangle in space.
using Corners = std::array<DVec3, 3>;

/// Tests that keep a surface from cutting itself. They err on the safe side: what is nearer than
/// the clearance counts as a contact. All by separating axes, so that no case needs special
/// numbers.
namespace TriangleClearance {

/// Two triangles without a common corner keep more than `clearance` from each other along one of
/// the axes that can part them.
bool apart(const Corners& a, const Corners& b, double clearance);

/// Two triangles (`apex`, a0, a1) and (`apex`, b0, b1) have nothing but their common corner in
/// common, by an angle of at least about 1e-4 rad.
bool apartBeyondCorner(
    const DVec3& apex, const std::array<DVec3, 2>& a, const std::array<DVec3, 2>& b);

/// Two triangles (from, to, a) and (to, from, b) are not folded onto each other: the angle between
/// them at their common edge is more than `leastAngleCosine` tells.
bool apartBeyondEdge(
    const DVec3& from, const DVec3& to, const DVec3& a, const DVec3& b, double leastAngleCosine);

} // namespace TriangleClearance

} // namespace ostrella
