#pragma once

// Residual and matrix of ImplicitFlow; included at the end of its header.
#include "ImplicitFlow.h"

namespace ostrella::preview {

template <int D, class Flux>
template <bool implicit>
void ImplicitFlow<D, Flux>::sweepEdges() {
    const bool viscous = config_.viscous();
#pragma omp parallel for schedule(static)
    for (std::size_t e = 0; e < dual_.edges.size(); ++e) {
        const auto i = static_cast<std::size_t>(dual_.edges[e].from);
        const auto j = static_cast<std::size_t>(dual_.edges[e].to);
        const double* wi = fields_.state.data() + i * vars;
        const double* wj = fields_.state.data() + j * vars;
        const FaceGeometry<D> face(dual_.normals[e]);
        const Vec3 d = dual_.points[j] - dual_.points[i];
        double* f = edgeFlux_.data() + e * vars;
        if (config_.muscl) {
            double left[vars], right[vars];
            reconstruct(i, 0.5 * d, left);
            reconstruct(j, -0.5 * d, right);
            flux_.flux(left, right, face, f);
        } else {
            flux_.flux(wi, wj, face, f);
        }
        double dl[blockSize], dr[blockSize];
        if constexpr (implicit)
            flux_.jacobian(wi, wj, face, dl, dr);
        double mean[vars];
        for (int v = 0; v < vars; ++v)
            mean[v] = 0.5 * (wi[v] + wj[v]);
        edgeSpeed_[2 * e] = flux_.waveSpeed(mean, face) * face.area;
        if (viscous) {
            const double mu = 0.5 * (fields_.laminarViscosity[i] + fields_.laminarViscosity[j]);
            const double eddy = 0.5 * (fields_.eddyViscosity[i] + fields_.eddyViscosity[j]);
            const double inverse = 1 / glm::dot(d, d);
            double gradient[vars * D];
            const double* gi = fields_.gradient.data() + i * vars * D;
            const double* gj = fields_.gradient.data() + j * vars * D;
            for (int v = 0; v < vars; ++v) {
                double along = 0;
                for (int k = 0; k < D; ++k) {
                    gradient[v * D + k] = 0.5 * (gi[v * D + k] + gj[v * D + k]);
                    along += gradient[v * D + k] * d[k];
                }
                // The part along the edge comes from the two values themselves.
                const double correction = (wj[v] - wi[v] - along) * inverse;
                for (int k = 0; k < D; ++k)
                    gradient[v * D + k] += correction * d[k];
            }
            double fv[vars];
            flux_.viscousFlux(mean, gradient, mu, eddy, face, fv);
            for (int v = 0; v < vars; ++v)
                f[v] -= fv[v];
            edgeSpeed_[2 * e + 1] = 4.0 / 3.0 * (mu + eddy) * face.area * face.area;
            if constexpr (implicit) {
                const double spacing = std::max(glm::dot(dual_.normals[e], d) * inverse, 0.0);
                double thin[blockSize] = {};
                flux_.addViscousJacobian(mean, mu, eddy, spacing, face, thin);
                for (int k = 0; k < blockSize; ++k) {
                    dl[k] += thin[k];
                    dr[k] -= thin[k];
                }
            }
        }
        if constexpr (implicit) {
            float* upper = matrix_.block(matrix_.sparsity.upper[e]);
            float* lower = matrix_.block(matrix_.sparsity.lower[e]);
            for (int k = 0; k < blockSize; ++k) {
                upper[k] = static_cast<float>(dr[k]);
                lower[k] = static_cast<float>(-dl[k]);
            }
        }
    }
}

template <int D, class Flux>
template <bool implicit>
void ImplicitFlow<D, Flux>::gather(double cfl) {
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < dual_.size(); ++i) {
        double sums[vars] = {};
        double diagonal[blockSize] = {};
        double waves = 0;
        double friction = 0;
        for (const auto& neighbour : dual_.around(i)) {
            const auto e = static_cast<std::size_t>(neighbour.edge);
            for (int v = 0; v < vars; ++v)
                sums[v] += neighbour.sign * edgeFlux_[e * vars + v];
            waves += edgeSpeed_[2 * e];
            friction += edgeSpeed_[2 * e + 1];
            if constexpr (implicit) {
                const auto& places = matrix_.sparsity;
                const float* block =
                    matrix_.block(neighbour.sign > 0 ? places.lower[e] : places.upper[e]);
                for (int k = 0; k < blockSize; ++k)
                    diagonal[k] -= block[k];
            }
        }
        std::copy_n(sums, vars, residual_.data() + i * vars);
        if constexpr (!implicit)
            continue;
        const double* w = fields_.state.data() + i * vars;
        const FaceGeometry<D> outer(boundaries_.outer[i]);
        if (outer.area > 0)
            waves += flux_.waveSpeed(w, outer) * outer.area;
        const double volume = dual_.volumes[i];
        double step = cfl * volume / waves;
        if (friction > 0)
            step = std::min(step, 0.25 * cfl * volume * volume * fields_.density[i] / friction);
        timeSteps_[i] = step;
        double time[blockSize];
        flux_.timeMatrix(w, time);
        float* block = matrix_.block(matrix_.sparsity.diagonal[i]);
        for (int k = 0; k < blockSize; ++k)
            block[k] = static_cast<float>(diagonal[k] + volume / step * time[k]);
    }
}

template <int D, class Flux>
template <bool implicit>
void ImplicitFlow<D, Flux>::applyBoundaries() {
    for (std::size_t b = 0; b < dual_.boundaries.size(); ++b) {
        const BoundaryKind kind = boundaries_.kinds[b];
        if (kind == BoundaryKind::wall)
            continue;
        for (const auto& vertex : dual_.boundaries[b].vertices) {
            const auto i = static_cast<std::size_t>(vertex.point);
            const double* w = fields_.state.data() + i * vars;
            const FaceGeometry<D> face(vertex.normal);
            double f[vars];
            double own[blockSize], other[blockSize];
            if (kind == BoundaryKind::far) {
                flux_.flux(w, far_.data(), face, f);
                if constexpr (implicit)
                    flux_.jacobian(w, far_.data(), face, own, other);
            } else {
                flux_.slipFlux(w, face, f);
                if constexpr (implicit)
                    flux_.slipJacobian(w, face, own);
            }
            for (int v = 0; v < vars; ++v)
                residual_[i * vars + v] += f[v];
            if constexpr (implicit) {
                float* block = matrix_.block(matrix_.sparsity.diagonal[i]);
                for (int k = 0; k < blockSize; ++k)
                    block[k] += static_cast<float>(own[k]);
            }
        }
    }
}

template <int D, class Flux>
template <bool implicit>
void ImplicitFlow<D, Flux>::applyWalls() {
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < dual_.size(); ++i) {
        if (!boundaries_.onWall[i])
            continue;
        if constexpr (!implicit) {
            std::fill_n(residual_.data() + i * vars + 1, D, 0.0);
        } else {
            const auto& places = matrix_.sparsity;
            const double weight = dual_.volumes[i] / timeSteps_[i];
            for (auto k = places.start[i]; k < places.start[i + 1]; ++k)
                std::fill_n(matrix_.block(k) + vars, D * vars, 0.0f);
            float* block = matrix_.block(places.diagonal[i]);
            for (int k = 1; k <= D; ++k) {
                block[k * vars + k] = static_cast<float>(weight);
                residual_[i * vars + k] = weight * fields_.state[i * vars + k];
            }
        }
    }
}

} // namespace ostrella::preview
