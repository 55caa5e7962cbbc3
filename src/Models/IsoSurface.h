#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstdint>

namespace ostrella {

/// A surface of constant Q-criterion, with shared vertices.
struct IsoSurface {
    SharedArray<Vec3> positions;
    SharedArray<Vec3> normals;          ///< one unit vector per position
    SharedArray<std::uint32_t> indices; ///< three per triangle
    Vec3 boundingMin{0.0F};
    Vec3 boundingMax{0.0F};
    float isoValue = 0.0F; ///< the level of Q (1/s²) that the surface shows
};

} // namespace ostrella
