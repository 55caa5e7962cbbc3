#pragma once

#include "Config.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace ostrella::preview {

/// Decides when a run has converged, by the rules of the configuration: every named field must
/// fulfil its criterion at once, not before the iteration CONV_STARTITER.
class ConvergenceMonitor {
public:
    struct Row {
        std::string field;
        double value = 0;
        std::string criterion;
        bool converged = false;
    };

    /// `residuals` names the run's residual columns, such as "rms[P]". A field of the configuration
    /// that this run does not have adds a line to `warnings` and is left out; if none is left the
    /// first residual is watched.
    ConvergenceMonitor(const Config& config, const std::vector<std::string>& residuals,
        std::vector<std::string>& warnings);

    /// Takes one iteration's values by column name, and answers whether the run has converged.
    bool update(int iteration, const std::map<std::string, double>& values);
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

private:
    struct Watch {
        std::string column;
        bool relative = false;
        bool cauchy = false;
        double first = 0;
        bool started = false;
        double last = 0;
        std::deque<double> changes;
    };

    int start_;
    double minimum_;
    std::size_t elements_;
    double epsilon_;
    std::vector<Watch> watches_;
    std::vector<Row> rows_;
};

/// Why a run cannot go on, or nothing: a residual or a drag that is no number, or a residual beyond
/// 10^20. Residuals are logarithms.
const char* divergence(
    const std::map<std::string, double>& values, const std::vector<std::string>& residuals);

} // namespace ostrella::preview
