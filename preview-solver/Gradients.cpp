#include "Gradients.h"

#include <cmath>

namespace ostrella::preview {

template <int D>
Gradients<D>::Gradients(const DualMesh& dual, GradientMethod method)
    : dual_(dual), method_(method) {
    const std::size_t count = dual.size();
    if (method == GradientMethod::greenGauss) {
        boundary_.assign(count, Vec3{0.0});
        for (const auto& boundary : dual.boundaries)
            for (const auto& vertex : boundary.vertices)
                boundary_[vertex.point] += vertex.normal;
        return;
    }
    inverse_.assign(count * rows, 0.0);
    for (std::size_t i = 0; i < count; ++i) {
        // Sum of unit dyads: its size does not depend on the mesh's scale or stretching.
        double a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
        for (const auto& neighbour : dual.around(i)) {
            const Vec3 u = glm::normalize(dual.points[neighbour.point] - dual.points[i]);
            a += u.x * u.x;
            b += u.x * u.y;
            c += u.x * u.z;
            d += u.y * u.y;
            e += u.y * u.z;
            f += u.z * u.z;
        }
        double* m = inverse_.data() + i * rows;
        if constexpr (D == 2) {
            const double det = a * d - b * b;
            if (det > 1e-12) {
                m[0] = d / det;
                m[1] = -b / det;
                m[2] = a / det;
            }
        } else {
            const double det = a * (d * f - e * e) - b * (b * f - c * e) + c * (b * e - c * d);
            if (det > 1e-12) {
                m[0] = (d * f - e * e) / det;
                m[1] = (c * e - b * f) / det;
                m[2] = (b * e - c * d) / det;
                m[3] = (a * f - c * c) / det;
                m[4] = (b * c - a * e) / det;
                m[5] = (a * d - b * b) / det;
            }
        }
    }
}

template class Gradients<2>;
template class Gradients<3>;

} // namespace ostrella::preview
