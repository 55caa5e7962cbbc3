#pragma once

#include <glm/geometric.hpp>
#include <glm/vec3.hpp>

namespace ostrella::preview {

/// A point or vector in metres, in the mesh's axes; z is 0 in two dimensions.
using Vec3 = glm::dvec3;

} // namespace ostrella::preview
