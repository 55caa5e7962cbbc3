#pragma once

#include "Boundaries.h"
#include "Config.h"
#include "DualMesh.h"
#include "FlowFields.h"
#include "FreeStream.h"
#include "LinearSolver.h"

#include <memory>

namespace ostrella::preview {

/// What one implicit step did.
struct StepReport {
    /// Root mean square of each equation's residual over the points, SI units or those of the
    /// output.
    std::vector<double> residuals;
    int linearIterations = 0;
    double linearReduction = 1;
    /// The least factor by which a point's change was cut to keep its state physical.
    double relaxation = 1;
};

/// Advances the flow's equations in pseudo-time; the turbulence model comes between its two halves.
class FlowSolver {
public:
    virtual ~FlowSolver() = default;

    /// Gradients, limiters and properties of the present state.
    virtual void prepare() = 0;
    /// One implicit step with local time steps of the given Courant number; `prepare` comes first.
    virtual StepReport advance(double cfl) = 0;
    /// The local time step of each point in the last `advance`, solver units.
    [[nodiscard]] virtual const std::vector<double>& timeSteps() const = 0;
    /// The residual of the present state, `vars` numbers a point, without any implicit step.
    virtual const std::vector<double>& residual() = 0;

    /// The solver for a regime and number of dimensions; `fields` is set to the free stream and
    /// lives on outside.
    static std::unique_ptr<FlowSolver> make(const Config& config, const FreeStream& stream,
        const DualMesh& dual, const Boundaries& boundaries, const Sparsity& sparsity,
        FlowFields& fields);
};

} // namespace ostrella::preview
