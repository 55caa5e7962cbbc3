#pragma once

#include <QJSEngine>
#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// What a number field shows of a value, and what it makes of a text.
class NumberEditing final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The value with `fewest` to `most` digits of fraction, a point, and no grouping.
    Q_INVOKABLE static QString text(double value, int fewest, int most);
    /// Whether the text is a number.
    Q_INVOKABLE static bool isNumber(const QString& text);
    /// The number that the text says; not-a-number where it says none.
    Q_INVOKABLE static double number(const QString& text);
    /// The value brought into a range: the lower bound where it isn't finite.
    Q_INVOKABLE static double within(double value, double from, double to);
};

} // namespace ostrella
