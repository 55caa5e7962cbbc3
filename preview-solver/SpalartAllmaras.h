#pragma once

#include "Boundaries.h"
#include "Config.h"
#include "DualMesh.h"
#include "FlowFields.h"
#include "FreeStream.h"
#include "LinearSolver.h"

#include <memory>

namespace ostrella::preview {

/// The Spalart-Allmaras model without the trip terms (Spalart & Allmaras, La Recherche Aérospatiale
/// 1, 1994), with the limit of the modified vorticity by Allmaras, Johnson & Spalart (ICCFD7-1902),
/// optionally the rotation correction of Dacles-Mariani et al. and the algebraic transition of
/// Cakmakcioglu et al. (BCM). First order upwind; the variable never falls below 0.
class SpalartAllmaras {
public:
    virtual ~SpalartAllmaras() = default;

    /// One implicit step with the flow solver's present gradients, and the new eddy viscosity.
    /// Returns the root mean square of the residual, solver units.
    virtual double advance(double cfl) = 0;

    /// Sets the free stream's values in `fields`, which lives on outside and holds the wall
    /// distances.
    static std::unique_ptr<SpalartAllmaras> make(const Config& config, const FreeStream& stream,
        const DualMesh& dual, const Boundaries& boundaries, const Sparsity& sparsity,
        FlowFields& fields);
};

/// The source terms at one point, per volume, and minus their derivative where that is stable.
struct SpalartAllmarasSource {
    double value;
    double sink;
};

/// `strain` and `vorticity` are magnitudes, `intermittency` scales the production.
SpalartAllmarasSource spalartAllmarasSource(double nuTilde, double nu, double vorticity,
    double strain, double distance, bool rotation, double intermittency);

/// fv1: eddy viscosity over density and nuTilde, for chi = nuTilde/nu.
double spalartAllmarasFv1(double chi);

} // namespace ostrella::preview
