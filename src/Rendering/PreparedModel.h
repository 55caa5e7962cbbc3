#pragma once

#include "Models/BoundingBox.h"
#include "Models/SharedArray.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"

#include <cstddef>
#include <cstdint>

namespace ostrella {

/// A model as the scene's buffers hold it. Made on any thread, since welding a large model and
/// finding its edges takes a while; copies share the arrays.
struct PreparedModel {
    SharedArray<std::byte> vertices;     ///< position and normal, 32 bytes each
    SharedArray<std::byte> indices;      ///< 32 bits each, three per triangle
    SharedArray<std::byte> featureEdges; ///< line list, 16 bytes a vertex; empty: no such lines
    SharedArray<Vec3> positions;         ///< those of `vertices`, for the hit test
    std::uint32_t indexCount = 0;
    std::uint32_t featureEdgeVertexCount = 0;
    BoundingBox bounds; ///< m; finite whatever the mesh holds

    /// Welds `mesh` and finds its edges, creased from 30 degrees on. Facets with a corner that is
    /// not finite, or absurdly far away, are left out.
    static PreparedModel of(const TriangleMesh& mesh);
};

} // namespace ostrella
