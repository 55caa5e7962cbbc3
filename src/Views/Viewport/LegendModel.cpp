#include "Views/Viewport/LegendModel.h"

#include "Brand/ColorMap.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Views/QStringOf.h"

#include <QColor>
#include <QVariantMap>

#include <utility>

namespace ostrella {

LegendModel::LegendModel(const SharedObjects& shared, QObject* parent)
    : QObject(parent), shared_(shared) {
    refresh();
}

void LegendModel::refresh() {
    auto legend = ViewportFormat::legend(shared_.renderSettings.colormapEnabled(),
        shared_.renderSettings.streamlinesEnabled(), shared_.parameters.lastRunResult());
    const bool isAnother = legend && legend != legend_;
    if (isAnother || legend.has_value() != isShown_) {
        isShown_ = legend.has_value();
        if (isAnother) {
            legend_ = std::move(legend);
        }
        Q_EMIT changed();
    }
}

void LegendModel::setBarHeight(double height) {
    if (height != barHeight_) {
        barHeight_ = height;
        Q_EMIT changed();
    }
}

QString LegendModel::label() const {
    return legend_ ? qStringOf(legend_->label) : QString();
}

QString LegendModel::unit() const {
    return legend_ ? qStringOf(legend_->unit) : QString();
}

QString LegendModel::name() const {
    return legend_ ? qStringOf(ViewportFormat::legendName(*legend_)) : QString();
}

QString LegendModel::value() const {
    return legend_ ? qStringOf(ViewportFormat::legendValue(*legend_)) : QString();
}

QStringList LegendModel::ticks() const {
    QStringList ticks;
    if (legend_) {
        for (const std::string& tick : ViewportFormat::legendTickLabels(
                 legend_->min, legend_->max, ViewportFormat::legendTickCount(barHeight_))) {
            ticks.append(qStringOf(tick));
        }
    }
    return ticks;
}

QVariantList LegendModel::stops() const {
    QVariantList stops;
    for (const ColorMap::Stop& stop : ColorMap::turboStops) {
        stops.append(QVariantMap{{QStringLiteral("location"), stop.location},
            {QStringLiteral("color"), QColor::fromRgbF(stop.color.r, stop.color.g, stop.color.b)}});
    }
    return stops;
}

} // namespace ostrella
