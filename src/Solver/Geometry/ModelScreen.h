#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Geometry/ModelLoadError.h"

namespace ostrella {

/// Throws ModelLoadError unless `mesh` has facets, finite vertices and extents, and lies near
/// enough to the origin for its size to be welded on the default grid. What passes cannot end the
/// process in welded() or openEdgeCount(). A turned mesh is another mesh: its box, and so its grid,
/// differ.
void screenModel(const TriangleMesh& mesh);

} // namespace ostrella
