#include "Solver/Flow/QCriterion.h"

#include "Solver/Flow/CancelPoint.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace ostrella {

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// 1 or 0, and not std::isfinite: this the compiler turns into vector code.
int isFinite(float value) {
    return static_cast<int>(std::fabs(value) <= std::numeric_limits<float>::max());
}

/// What one row of points along x needs of its surroundings.
struct Row {
    const LatticeVelocities& velocities;
    std::size_t stepY;  ///< from a point to its neighbour along y
    std::size_t stepZ;  ///< and along z
    Vec3 halfPerLength; ///< 1 / (2 × spacing) along each axis, 1/m

    void fill(std::size_t first, std::size_t count, float* q) const;
};

void Row::fill(std::size_t first, std::size_t count, float* q) const {
    const float* u = velocities.x.data() + first;
    const float* v = velocities.y.data() + first;
    const float* w = velocities.z.data() + first;
    const auto dy = static_cast<std::ptrdiff_t>(stepY);
    const auto dz = static_cast<std::ptrdiff_t>(stepZ);
    const float perX = halfPerLength.x;
    const float perY = halfPerLength.y;
    const float perZ = halfPerLength.z;
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(count); ++i) {
        const int known = isFinite(u[i - 1]) & isFinite(u[i + 1]) & isFinite(u[i - dy]) &
                          isFinite(u[i + dy]) & isFinite(u[i - dz]) & isFinite(u[i + dz]);
        const float dudx = perX * (u[i + 1] - u[i - 1]);
        const float dvdx = perX * (v[i + 1] - v[i - 1]);
        const float dwdx = perX * (w[i + 1] - w[i - 1]);
        const float dudy = perY * (u[i + dy] - u[i - dy]);
        const float dvdy = perY * (v[i + dy] - v[i - dy]);
        const float dwdy = perY * (w[i + dy] - w[i - dy]);
        const float dudz = perZ * (u[i + dz] - u[i - dz]);
        const float dvdz = perZ * (v[i + dz] - v[i - dz]);
        const float dwdz = perZ * (w[i + dz] - w[i - dz]);
        const float s12 = (dvdx + dudy) * 0.5F;
        const float s23 = (dwdy + dvdz) * 0.5F;
        const float s13 = (dwdx + dudz) * 0.5F;
        const float w12 = (dvdx - dudy) * 0.5F;
        const float w23 = (dwdy - dvdz) * 0.5F;
        const float w13 = (dudz - dwdx) * 0.5F;
        const float strain =
            dudx * dudx + dvdy * dvdy + dwdz * dwdz + 2.0F * (s12 * s12 + s23 * s23 + s13 * s13);
        const float rotation = 2.0F * (w12 * w12 + w23 * w23 + w13 * w13);
        const float value = (rotation - strain) * 0.5F;
        q[i] = known != 0 ? value : nan;
    }
}

} // namespace

std::vector<float> qCriterion(const LatticeVelocities& velocities, const Lattice& lattice,
    const std::function<bool()>& isCancelled) {
    std::vector<float> q(lattice.count(), nan);
    const std::size_t points = lattice.points;
    const Row row{velocities, points, points * points, 1.0F / (2.0F * lattice.cellSize)};
    for (std::size_t k = 1; k + 1 < points; ++k) {
        cancelPoint(isCancelled);
        for (std::size_t j = 1; j + 1 < points; ++j) {
            const std::size_t first = lattice.index(1, j, k);
            row.fill(first, points - 2, q.data() + first);
        }
    }
    return q;
}

} // namespace ostrella
