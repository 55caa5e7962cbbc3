#pragma once

#include "Models/Vector.h"

namespace ostrella {

/// The rotation Rz(z) · Ry(y) · Rx(x) of column vectors by `radians`: about X first, then Y, then
/// Z, each right-handed. The one convention for turning a model, in the picture and in the solver.
Mat4 eulerXYZ(const Vec3& radians);

/// The x, y, z of `matrix` · (v, w), each summed from left to right.
Vec3 transformed(const Mat4& matrix, const Vec3& v, float w);

} // namespace ostrella
