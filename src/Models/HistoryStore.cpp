#include "Models/HistoryStore.h"

#include <algorithm>
#include <utility>

namespace ostrella {

HistoryStore::HistoryStore(QObject* parent) : QObject(parent) {}

void HistoryStore::setResiduals(Points value) {
    residuals_ = std::move(value);
    Q_EMIT residualsChanged();
}

void HistoryStore::setCoefficients(Points value) {
    coefficients_ = std::move(value);
    Q_EMIT coefficientsChanged();
}

void HistoryStore::setResidualLabels(Labels value) {
    residualLabels_ = std::move(value);
    Q_EMIT residualLabelsChanged();
}

void HistoryStore::setCoefficientLabels(Labels value) {
    coefficientLabels_ = std::move(value);
    Q_EMIT coefficientLabelsChanged();
}

void HistoryStore::setHasData(bool value) {
    hasData_ = value;
    Q_EMIT hasDataChanged();
}

void HistoryStore::reset() {
    setResiduals({});
    setCoefficients({});
    setResidualLabels({});
    setCoefficientLabels({});
    setHasData(false);
}

std::optional<std::int64_t> HistoryStore::latestIteration() const {
    std::optional<std::int64_t> latest;
    for (const Points* points : {&residuals_, &coefficients_}) {
        if (!points->empty()) {
            latest = std::max(latest.value_or(points->back().iter), points->back().iter);
        }
    }
    return latest;
}

std::vector<HistoryStore::LatestValue> HistoryStore::latestCoefficients() const {
    // A dozen series at most: a plain list is searched faster than any map.
    std::vector<const HistoryPoint*> newest;
    for (const HistoryPoint& point : coefficients_) {
        const auto known = std::find_if(newest.begin(), newest.end(),
            [&point](const HistoryPoint* other) { return other->label == point.label; });
        if (known == newest.end()) {
            newest.push_back(&point);
        } else if (point.iter > (*known)->iter) {
            *known = &point;
        }
    }
    std::vector<LatestValue> result;
    for (const std::string& label : coefficientLabels_) {
        const auto known = std::find_if(newest.begin(), newest.end(),
            [&label](const HistoryPoint* point) { return point->label.string() == label; });
        if (known != newest.end()) {
            result.emplace_back(label, (*known)->value);
        }
    }
    return result;
}

std::optional<double> HistoryStore::latestValue(std::string_view label) const {
    const bool isCoefficient = std::find(coefficientLabels_.begin(), coefficientLabels_.end(),
                                   label) != coefficientLabels_.end();
    const Points& points = isCoefficient ? coefficients_ : residuals_;
    const auto found = std::find_if(points.rbegin(), points.rend(),
        [label](const HistoryPoint& point) { return point.label.string() == label; });
    return found == points.rend() ? std::nullopt : std::optional(found->value);
}

} // namespace ostrella
