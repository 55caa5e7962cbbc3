#pragma once

#include "Rendering/OrientationAxis.h"

#include <glm/mat3x3.hpp>
#include <glm/vec3.hpp>

namespace ostrella {

/// Turns about the world's axes in 64-bit floats; angles are degrees about x, then y, then z.
namespace OrientationMath {

/// Rz(z) × Ry(y) × Rx(x), right-handed, for column vectors.
glm::dmat3 matrix(const glm::dvec3& degrees);

/// The angles of a rotation, each in (−180, 180] and rounded to 6 decimals; x is 0 where y is ±90.
glm::dvec3 degrees(const glm::dmat3& from);

/// `angles` followed by a turn about a fixed world axis.
glm::dvec3 rotated(const glm::dvec3& angles, OrientationAxis about, double by);

} // namespace OrientationMath

} // namespace ostrella
