#pragma once

#include "Boundaries.h"
#include "CflControl.h"
#include "Config.h"
#include "ConvergenceMonitor.h"
#include "DualMesh.h"
#include "FlowFields.h"
#include "FlowSolver.h"
#include "Forces.h"
#include "FreeStream.h"
#include "OutputScales.h"
#include "SpalartAllmaras.h"

#include <map>
#include <memory>

namespace ostrella::preview {

/// Everything between a read configuration and mesh and the numbers of an iteration; it writes and
/// prints nothing.
class Case {
public:
    /// Throws Failure where the mesh and the configuration do not fit. Both live on outside.
    Case(const Config& config, const Mesh& mesh);
    Case(const Case&) = delete;
    Case& operator=(const Case&) = delete;

    /// One iteration; the values of its history columns by name, residuals as log10.
    std::map<std::string, double> iterate(int iteration);
    /// Forces of the present state.
    [[nodiscard]] Coefficients coefficients();
    /// Brings gradients and properties up to date with the state, for the result files.
    void refresh() { flow_->prepare(); }

    [[nodiscard]] const FreeStream& stream() const { return stream_; }
    [[nodiscard]] const DualMesh& dual() const { return dual_; }
    [[nodiscard]] const Boundaries& boundaries() const { return boundaries_; }
    [[nodiscard]] const OutputScales& scales() const { return scales_; }
    [[nodiscard]] FlowFields& fields() { return fields_; }
    [[nodiscard]] FlowSolver& flow() { return *flow_; }

private:
    const Config& config_;
    FreeStream stream_;
    OutputScales scales_;
    DualMesh dual_;
    Boundaries boundaries_;
    Sparsity sparsity_;
    FlowFields fields_;
    std::unique_ptr<FlowSolver> flow_;
    std::unique_ptr<SpalartAllmaras> turbulence_;
    CflControl cfl_;
    std::vector<std::string> columns_;
    bool prepared_ = false;
};

} // namespace ostrella::preview
