#pragma once

#include "Config.h"
#include "DualMesh.h"

#include <algorithm>
#include <vector>

namespace ostrella::preview {

/// Gradients at the points of a dual mesh by least squares, neighbours weighted with the inverse
/// square of their distance, or by Green and Gauss. Least squares are exact for linear fields on
/// any mesh whose neighbours span the space.
template <int D>
class Gradients {
public:
    Gradients(const DualMesh& dual, GradientMethod method);

    /// Of N interleaved fields: `field` holds N numbers a point, `gradient` receives N rows of D.
    template <int N>
    void compute(const double* field, double* gradient) const {
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < dual_.size(); ++i)
            at<N>(i, field, gradient + i * N * D);
    }

    /// The same at one point; `gradient` receives that point's N rows of D.
    template <int N>
    void at(std::size_t i, const double* field, double* gradient) const {
        double sums[N * D] = {};
        const double* own = field + i * N;
        if (method_ == GradientMethod::leastSquares) {
            for (const auto& neighbour : dual_.around(i)) {
                const Vec3 d = dual_.points[neighbour.point] - dual_.points[i];
                const double weight = 1 / glm::dot(d, d);
                const double* other = field + static_cast<std::size_t>(neighbour.point) * N;
                for (int v = 0; v < N; ++v) {
                    const double difference = weight * (other[v] - own[v]);
                    for (int k = 0; k < D; ++k)
                        sums[v * D + k] += difference * d[k];
                }
            }
            const double* m = inverse_.data() + i * rows;
            for (int v = 0; v < N; ++v) {
                const double* s = sums + v * D;
                double* g = gradient + v * D;
                if constexpr (D == 2) {
                    g[0] = m[0] * s[0] + m[1] * s[1];
                    g[1] = m[1] * s[0] + m[2] * s[1];
                } else {
                    g[0] = m[0] * s[0] + m[1] * s[1] + m[2] * s[2];
                    g[1] = m[1] * s[0] + m[3] * s[1] + m[4] * s[2];
                    g[2] = m[2] * s[0] + m[4] * s[1] + m[5] * s[2];
                }
            }
            return;
        }
        for (const auto& neighbour : dual_.around(i)) {
            const Vec3 normal = neighbour.sign * dual_.normals[neighbour.edge];
            const double* other = field + static_cast<std::size_t>(neighbour.point) * N;
            for (int v = 0; v < N; ++v)
                for (int k = 0; k < D; ++k)
                    sums[v * D + k] += 0.5 * (own[v] + other[v]) * normal[k];
        }
        for (int v = 0; v < N; ++v)
            for (int k = 0; k < D; ++k)
                gradient[v * D + k] =
                    (sums[v * D + k] + own[v] * boundary_[i][k]) / dual_.volumes[i];
    }

private:
    static constexpr int rows = D * (D + 1) / 2;

    const DualMesh& dual_;
    GradientMethod method_;
    /// Upper triangles of the inverse normal matrices; directions that no neighbour spans are zero.
    std::vector<double> inverse_;
    std::vector<Vec3> boundary_;
};

/// Venkatakrishnan's limiter for N interleaved fields: numbers from 0 to 1 by which the slopes are
/// scaled, so that values at the middles of the edges stay within those of the neighbours.
/// `square` is the square of the fluctuation that is let pass, one for each field.
template <int N, int D>
void limit(const DualMesh& dual, const double* field, const double* gradient, const double* square,
    double* limiter) {
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < dual.size(); ++i) {
        const double* own = field + i * N;
        double low[N];
        double high[N];
        double factor[N];
        for (int v = 0; v < N; ++v) {
            low[v] = high[v] = own[v];
            factor[v] = 1;
        }
        for (const auto& neighbour : dual.around(i)) {
            const double* other = field + static_cast<std::size_t>(neighbour.point) * N;
            for (int v = 0; v < N; ++v) {
                low[v] = std::min(low[v], other[v]);
                high[v] = std::max(high[v], other[v]);
            }
        }
        const double* slopes = gradient + i * N * D;
        for (const auto& neighbour : dual.around(i)) {
            const Vec3 d = dual.points[neighbour.point] - dual.points[i];
            for (int v = 0; v < N; ++v) {
                double change = 0;
                for (int k = 0; k < D; ++k)
                    change += slopes[v * D + k] * d[k];
                change *= 0.5;
                const double room = (change > 0 ? high[v] : low[v]) - own[v];
                const double numerator = room * (room + 2 * change) + square[v];
                const double denominator = room * (room + change) + 2 * change * change + square[v];
                if (denominator > 0)
                    factor[v] = std::min(factor[v], numerator / denominator);
            }
        }
        for (int v = 0; v < N; ++v)
            limiter[i * N + v] = factor[v];
    }
}

} // namespace ostrella::preview
