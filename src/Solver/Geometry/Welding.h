#pragma once

#include "Models/TriangleMesh.h"
#include "Models/WeldedMesh.h"

#include <cstddef>
#include <optional>

namespace ostrella {

/// `mesh` with shared vertices: corners with one key on the grid of step `epsilon` (see WeldGrid
/// for the default and for what ends the process) become one vertex, at the position of the first
/// of them. Vertex normals are the sums of the adjacent facets' (b − a) × (c − a), made unit
/// length; (0, 1, 0) where the squared length is 1e-12 or less. The mesh's own normals play no
/// part.
WeldedMesh welded(const TriangleMesh& mesh, std::optional<float> epsilon = std::nullopt);

/// The number of edges that exactly one facet uses, on the same grid as welded(); 0 for a closed
/// surface. Orientation plays no part; sides that shrink to a point on the grid are no edges.
std::size_t openEdgeCount(const TriangleMesh& mesh, std::optional<float> epsilon = std::nullopt);

} // namespace ostrella
