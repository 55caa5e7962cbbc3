#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"
#include "Models/WeldedMesh.h"

#include <cstddef>

namespace ostrella {

/// The character lines of a surface: sharp creases, open boundaries and edges of three or more
/// faces, and nothing of the triangulation.
struct FeatureEdges {
    SharedArray<Vec3> positions;      ///< two consecutive entries are one segment
    std::size_t creaseCount = 0;      ///< edges with two faces that meet at a sharp angle
    std::size_t boundaryCount = 0;    ///< edges with one face
    std::size_t nonManifoldCount = 0; ///< edges with three or more faces

    /// No lines.
    static const FeatureEdges empty;

    /// The lines of `mesh`, in the order in which its triangles come to them. Two faces meet
    /// sharply if the cosine between their normals is below that of `creaseAngleDegrees`; faces
    /// wound against each other are judged as if they were not, and a face of no area is never
    /// sharp. An index out of range ends the process.
    static FeatureEdges extract(const WeldedMesh& mesh, float creaseAngleDegrees);
};

} // namespace ostrella
