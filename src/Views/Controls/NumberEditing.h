#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// What a number field shows of a value, and what it makes of a text, for QML.
class NumberEditing final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The value within the range, with `fewest` to `most` digits of fraction.
    Q_INVOKABLE static QString text(double value, double from, double to, int fewest, int most);
    /// Whether the text is a number.
    Q_INVOKABLE static bool isNumber(const QString& text);
    /// The value that a typed text stands for, within the range; `before` where it is no number.
    Q_INVOKABLE static double value(const QString& text, double before, double from, double to);
    /// The value brought into the range: its lower bound where it isn't finite.
    Q_INVOKABLE static double inRange(double value, double from, double to);
};

} // namespace ostrella
