#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// What steppers and factor sliders make of a step, and how they show their values, for QML.
class Stepping final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The value so many steps up, or down, held in the range.
    Q_INVOKABLE static int stepped(int value, int steps, int step, int from, int to);
    /// Whether that differs from the value.
    Q_INVOKABLE static bool canStep(int value, int steps, int step, int from, int to);
    Q_INVOKABLE static QString count(int value);

    Q_INVOKABLE static double steppedFactor(
        double value, int steps, double step, double from, double to);
    Q_INVOKABLE static double factorInRange(double value, double from, double to);
    /// The value at the nearest step.
    Q_INVOKABLE static double snappedFactor(double value, double step, double from, double to);
    Q_INVOKABLE static QString factor(double value);
};

} // namespace ostrella
