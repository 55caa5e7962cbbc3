#pragma once

#include <glm/vec3.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace ostrella {

/// Points and directions of the surface's preparation: 64-bit, since it works about the model's
/// middle and its moves are small.
using DVec3 = glm::dvec3;

/// Three vertices of a triangle, counter-clockwise from outside.
using Triangle = std::array<std::uint32_t, 3>;

/// A surface of shared vertices.
struct IndexedSurface {
    std::vector<DVec3> vertices;
    std::vector<Triangle> triangles;
};

} // namespace ostrella
