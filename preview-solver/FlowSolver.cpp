#include "FlowSolver.h"

#include "CompressibleFlux.h"
#include "ImplicitFlow.h"
#include "IncompressibleFlux.h"

namespace ostrella::preview {

namespace {

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
        auto solver = std::make_unique<ImplicitFlow<D, IncompressibleFlux<D>>>(
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
    auto solver = std::make_unique<ImplicitFlow<D, CompressibleFlux<D>>>(
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
