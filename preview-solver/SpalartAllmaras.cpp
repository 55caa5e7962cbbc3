#include "SpalartAllmaras.h"

#include "FaceGeometry.h"
#include "Gradients.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

namespace {

constexpr double sigma = 2.0 / 3.0;
constexpr double cb1 = 0.1355;
constexpr double cb2 = 0.622;
constexpr double kappa2 = 0.41 * 0.41;
constexpr double cw1 = cb1 / kappa2 + (1 + cb2) / sigma;
constexpr double cw2 = 0.3;
constexpr double cw3 = 2.0;
constexpr double cv1 = 7.1;

} // namespace

double spalartAllmarasFv1(double chi) {
    const double cube = chi * chi * chi;
    return cube / (cube + cv1 * cv1 * cv1);
}

SpalartAllmarasSource spalartAllmarasSource(double nuTilde, double nu, double vorticity,
    double strain, double distance, bool rotation, double intermittency) {
    const double chi = nuTilde / nu;
    const double fv2 = 1 - chi / (1 + chi * spalartAllmarasFv1(chi));
    const double inverse = 1 / (kappa2 * distance * distance);
    double omega = vorticity;
    if (rotation)
        omega = std::max(omega + 2 * std::min(0.0, strain - vorticity), 0.0);
    const double bar = nuTilde * fv2 * inverse;
    double modified = omega + bar;
    // Keeps the modified vorticity positive without a kink, c2 = 0.7, c3 = 0.9.
    if (bar < -0.7 * omega)
        modified = omega + omega * (0.49 * omega + 0.9 * bar) / ((0.9 - 1.4) * omega - bar);
    modified = std::max(modified, 1e-12);
    const double r = std::min(nuTilde * inverse / modified, 10.0);
    const double g = r + cw2 * (std::pow(r, 6) - r);
    const double cw36 = std::pow(cw3, 6);
    const double fw = g * std::pow((1 + cw36) / (std::pow(g, 6) + cw36), 1.0 / 6.0);
    const double production = intermittency * cb1 * modified;
    const double destruction = cw1 * fw * nuTilde / (distance * distance);
    return {(production - destruction) * nuTilde, std::max(2 * destruction - production, 0.0)};
}

namespace {

template <int D>
class Model final : public SpalartAllmaras {
public:
    Model(const Config& config, const FreeStream& stream, const DualMesh& dual,
        const Boundaries& boundaries, const Sparsity& sparsity, FlowFields& fields)
        : config_(config),
          dual_(dual),
          boundaries_(boundaries),
          distance_(fields.wallDistance),
          fields_(fields),
          gradients_(dual, config.gradients),
          matrix_(sparsity),
          linear_(sparsity) {
        const double nu = stream.scaledViscosity();
        far_ = (config.saTransition ? 0.005 : config.nuFactor) * nu;
        const std::size_t count = dual.size();
        fields.nuTilde.assign(count, far_);
        gradient_.assign(count * D, 0.0);
        residual_.assign(count, 0.0);
        change_.assign(count, 0.0);
        edgeFlux_.assign(dual.edges.size() * 2, 0.0);
        edgeSpeed_.assign(dual.edges.size() * 2, 0.0);
        // Kept off 0, where the source terms have no value; the wall itself is not solved for.
        for (auto& each : distance_)
            each = std::max(each, 1e-12);
        setEddyViscosity();
    }

    double advance(double cfl) override {
        gradients_.template compute<1>(fields_.nuTilde.data(), gradient_.data());
        sweepEdges();
        gather(cfl);
        applyBoundaries();
        const double size = norm();
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < residual_.size(); ++i)
            residual_[i] = -residual_[i];
        linear_.solve(matrix_, residual_, change_, config_.linearError, config_.linearIterations);
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < dual_.size(); ++i)
            fields_.nuTilde[i] =
                boundaries_.onWall[i] ? 0.0 : std::max(fields_.nuTilde[i] + change_[i], 0.0);
        setEddyViscosity();
        return size;
    }

