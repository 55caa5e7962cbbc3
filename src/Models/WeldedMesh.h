#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstdint>

namespace ostrella {

/// A surface with shared vertices: unique positions in order of first appearance, one unit normal
/// for each, and three indices for each triangle of the soup it was made of, in its order.
struct WeldedMesh {
    SharedArray<Vec3> positions;
    SharedArray<Vec3> normals;
    SharedArray<std::uint32_t> indices;

    friend bool operator==(const WeldedMesh&, const WeldedMesh&) = default;
};

} // namespace ostrella
