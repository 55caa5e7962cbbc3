#pragma once

#include "Models/Vector.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// A surface under way: shared vertices with their normals, and three indices a triangle.
struct TriangleSurface {
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    std::vector<std::uint32_t> indices;

    bool operator==(const TriangleSurface&) const = default;
};

} // namespace ostrella
