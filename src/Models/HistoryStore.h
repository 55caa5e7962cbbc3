#pragma once

#include "Models/HistoryPoint.h"

#include <QObject>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella {

/// The convergence series of the current run, or of the last one until the next begins. Main thread
/// only; a setter notifies at every set.
class HistoryStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasData READ hasData WRITE setHasData NOTIFY hasDataChanged)

public:
    using Points = std::vector<HistoryPoint>;
    using Labels = std::vector<std::string>;
    /// A series' label and its newest value.
    using LatestValue = std::pair<std::string, double>;

    explicit HistoryStore(QObject* parent = nullptr);

    /// All points of the run, in the order of the solver's rows and columns.
    const Points& residuals() const { return residuals_; }
    const Points& coefficients() const { return coefficients_; }
    const Labels& residualLabels() const { return residualLabels_; }
    const Labels& coefficientLabels() const { return coefficientLabels_; }
    /// True if either array of points has any.
    bool hasData() const { return hasData_; }

    void setResiduals(Points value);
    void setCoefficients(Points value);
    void setResidualLabels(Labels value);
    void setCoefficientLabels(Labels value);
    void setHasData(bool value);

    /// Empties everything; at the start of a run.
    void reset();

    /// The larger of the last points' iterations; absent without any point.
    std::optional<std::int64_t> latestIteration() const;

    /// For each coefficient label that has points, in the labels' order, the value at the greatest
    /// iteration; the first of several.
    std::vector<LatestValue> latestCoefficients() const;

    /// The last value of one series, a coefficient or a residual.
    std::optional<double> latestValue(std::string_view label) const;

Q_SIGNALS:
    void residualsChanged();
    void coefficientsChanged();
    void residualLabelsChanged();
    void coefficientLabelsChanged();
    void hasDataChanged();

private:
    Points residuals_;
    Points coefficients_;
    Labels residualLabels_;
    Labels coefficientLabels_;
    bool hasData_ = false;
};

} // namespace ostrella
