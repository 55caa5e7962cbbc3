#pragma once

#include "Config.h"
#include "FlowSolver.h"

#include <deque>

namespace ostrella::preview {

/// The Courant number of the run, adapted by CFL_ADAPT_PARAM where CFL_ADAPT is set: raised while
/// the linear systems are solved well enough and the residuals do not grow, lowered when a linear
/// system fails, a state had to be held back, or the residuals jump.
class CflControl {
public:
    explicit CflControl(const Config& config);

    [[nodiscard]] double value() const { return value_; }
    /// Takes the report of iteration number `iteration`, counted from 0.
    void update(int iteration, const StepReport& report);

private:
    const Config& config_;
    double value_;
    std::deque<double> past_;
};

} // namespace ostrella::preview
