#pragma once

#include "Vec3.h"

namespace ostrella::preview {

/// A face of a control volume: unit normal and area.
template <int D>
struct FaceGeometry {
    double n[D];
    double area;

    explicit FaceGeometry(const Vec3& normal) : area(glm::length(normal)) {
        const double scale = area > 0 ? 1 / area : 0;
        for (int k = 0; k < D; ++k)
            n[k] = normal[k] * scale;
    }

    /// The component of a vector of D numbers along the normal.
    [[nodiscard]] double along(const double* u) const {
        double sum = 0;
        for (int k = 0; k < D; ++k)
            sum += n[k] * u[k];
        return sum;
    }
};

/// Viscous stress on a face, without its area: for the gradient rows of the D velocity components.
template <int D>
void stressOn(
    const FaceGeometry<D>& face, const double* velocityGradient, double mu, double* stress) {
    double divergence = 0;
    for (int k = 0; k < D; ++k)
        divergence += velocityGradient[k * D + k];
    for (int i = 0; i < D; ++i) {
        double sum = -2.0 / 3.0 * divergence * face.n[i];
        for (int k = 0; k < D; ++k)
            sum += (velocityGradient[i * D + k] + velocityGradient[k * D + i]) * face.n[k];
        stress[i] = mu * sum;
    }
}

} // namespace ostrella::preview
