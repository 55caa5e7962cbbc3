#pragma once

#include "Views/Format/ChartThinning.h"
#include "Views/Format/ChartTicks.h"
#include "Views/Format/QueuedUpdate.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <string>
#include <vector>

namespace ostrella {

class HistoryStore;

/// One of the two convergence charts: its texts, its axes and its lines, thinned to what a screen
/// can show. While nobody looks, nothing is done.
class ChartModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel's model")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString note READ note NOTIFY noteChanged)
    /// The note, and then with its last part gone each, in the toolkit's way of giving several:
    /// with U+009C between.
    Q_PROPERTY(QString noteForms READ noteForms NOTIFY noteChanged)
    /// Maps of "label" and "color".
    Q_PROPERTY(QVariantList legend READ legend NOTIFY legendChanged)
    /// Maps of "at", the place on the axis from 0 to 1, and "text".
    Q_PROPERTY(QVariantList iterationTicks READ iterationTicks NOTIFY axesChanged)
    Q_PROPERTY(QVariantList valueTicks READ valueTicks NOTIFY axesChanged)
    Q_PROPERTY(QString longestValue READ longestValue NOTIFY axesChanged)
    /// As they are read out: the axis of values, the legend, and what the chart shows.
    Q_PROPERTY(QString axisName READ axisName CONSTANT)
    Q_PROPERTY(QString seriesName READ seriesName CONSTANT)
    Q_PROPERTY(QString description READ description NOTIFY linesChanged)

public:
    enum class Kind { residuals, coefficients };

    /// The line of one series, ascending in iterations.
    struct Line {
        QColor color;
        std::vector<ChartPoint> points;
    };

    ChartModel(const HistoryStore& history, Kind kind, QObject* parent = nullptr);

    /// A view looks on, this many device pixels wide; 0 for none.
    void setColumns(std::size_t columns);

    QString title() const;
    QString note() const { return note_; }
    QString noteForms() const { return noteForms_; }
    QVariantList legend() const;
    QVariantList iterationTicks() const { return ticks(iterations_); }
    QVariantList valueTicks() const { return ticks(values_); }
    QString longestValue() const;
    QString axisName() const;
    QString seriesName() const;
    QString description() const;

    /// In the order of the legend.
    const std::vector<Line>& lines() const { return lines_; }
    const ChartAxis& iterations() const { return iterations_; }
    const ChartAxis& values() const { return values_; }

Q_SIGNALS:
    void noteChanged();
    void legendChanged();
    void axesChanged();
    void linesChanged();

private:
    static QVariantList ticks(const ChartAxis& axis);
    bool isOfResiduals() const { return kind_ == Kind::residuals; }
    double zero() const;
    QColor color(std::size_t series) const;
    void update();
    void updateNote();
    void updateLabels();
    void updateLines();
    void updateAxes();
    void updateColors();

    const HistoryStore& history_;
    Kind kind_;
    std::size_t columns_ = 0;
    ThinnedHistory thinned_;
    std::vector<std::string> labels_;
    std::vector<Line> lines_;
    ChartAxis iterations_;
    ChartAxis values_;
    QString note_;
    QString noteForms_;
    QueuedUpdate update_;
};

} // namespace ostrella
