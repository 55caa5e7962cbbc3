#pragma once

#include "Models/BoundingBox.h"
#include "Models/SharedArray.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"
#include "Rendering/PickTree.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace ostrella {

/// A model as the scene's buffers hold it. Made on any thread, since welding a large model and
/// finding its edges takes a while; copies share the arrays.
struct PreparedModel {
    /// Whether a pointer will be over the model: a tree finds at once what a walk over a million
    /// facets takes some milliseconds for, and costs as long to make as a dozen walks.
    enum class Picking { walk, tree };
    /// Whether feature lines may be drawn; what is always shaded has none.
    enum class Lines { features, none };

    SharedArray<std::byte> vertices;     ///< position and normal, 32 bytes each
    SharedArray<std::byte> indices;      ///< 32 bits each, three per triangle
    SharedArray<std::byte> featureEdges; ///< line list, 16 bytes a vertex; empty: no such lines
    SharedArray<Vec3> positions;         ///< those of `vertices`, for the hit test
    std::uint32_t indexCount = 0;
    std::uint32_t featureEdgeVertexCount = 0;
    BoundingBox bounds;                   ///< m; finite whatever the mesh holds
    std::shared_ptr<const PickTree> tree; ///< over `positions` and `indices`; absent: walk

    /// Welds `mesh` and finds its edges, creased from 30 degrees on, unless without. Facets with a
    /// corner that is not finite, or absurdly far away, are left out.
    static PreparedModel of(
        const TriangleMesh& mesh, Picking picking = Picking::tree, Lines lines = Lines::features);

    /// The distance to the nearest facet in units of the direction's length; the ray is in the
    /// model's own frame of axes.
    std::optional<float> nearestHit(const ViewportPicking::Ray& ray) const;
};

} // namespace ostrella
