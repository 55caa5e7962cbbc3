#include "ConvergenceMonitor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ostrella::preview {

namespace {

/// Names of the configuration and the history columns they stand for.
const std::map<std::string, std::string>& columns() {
    static const std::map<std::string, std::string> names{{"RMS_PRESSURE", "rms[P]"},
        {"RMS_VELOCITY-X", "rms[U]"}, {"RMS_VELOCITY-Y", "rms[V]"}, {"RMS_VELOCITY-Z", "rms[W]"},
        {"RMS_DENSITY", "rms[Rho]"}, {"RMS_MOMENTUM-X", "rms[RhoU]"},
        {"RMS_MOMENTUM-Y", "rms[RhoV]"}, {"RMS_MOMENTUM-Z", "rms[RhoW]"},
        {"RMS_ENERGY", "rms[RhoE]"}, {"RMS_NU_TILDE", "rms[nu]"}, {"DRAG", "CD"}, {"LIFT", "CL"},
        {"SIDEFORCE", "CSF"}, {"MOMENT_X", "CMx"}, {"MOMENT_Y", "CMy"}, {"MOMENT_Z", "CMz"},
        {"FORCE_X", "CFx"}, {"FORCE_Y", "CFy"}, {"FORCE_Z", "CFz"}, {"EFFICIENCY", "CEff"}};
    return names;
}

} // namespace

ConvergenceMonitor::ConvergenceMonitor(const Config& config,
    const std::vector<std::string>& residuals, std::vector<std::string>& warnings)
    : start_(config.convergenceStart),
      minimum_(config.residualMinimum),
      elements_(static_cast<std::size_t>(config.cauchyElements)),
      epsilon_(config.cauchyEpsilon) {
    for (std::string name : config.convergenceFields) {
        Watch watch;
        watch.relative = name.starts_with("REL_RMS_");
        const auto found = columns().find(watch.relative ? name.substr(4) : name);
        const bool residual = found != columns().end() && found->second.starts_with("rms");
        if (found == columns().end() || (residual && std::find(residuals.begin(), residuals.end(),
                                                         found->second) == residuals.end())) {
            warnings.push_back(
                fmt::format("CONV_FIELD: {} is not a field of this run and is left out.", name));
            continue;
        }
        watch.column = found->second;
        watch.cauchy = !residual;
        watches_.push_back(watch);
    }
    if (watches_.empty())
        watches_.push_back({.column = residuals.front(), .changes = {}});
    for (const auto& watch : watches_) {
        const std::string field = watch.cauchy     ? fmt::format("Cauchy[{}]", watch.column)
                                  : watch.relative ? "rel" + watch.column
                                                   : watch.column;
        rows_.push_back({field, watch.cauchy ? 1.0 : 0.0,
            fmt::format("< {:g}", watch.cauchy ? epsilon_ : minimum_), false});
    }
}

bool ConvergenceMonitor::update(int iteration, const std::map<std::string, double>& values) {
    bool all = true;
    for (std::size_t k = 0; k < watches_.size(); ++k) {
        Watch& watch = watches_[k];
        Row& row = rows_[k];
        const double value = values.at(watch.column);
        if (watch.cauchy) {
            if (watch.started) {
                watch.changes.push_back(
                    std::abs(value - watch.last) / std::max(std::abs(value), 0.1));
                if (watch.changes.size() > elements_)
                    watch.changes.pop_front();
            }
            watch.started = true;
            watch.last = value;
            const bool full = watch.changes.size() == elements_;
            row.value = full ? std::accumulate(watch.changes.begin(), watch.changes.end(), 0.0) /
                                   static_cast<double>(elements_)
                             : 1.0;
            row.converged = full && row.value < epsilon_;
        } else {
            // The first iteration's residual is that of the undisturbed start; it is no measure.
            if (watch.relative && (!watch.started || iteration <= 1)) {
                watch.first = std::max(value, watch.started ? watch.first : value);
                watch.started = true;
            }
            row.value = watch.relative ? value - watch.first : value;
            row.converged = row.value < minimum_;
        }
        all = all && row.converged && iteration >= start_;
    }
    return all;
}

const char* divergence(
    const std::map<std::string, double>& values, const std::vector<std::string>& residuals) {
    for (const auto& column : residuals) {
        const double value = values.at(column);
        if (!std::isfinite(value))
            return "The flow has diverged (NaN detected).";
        if (value > 20)
            return "The flow has diverged (Residual > 10^20 detected).";
    }
    return std::isfinite(values.at("CD")) ? nullptr : "The flow has diverged (NaN detected).";
}

} // namespace ostrella::preview
