#include "Solver/Geometry/MatrixMath.h"

#include <cmath>

namespace ostrella {

Mat4 eulerXYZ(const Vec3& radians) {
    const float cx = std::cos(radians.x);
    const float sx = std::sin(radians.x);
    const float cy = std::cos(radians.y);
    const float sy = std::sin(radians.y);
    const float cz = std::cos(radians.z);
    const float sz = std::sin(radians.z);
    // Column by column.
    const Mat4 aboutX(1, 0, 0, 0, 0, cx, sx, 0, 0, -sx, cx, 0, 0, 0, 0, 1);
    const Mat4 aboutY(cy, 0, -sy, 0, 0, 1, 0, 0, sy, 0, cy, 0, 0, 0, 0, 1);
    const Mat4 aboutZ(cz, sz, 0, 0, -sz, cz, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    return aboutZ * aboutY * aboutX;
}

Vec3 transformed(const Mat4& matrix, const Vec3& v, float w) {
    Vec3 result;
    for (int row = 0; row < 3; ++row)
        result[row] =
            matrix[0][row] * v.x + matrix[1][row] * v.y + matrix[2][row] * v.z + matrix[3][row] * w;
    return result;
}

} // namespace ostrella
