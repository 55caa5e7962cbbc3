#include "Rendering/ModelPlacement.h"

#include "Solver/Geometry/MatrixMath.h"

#include <glm/matrix.hpp>

namespace ostrella {

namespace {

Mat4 translation(const Vec3& by) {
    Mat4 result(1.0F);
    result[3] = Vec4(by, 1.0F);
    return result;
}

Mat4 turnedAbout(const Vec3& centre, const Mat4& rotation) {
    return translation(centre) * rotation * translation(-centre);
}

} // namespace

ModelPlacement::ModelPlacement(
    const Vec3& boundingMin, const Vec3& boundingMax, const Vec3& rotationRadians)
    : centre((boundingMin + boundingMax) * 0.5F), rotation(eulerXYZ(rotationRadians)) {}

Mat4 ModelPlacement::modelMatrix() const {
    return turnedAbout(centre, rotation);
}

Mat4 ModelPlacement::inverseModelMatrix() const {
    // A rotation's inverse is its transpose.
    return turnedAbout(centre, glm::transpose(rotation));
}

Vec3 ModelPlacement::resultOffset() const {
    return centre - transformed(rotation, centre, 0.0F);
}

BoundingBox ModelPlacement::placeResult(const Vec3& min, const Vec3& max) const {
    const Vec3 offset = resultOffset();
    return {min + offset, max + offset};
}

} // namespace ostrella
