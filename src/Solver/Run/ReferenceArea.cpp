#include "Solver/Run/ReferenceArea.h"

#include "Solver/Geometry/MeshOperations.h"

namespace ostrella {

double referenceArea(const TriangleMesh& body) {
    // Below this a planform is no reference: a plate standing edge-on.
    constexpr double smallest = 1e-9;
    const double area = projectedArea(body, Vec3(0, 0, 1));
    return area > smallest ? area : 1.0;
}

} // namespace ostrella
