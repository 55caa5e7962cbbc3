#include "Views/Panel/ChartModel.h"

#include "Models/ChartSeries.h"
#include "Models/HistoryStore.h"
#include "Models/NumberFormatting.h"
#include "Views/Controls/Theme.h"
#include "Views/Format/ChartPalette.h"
#include "Views/Format/PanelText.h"
#include "Views/QStringOf.h"

#include <QVariantMap>
#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace ostrella {

ChartModel::ChartModel(const HistoryStore& history, Kind kind, QObject* parent)
    : QObject(parent), history_(history), kind_(kind), thinned_(1, zero()), update_(this, [this] {
          update();
      }) {
    const auto schedule = [this] { update_.schedule(); };
    if (isOfResiduals()) {
        note_ = qStringOf(PanelText::residualsNote);
        noteForms_ = note_;
        connect(&history, &HistoryStore::residualsChanged, this, schedule);
        connect(&history, &HistoryStore::residualLabelsChanged, this, schedule);
    } else {
        connect(&history, &HistoryStore::coefficientsChanged, this, schedule);
        connect(&history, &HistoryStore::coefficientLabelsChanged, this, schedule);
    }
    connect(&Theme::shared(), &Theme::changed, this, &ChartModel::updateColors);
}

double ChartModel::zero() const {
    return isOfResiduals() ? ChartTicks::zeroResidual : -std::numeric_limits<double>::infinity();
}

void ChartModel::setColumns(std::size_t columns) {
    if (columns == columns_) {
        return;
    }
    columns_ = columns;
    if (columns > 0) {
        thinned_ = ThinnedHistory(columns, zero());
        update();
    }
}

QString ChartModel::title() const {
    return qStringOf(isOfResiduals() ? PanelText::residualsTitle : PanelText::coefficientsTitle);
}

QString ChartModel::axisName() const {
    return qStringOf(isOfResiduals() ? PanelText::residualsAxisName : PanelText::coefficientsTitle);
}

QString ChartModel::seriesName() const {
    return qStringOf(PanelText::seriesName);
}

QColor ChartModel::color(std::size_t series) const {
    const Brand::Color& color = isOfResiduals()
                                    ? ChartPalette::color(ChartPalette::residuals, series)
                                    : ChartPalette::color(ChartPalette::coefficients, series);
    return Theme::shared().color(color);
}

QVariantList ChartModel::legend() const {
    QVariantList legend;
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        legend.push_back(QVariantMap{
            {QStringLiteral("label"), qStringOf(labels_[i])}, {QStringLiteral("color"), color(i)}});
    }
    return legend;
}

QVariantList ChartModel::ticks(const ChartAxis& axis) {
    QVariantList result;
    for (std::size_t i = 0; i < axis.ticks.size(); ++i) {
        result.push_back(
            QVariantMap{{QStringLiteral("at"), (axis.ticks[i] - axis.from) / (axis.to - axis.from)},
                {QStringLiteral("text"), qStringOf(axis.labels[i])}});
    }
    return result;
}

QString ChartModel::longestValue() const {
    const auto longest = std::max_element(values_.labels.begin(), values_.labels.end(),
        [](const std::string& a, const std::string& b) { return a.size() < b.size(); });
    return longest == values_.labels.end() ? QString() : qStringOf(*longest);
}

QString ChartModel::description() const {
    std::string result;
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        if (!lines_[i].points.empty()) {
            const ChartPoint& newest = lines_[i].points.back();
            result += fmt::format("{}{} {}, {} {:.0f}", result.empty() ? "" : "; ", labels_[i],
                NumberFormatting::fixed(newest.value, 4), PanelText::iterationName,
                newest.iteration);
        }
    }
    return qStringOf(result);
}

void ChartModel::update() {
    if (columns_ == 0) {
        return;
    }
    thinned_.update(isOfResiduals() ? history_.residuals() : history_.coefficients());
    updateLabels();
    updateLines();
    updateAxes();
    if (!isOfResiduals()) {
        updateNote();
    }
    Q_EMIT linesChanged();
}

void ChartModel::updateNote() {
    const auto latest = history_.latestCoefficients();
    QStringList forms;
    for (std::vector<std::string> labels = labels_; !labels.empty(); labels.pop_back()) {
        forms.push_back(qStringOf(ChartSeries::latestSummary(latest, labels)));
    }
    forms.removeDuplicates();
    note_ = forms.value(0);
    const QString all = forms.join(QChar(0x9C));
    if (std::exchange(noteForms_, all) != all) {
        Q_EMIT noteChanged();
    }
}

void ChartModel::updateLabels() {
    std::vector<std::string> labels =
        isOfResiduals() ? history_.residualLabels()
                        : ChartSeries::coefficientLabels(history_.coefficientLabels());
    if (labels != labels_) {
        labels_ = std::move(labels);
        Q_EMIT legendChanged();
    }
}

void ChartModel::updateLines() {
    lines_.assign(labels_.size(), {});
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        lines_[i].color = color(i);
        if (const ThinnedSeries* series = thinned_.series(labels_[i])) {
            lines_[i].points = series->points();
        }
    }
}

void ChartModel::updateAxes() {
    std::optional<ChartRange> range;
    std::optional<ChartRange> settled;
    for (const std::string& label : labels_) {
        if (const ThinnedSeries* series = thinned_.series(label)) {
            range = ChartTicks::joined(range, series->range());
            settled = ChartTicks::joined(settled, series->settledRange());
        }
    }
    const ChartRange all = thinned_.iterations().value_or(ChartRange{0, 1});
    ChartAxis iterations = ChartTicks::iterations(
        static_cast<std::int64_t>(all.min), static_cast<std::int64_t>(all.max));
    ChartAxis values =
        isOfResiduals() ? ChartTicks::residuals(range, settled) : ChartTicks::values(range);
    if (iterations != iterations_ || values != values_) {
        iterations_ = std::move(iterations);
        values_ = std::move(values);
        Q_EMIT axesChanged();
    }
}

void ChartModel::updateColors() {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        lines_[i].color = color(i);
    }
    Q_EMIT legendChanged();
    Q_EMIT linesChanged();
}

} // namespace ostrella
