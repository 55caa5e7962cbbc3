#include "Models/TriangleMesh.h"

#include "Models/Precondition.h"

#include <utility>

namespace ostrella {

TriangleMesh::TriangleMesh(SharedArray<Vec3> positions, SharedArray<Vec3> normals)
    : positions_(std::move(positions)),
      normals_(std::move(normals)),
      box_(BoundingBox::of(positions_.span())) {
    precondition(
        positions_.size() == normals_.size(), "a triangle mesh needs one normal for each position");
    precondition(positions_.size() % 3 == 0,
        "the number of positions of a triangle mesh must be a multiple of 3");
}

} // namespace ostrella
