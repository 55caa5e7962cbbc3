#pragma once

#include "Views/Format/ViewportFormat.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace ostrella {

/// The colour scale beside the scene, if one is on show. Main thread only.
class LegendModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the viewport's model")
    /// What it says stays when it goes.
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString label READ label NOTIFY changed)
    /// May be empty.
    Q_PROPERTY(QString unit READ unit NOTIFY changed)
    /// As they are read out.
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString value READ value NOTIFY changed)
    /// Height of the bar in points; the ticks follow it.
    Q_PROPERTY(double barHeight READ barHeight NOTIFY changed)
    /// From the top of the bar to its foot.
    Q_PROPERTY(QStringList ticks READ ticks NOTIFY changed)
    /// Maps with `location`, from 0 at the top to 1 at the foot, and `color`.
    Q_PROPERTY(QVariantList stops READ stops CONSTANT)

public:
    explicit LegendModel(const SharedObjects& shared, QObject* parent = nullptr);

    bool isShown() const { return isShown_; }
    QString label() const;
    QString unit() const;
    QString name() const;
    QString value() const;
    double barHeight() const { return barHeight_; }
    void setBarHeight(double height);
    QStringList ticks() const;
    QVariantList stops() const;

    /// Follows result and layers.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    SharedObjects shared_;
    bool isShown_ = false;
    std::optional<ViewportFormat::Legend> legend_; ///< the one on show, or the last that was
    double barHeight_ = 220;
};

} // namespace ostrella
