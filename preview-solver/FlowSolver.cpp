#include "FlowSolver.h"

#include "CompressibleFlux.h"
#include "Gradients.h"
#include "IncompressibleFlux.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrella::preview {

namespace {

template <int D, class Flux>
class Solver final : public FlowSolver {
public:
    static constexpr int vars = Flux::vars;
    static constexpr int blockSize = vars * vars;

    Solver(const Config& config, Flux flux, const double* far, const DualMesh& dual,
        const Boundaries& boundaries, const Sparsity& sparsity, FlowFields& fields)
        : config_(config),
          flux_(flux),
          dual_(dual),
          boundaries_(boundaries),
          fields_(fields),
          gradients_(dual, config.gradients),
          matrix_(sparsity),
          linear_(sparsity) {
        std::copy_n(far, vars, far_.begin());
        const std::size_t count = dual.size();
        fields.vars = vars;
        fields.compressible = Flux::compressible;
        fields.dimensions = D;
        fields.state.resize(count * vars);
        for (std::size_t i = 0; i < count; ++i)
            std::copy_n(far, vars, fields.state.data() + i * vars);
        fields.gradient.assign(count * vars * D, 0.0);
        fields.density.assign(count, flux.density(far));
        fields.laminarViscosity.assign(count, flux.laminarViscosity(far));
        fields.eddyViscosity.assign(count, 0.0);
        limiter_.assign(count * vars, 1.0);
        residual_.assign(count * vars, 0.0);
        change_.assign(count * vars, 0.0);
        timeSteps_.assign(count, 0.0);
        edgeFlux_.assign(dual.edges.size() * vars, 0.0);
        edgeSpeed_.assign(dual.edges.size() * 2, 0.0);
    }

    void prepare() override {
        auto& w = fields_.state;
        if constexpr (!Flux::compressible) {
            double fastest = 0;
#pragma omp parallel for schedule(static) reduction(max : fastest)
            for (std::size_t i = 0; i < dual_.size(); ++i) {
                double square = 0;
                for (int k = 1; k <= D; ++k)
                    square += w[i * vars + k] * w[i * vars + k];
                fastest = std::max(fastest, square);
            }
            fastest_ = std::max(fastest_, fastest);
            flux_.beta2 = config_.betaFactor * std::clamp(fastest_, 1.0, 9.0);
        } else {
#pragma omp parallel for schedule(static)
            for (std::size_t i = 0; i < dual_.size(); ++i) {
                fields_.density[i] = flux_.density(w.data() + i * vars);
                fields_.laminarViscosity[i] = flux_.laminarViscosity(w.data() + i * vars);
            }
        }
        gradients_.template compute<vars>(w.data(), fields_.gradient.data());
        if (!config_.muscl || config_.limiter == Limiter::none)
            return;
        double square[vars];
        permitted(square);
        limit<vars, D>(dual_, w.data(), fields_.gradient.data(), square, limiter_.data());
    }

    StepReport advance(double cfl) override {
        sweepEdges<true>();
        gather<true>(cfl);
        applyBoundaries<true>();
        applyWalls<true>();
        StepReport report;
        report.residuals.assign(vars, 0.0);
        for (std::size_t i = 0; i < dual_.size(); ++i)
            for (int v = 0; v < vars; ++v)
                if (!(boundaries_.onWall[i] && v >= 1 && v <= D))
                    report.residuals[v] += residual_[i * vars + v] * residual_[i * vars + v];
        for (auto& each : report.residuals)
            each = std::sqrt(each / static_cast<double>(dual_.size()));
#pragma omp parallel for schedule(static)
        for (std::size_t k = 0; k < residual_.size(); ++k)
            residual_[k] = -residual_[k];
        const auto outcome = linear_.solve(
            matrix_, residual_, change_, config_.linearError, config_.linearIterations);
        report.linearIterations = outcome.iterations;
        report.linearReduction = outcome.reduction;
        report.relaxation = update();
        return report;
    }

    const std::vector<double>& timeSteps() const override {
        return timeSteps_;
    }

    const std::vector<double>& residual() override {
        sweepEdges<false>();
        gather<false>(1.0);
        applyBoundaries<false>();
        applyWalls<false>();
        return residual_;
    }

private:
    /// The squares of the fluctuations that the limiter lets pass, from SI units.
    void permitted(double* square) const {
        const auto& w = fields_.state;
        if (config_.limiter == Limiter::venkatakrishnanWang) {
            std::array<double, vars> low;
            std::array<double, vars> high;
            low.fill(1e300);
            high.fill(-1e300);
            for (std::size_t i = 0; i < dual_.size(); ++i) {
                for (int v = 0; v < vars; ++v) {
                    low[v] = std::min(low[v], w[i * vars + v]);
                    high[v] = std::max(high[v], w[i * vars + v]);
                }
            }
            for (int v = 0; v < vars; ++v) {
                const double width = config_.limiterCoefficient * (high[v] - low[v]);
                square[v] = width * width;
            }
            return;
        }
        const double length = config_.limiterCoefficient * config_.limiterLength;
        for (int v = 0; v < vars; ++v)
            square[v] = length * length * length / (scales[v] * scales[v]);
    }

