#include "Solver/Geometry/MeshOperations.h"

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/MatrixMath.h"

#include <cmath>
#include <utility>

namespace ostrella {

TriangleMesh rotated(const TriangleMesh& mesh, const Vec3& eulerAngles) {
    if (eulerAngles.x == 0.0F && eulerAngles.y == 0.0F && eulerAngles.z == 0.0F)
        return mesh;
    const Mat4 rotation = eulerXYZ(eulerAngles);
    const std::size_t count = mesh.positions().size();
    LargeBuffer<Vec3> positions(count);
    LargeBuffer<Vec3> normals(count);
    for (std::size_t i = 0; i < count; ++i) {
        positions[i] = transformed(rotation, mesh.positions()[i], 1.0F);
        const Vec3 normal = transformed(rotation, mesh.normals()[i], 0.0F);
        normals[i] = normal * (1.0F / std::sqrt(squaredLength(normal)));
    }
    return {std::move(positions), std::move(normals)};
}

float projectedArea(const TriangleMesh& mesh, const Vec3& along) {
    double sum = 0.0;
    const Vec3* corner = mesh.positions().data();
    for (std::size_t facet = 0; facet < mesh.facetCount(); ++facet, corner += 3) {
        const float share = 0.5F * dot(cross(corner[1] - corner[0], corner[2] - corner[0]), along);
        if (share > 0.0F)
            sum += static_cast<double>(share);
    }
    return static_cast<float>(sum);
}

} // namespace ostrella
