#include "CflControl.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

CflControl::CflControl(const Config& config) : config_(config), value_(config.cfl) {
    if (config.cflAdapt)
        value_ = std::clamp(value_, config.cflMin, config.cflMax);
}

void CflControl::update(int iteration, const StepReport& report) {
    if (!config_.cflAdapt)
        return;
    double size = 0;
    for (const double each : report.residuals)
        size += each * each;
    size = std::sqrt(size);
    const double least = past_.empty() ? size : *std::min_element(past_.begin(), past_.end());
    past_.push_back(size);
    if (past_.size() > 10)
        past_.pop_front();
    if (iteration < config_.cflStart)
        return;
    // Steps are accepted at the tolerance asked of the linear solver, if that is the looser one.
    const double target = std::max(config_.cflLinearResidual, config_.linearError);
    const bool failed = report.linearReduction > 0.9 || report.relaxation < 0.1;
    const bool jumped = iteration > 20 && size > 10 * least;
    if (failed || jumped)
        value_ = std::max(value_ * config_.cflDown, config_.cflMin);
    else if (report.linearReduction > std::max(10 * target, 0.2) || report.relaxation < 1)
        value_ = std::max(value_ * std::sqrt(config_.cflDown), config_.cflMin);
    else if (report.linearReduction <= std::max(2 * target, 0.1))
        value_ = std::min(value_ * config_.cflUp, config_.cflMax);
}

} // namespace ostrella::preview
