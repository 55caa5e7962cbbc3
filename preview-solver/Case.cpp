#include "Case.h"

#include "HistoryWriter.h"
#include "WallDistance.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

namespace {

/// The logarithm of a residual; one of exactly zero counts as 1e-32.
double logarithm(double residual) {
    return std::isfinite(residual) ? std::log10(std::max(residual, 1e-32)) : residual;
}

} // namespace

Case::Case(const Config& config, const Mesh& mesh)
    : config_(config),
      stream_(FreeStream::of(config, mesh.dimensions)),
      scales_(OutputScales::of(config, stream_)),
      dual_(DualMesh::build(mesh)),
      boundaries_(Boundaries::of(config, dual_)),
      sparsity_(dual_),
      flow_(FlowSolver::make(config, stream_, dual_, boundaries_, sparsity_, fields_)),
      cfl_(config),
      columns_(residualColumns(config, mesh.dimensions)) {
    if (config.viscous())
        fields_.wallDistance = wallDistances(mesh, dual_, config.wallMarkers);
    if (config.turbulent())
        turbulence_ =
            SpalartAllmaras::make(config, stream_, dual_, boundaries_, sparsity_, fields_);
}

std::map<std::string, double> Case::iterate(int iteration) {
    if (!prepared_)
        flow_->prepare();
    const double cfl = cfl_.value();
    std::vector<double> residuals;
    double turbulence = 0;
    if (turbulence_)
        turbulence = turbulence_->advance(cfl * config_.cflReductionTurbulence) * scales_.velocity *
                     scales_.viscosity() / scales_.density;
    const StepReport report = flow_->advance(cfl);
    cfl_.update(iteration, report);
    residuals = report.residuals;
    const auto factors = scales_.residuals(stream_);
    for (std::size_t k = 0; k < residuals.size(); ++k)
        residuals[k] *= factors[k];
    if (turbulence_)
        residuals.push_back(turbulence);
    // The state has changed: the forces need its gradients, and so does the next iteration.
    flow_->prepare();
    prepared_ = true;
    auto values = coefficientValues(coefficients(), stream_, config_);
    for (std::size_t k = 0; k < residuals.size(); ++k)
        values[columns_[k]] = logarithm(residuals[k]);
    values["Inner_Iter"] = iteration;
    values["Linear_Solver_Iterations"] = report.linearIterations;
    values["Linear_Solver_Residual"] = logarithm(report.linearReduction);
    values["Min CFL"] = values["Max CFL"] = values["Avg CFL"] = cfl;
    return values;
}

Coefficients Case::coefficients() {
    return forces(config_, stream_, dual_, boundaries_, fields_);
}

} // namespace ostrella::preview