private:
    double nu(std::size_t i) const {
        return fields_.laminarViscosity[i] / fields_.density[i];
    }

    /// Convection in the form u · grad: the two ends of an edge receive different shares, so that a
    /// residual of the mass equation makes no source, and the matrix keeps its sign.
    void sweepEdges() {
#pragma omp parallel for schedule(static)
        for (std::size_t e = 0; e < dual_.edges.size(); ++e) {
            const auto i = static_cast<std::size_t>(dual_.edges[e].from);
            const auto j = static_cast<std::size_t>(dual_.edges[e].to);
            const Vec3& normal = dual_.normals[e];
            const Vec3 d = dual_.points[j] - dual_.points[i];
            double flow = 0;
            const double* wi = fields_.at(i);
            const double* wj = fields_.at(j);
            for (int k = 0; k < D; ++k)
                flow += 0.5 * (wi[k + 1] + wj[k + 1]) * normal[k];
            const double jump = fields_.nuTilde[j] - fields_.nuTilde[i];
            const double inverse = 1 / glm::dot(d, d);
            double across = 0;
            double along = 0;
            for (int k = 0; k < D; ++k) {
                const double mean = 0.5 * (gradient_[i * D + k] + gradient_[j * D + k]);
                across += mean * normal[k];
                along += mean * d[k];
            }
            const double spacing = glm::dot(normal, d) * inverse;
            across += (jump - along) * spacing;
            const double diffusivity =
                (0.5 * (nu(i) + nu(j)) + 0.5 * (fields_.nuTilde[i] + fields_.nuTilde[j])) / sigma;
            const double diffusion = diffusivity * across;
            const double into = std::min(flow, 0.0);
            const double out = std::max(flow, 0.0);
            edgeFlux_[2 * e] = into * jump - diffusion;
            edgeFlux_[2 * e + 1] = out * jump + diffusion;
            const double thin = diffusivity * std::max(spacing, 0.0);
            *matrix_.block(matrix_.sparsity.upper[e]) = static_cast<float>(into - thin);
            *matrix_.block(matrix_.sparsity.lower[e]) = static_cast<float>(-out - thin);
            edgeSpeed_[2 * e] = std::abs(flow);
            edgeSpeed_[2 * e + 1] = diffusivity * glm::dot(normal, normal);
        }
    }

    void gather(double cfl) {
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < dual_.size(); ++i) {
            double sum = 0;
            double diagonal = 0;
            double waves = 0;
            double friction = 0;
            const auto& places = matrix_.sparsity;
            for (const auto& neighbour : dual_.around(i)) {
                const auto e = static_cast<std::size_t>(neighbour.edge);
                const bool first = neighbour.sign > 0;
                sum += edgeFlux_[2 * e + (first ? 0 : 1)];
                diagonal -= *matrix_.block(first ? places.upper[e] : places.lower[e]);
                waves += edgeSpeed_[2 * e];
                friction += edgeSpeed_[2 * e + 1];
            }
            float* block = matrix_.block(places.diagonal[i]);
            if (boundaries_.onWall[i]) {
                residual_[i] = 0;
                for (auto k = places.start[i]; k < places.start[i + 1]; ++k)
                    *matrix_.block(k) = 0;
                *block = 1;
                continue;
            }
            const double volume = dual_.volumes[i];
            const auto source = sourceAt(i);
            residual_[i] = sum - volume * source.value;
            const double step = std::max(waves, friction / volume);
            *block = static_cast<float>(diagonal + volume * source.sink + step / cfl);
        }
    }

    SpalartAllmarasSource sourceAt(std::size_t i) const {
        const double* g = fields_.velocityGradient(i);
        double vorticity = 0;
        double strain = 0;
        for (int a = 0; a < D; ++a) {
            for (int b = 0; b < D; ++b) {
                const double turn = g[a * D + b] - g[b * D + a];
                const double stretch = g[a * D + b] + g[b * D + a];
                vorticity += 0.25 * turn * turn;
                strain += 0.25 * stretch * stretch;
            }
        }
        vorticity = std::sqrt(2 * vorticity);
        strain = std::sqrt(2 * strain);
        double steep = 0;
        for (int k = 0; k < D; ++k)
            steep += gradient_[i * D + k] * gradient_[i * D + k];
        const double nuTilde = fields_.nuTilde[i];
        auto source = spalartAllmarasSource(nuTilde, nu(i), vorticity, strain, distance_[i],
            config_.saRotation, config_.saTransition ? intermittency(i, vorticity) : 1.0);
        source.value += cb2 / sigma * steep;
        return source;
    }

    /// Algebraic transition: production sets in where the vorticity Reynolds number exceeds the
    /// critical one for the free stream's turbulence, or where there is turbulence already.
    double intermittency(std::size_t i, double vorticity) const {
        const double chi = fields_.nuTilde[i] / nu(i);
        const double theta = distance_[i] * distance_[i] * vorticity / nu(i) / 2.193;
        const double critical =
            803.73 * std::pow(100 * config_.turbulenceIntensity + 0.6067, -1.027);
        const double first = std::max(theta - critical, 0.0) / (0.002 * critical);
        const double second = chi * spalartAllmarasFv1(chi) / 0.02;
        return 1 - std::exp(-std::sqrt(first) - std::sqrt(second));
    }

    void applyBoundaries() {
        for (std::size_t b = 0; b < dual_.boundaries.size(); ++b) {
            if (boundaries_.kinds[b] != BoundaryKind::far)
                continue;
            for (const auto& vertex : dual_.boundaries[b].vertices) {
                const auto i = static_cast<std::size_t>(vertex.point);
                if (boundaries_.onWall[i])
                    continue;
                double flow = 0;
                for (int k = 0; k < D; ++k)
                    flow += fields_.at(i)[k + 1] * vertex.normal[k];
                const double into = std::min(flow, 0.0);
                residual_[i] += into * (far_ - fields_.nuTilde[i]);
                *matrix_.block(matrix_.sparsity.diagonal[i]) -= static_cast<float>(into);
            }
        }
    }

    double norm() const {
        double sum = 0;
        for (const double each : residual_)
            sum += each * each;
        return std::sqrt(sum / static_cast<double>(residual_.size()));
    }

    void setEddyViscosity() {
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < dual_.size(); ++i) {
            const double nuTilde = fields_.nuTilde[i];
            fields_.eddyViscosity[i] =
                fields_.density[i] * nuTilde * spalartAllmarasFv1(nuTilde / nu(i));
        }
    }

    const Config& config_;
    const DualMesh& dual_;
    const Boundaries& boundaries_;
    std::vector<double> distance_;
    FlowFields& fields_;
    Gradients<D> gradients_;
    BlockMatrix<1> matrix_;
    LinearSolver<1> linear_;
    double far_ = 0;
    std::vector<double> gradient_;
    std::vector<double> residual_;
    std::vector<double> change_;
    /// Two for each edge: what the residual of its first and of its second point receives.
    std::vector<double> edgeFlux_;
    std::vector<double> edgeSpeed_;
};

} // namespace

std::unique_ptr<SpalartAllmaras> SpalartAllmaras::make(const Config& config,
    const FreeStream& stream, const DualMesh& dual, const Boundaries& boundaries,
    const Sparsity& sparsity, FlowFields& fields) {
    if (dual.dimensions == 2)
        return std::make_unique<Model<2>>(config, stream, dual, boundaries, sparsity, fields);
    return std::make_unique<Model<3>>(config, stream, dual, boundaries, sparsity, fields);
}

} // namespace ostrella::preview
