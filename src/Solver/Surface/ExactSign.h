#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <cstddef>

namespace ostrella {

/// Signs of determinants of points, exact for finite coordinates whose products neither overflow
/// nor underflow: a first try with a bound of its error, then expansions of several numbers, after
/// J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic" (1997).
namespace ExactSign {

/// Sign of (b − a) × (c − a) · (d − a): 1 where d lies on the side from which a, b, c run
/// counter-clockwise, −1 on the other one, 0 in their plane.
int volume(const DVec3& a, const DVec3& b, const DVec3& c, const DVec3& d);

/// Sign of the area of a, b, c seen along `axis` (0 to 2), its other axes in cyclic order.
int area(const DVec3& a, const DVec3& b, const DVec3& c, int axis);

} // namespace ExactSign

} // namespace ostrella
