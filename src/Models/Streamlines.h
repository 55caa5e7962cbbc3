#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstddef>
#include <cstdint>

namespace ostrella {

/// Traced lines as one list of segments. The vertices of a line are consecutive and its segments
/// join each to the next, (a, a+1), (a+1, a+2) and so on: a line ends where that chain breaks. A
/// line of one vertex has no segment.
struct Streamlines {
    SharedArray<float> interleavedVertices; ///< x, y, z (m), speed (m/s) for each vertex
    SharedArray<std::uint32_t> indices;     ///< two per segment, into the vertices
    std::size_t vertexCount = 0;            ///< a quarter of the length of `interleavedVertices`
    std::size_t indexCount = 0;             ///< the length of `indices`
    float magnitudeMin = 0.0F;              ///< lowest speed over all vertices
    float magnitudeMax = 0.0F;              ///< highest speed over all vertices
    std::size_t seedCount = 0;              ///< seeds tried, with those that gave nothing
    Vec3 boundingMin{0.0F};
    Vec3 boundingMax{0.0F};
};

} // namespace ostrella
