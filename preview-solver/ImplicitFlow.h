#pragma once

#include "FlowSolver.h"
#include "Gradients.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ostrella::preview {

/// The flow solver for one system of equations: `Flux` is IncompressibleFlux<D> or
/// CompressibleFlux<D>.
template <int D, class Flux>
class ImplicitFlow final : public FlowSolver {
public:
    static constexpr int vars = Flux::vars;
    static constexpr int blockSize = vars * vars;

    ImplicitFlow(const Config& config, Flux flux, const double* far, const DualMesh& dual,
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
        ++iteration_;
        if (limiterIsHeld())
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
        watchGrowth(report.residuals);
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
    /// Whether slopes are scaled as LIMITER_ITER left them, which lets the residuals fall further.
    [[nodiscard]] bool limiterIsHeld() const {
        return iteration_ > config_.limiterIterations + 1 && !limiterIsFreed_;
    }

    /// At points with neighbours badly placed, as about flat cells, slopes that are held can feed
    /// themselves and grow without end. Residuals ten times those reached show it; the limiter is
    /// computed again from then on.
    void watchGrowth(const std::vector<double>& residuals) {
        if (!limiterIsHeld())
            return;
        double size = 0;
        for (const double each : residuals)
            size += each * each;
        size = std::sqrt(size);
        leastHeld_ = std::min(leastHeld_, size);
        limiterIsFreed_ = size > 10 * leastHeld_;
    }

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
    void sweepEdges();
    /// Sums the edges' shares about each point. A point's diagonal block is minus the sum of the
    /// blocks of its column: what leaves it by an edge arrives at the other end.
    template <bool implicit>
    void gather(double cfl);
    template <bool implicit>
    void applyBoundaries();
    /// On no-slip walls the momentum equations give way to a velocity of zero.
    template <bool implicit>
    void applyWalls();

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
    /// Of `prepare` with a limiter, from 1.
    int iteration_ = 0;
    bool limiterIsFreed_ = false;
    /// The least size of the residuals since the limiter is held.
    double leastHeld_ = std::numeric_limits<double>::max();
    std::vector<double> residual_;
    std::vector<double> change_;
    std::vector<double> timeSteps_;
    std::vector<double> edgeFlux_;
    /// Two for each edge: spectral radius of the waves times area, of friction times area squared.
    std::vector<double> edgeSpeed_;
};

} // namespace ostrella::preview

#include "ImplicitFlowAssembly.h"