    void reconstruct(std::size_t i, const Vec3& toMiddle, double* face) const {
        const double* w = fields_.state.data() + i * vars;
        const double* gradient = fields_.gradient.data() + i * vars * D;
        const double* factor = limiter_.data() + i * vars;
        for (int v = 0; v < vars; ++v) {
            double change = 0;
            for (int k = 0; k < D; ++k)
                change += gradient[v * D + k] * toMiddle[k];
            face[v] = w[v] + factor[v] * change;
        }
        if (!flux_.valid(face))
            std::copy_n(w, vars, face);
    }

    template <bool implicit>
    void sweepEdges() {
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

    /// Sums the edges' shares about each point. A point's diagonal block is minus the sum of the
    /// blocks of its column: what leaves it by an edge arrives at the other end.
    template <bool implicit>
    void gather(double cfl) {
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

    template <bool implicit>
    void applyBoundaries() {
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

    /// On no-slip walls the momentum equations give way to a velocity of zero.
    template <bool implicit>
    void applyWalls() {
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

    /// Applies the change. A point's whole change is cut where its velocity would change by more
    /// than the free stream's, or pressure or temperature of a gas by more than a fifth. Returns
    /// the least factor.
    double update() {
        double least = 1;
#pragma omp parallel for schedule(static) reduction(min : least)
        for (std::size_t i = 0; i < dual_.size(); ++i) {
            double* w = fields_.state.data() + i * vars;
            const double* change = change_.data() + i * vars;
            double step = 0;
            for (int k = 1; k <= D; ++k)
                step += change[k] * change[k];
            // A wall's first step is that from the free stream to rest, 1.
            double factor = step > 1.1 ? std::sqrt(1.1 / step) : 1.0;
            if constexpr (Flux::compressible) {
                const double relative =
                    std::max(std::abs(change[0]) / w[0], std::abs(change[D + 1]) / w[D + 1]);
                factor = std::min(factor, relative > 0.2 ? 0.2 / relative : 1.0);
            }
            least = std::min(least, factor);
            for (int v = 0; v < vars; ++v)
                w[v] += factor * change[v];
            if (boundaries_.onWall[i])
                std::fill_n(w + 1, D, 0.0);
        }
        return least;
    }

public:
    /// What one solver unit of each state variable is in SI units.
    std::array<double, vars> scales{};

private:
    const Config& config_;
    Flux flux_;
    std::array<double, vars> far_{};
    const DualMesh& dual_;
    const Boundaries& boundaries_;
    FlowFields& fields_;
    Gradients<D> gradients_;
    BlockMatrix<vars> matrix_;
    LinearSolver<vars> linear_;
    double fastest_ = 1;
    std::vector<double> limiter_;
    std::vector<double> residual_;
    std::vector<double> change_;
    std::vector<double> timeSteps_;
    std::vector<double> edgeFlux_;
    /// Two for each edge: spectral radius of the waves times area, of friction times area squared.
    std::vector<double> edgeSpeed_;
};

template <int D>
std::unique_ptr<FlowSolver> makeSolver(const Config& config, const FreeStream& stream,
    const DualMesh& dual, const Boundaries& boundaries, const Sparsity& sparsity,
    FlowFields& fields) {
    const double pressureScale = stream.density * stream.speed * stream.speed;
    double far[D + 2] = {};
    for (int k = 0; k < D; ++k)
        far[k + 1] = stream.direction[k];
    if (!stream.compressible) {
        IncompressibleFlux<D> flux;
        flux.viscosity = stream.scaledViscosity();
        auto solver = std::make_unique<Solver<D, IncompressibleFlux<D>>>(
            config, flux, far, dual, boundaries, sparsity, fields);
        solver->scales.fill(stream.speed);
        solver->scales[0] = pressureScale;
        return solver;
    }
    far[0] = stream.scaledPressure();
    far[D + 1] = 1;
    CompressibleFlux<D> flux;
    flux.gamma = config.gamma;
    flux.gasConstant = far[0];
    flux.viscosity = stream.scaledViscosity();
    flux.sutherland = config.sutherland ? config.sutherlandConstant / stream.temperature : -1;
    flux.prandtl = config.prandtlLaminar;
    flux.prandtlTurbulent = config.prandtlTurbulent;
    flux.entropyFix = config.entropyFix;
    flux.lowMach = config.scheme == InviscidScheme::lowMachRoe;
    auto solver = std::make_unique<Solver<D, CompressibleFlux<D>>>(
        config, flux, far, dual, boundaries, sparsity, fields);
    solver->scales.fill(stream.speed);
    solver->scales[0] = pressureScale;
    solver->scales[D + 1] = stream.temperature;
    return solver;
}

} // namespace

std::unique_ptr<FlowSolver> FlowSolver::make(const Config& config, const FreeStream& stream,
    const DualMesh& dual, const Boundaries& boundaries, const Sparsity& sparsity,
    FlowFields& fields) {
    return dual.dimensions == 2 ? makeSolver<2>(config, stream, dual, boundaries, sparsity, fields)
                                : makeSolver<3>(config, stream, dual, boundaries, sparsity, fields);
}

} // namespace ostrella::preview
