#pragma once

#include "Brand/Brand.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace ostrella {

/// Brand's colours and type for QML, in the appearance and the size of text that the desktop asks
/// for at the moment. There is one; whoever starts the window tells it what the desktop says.
class Theme final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    Q_PROPERTY(QColor accentPrimary READ accentPrimary NOTIFY changed)

public:
    /// The one of the process. Main thread only.
    static Theme& shared();
    /// For the engine: the same one.
    static Theme* create(QQmlEngine* engine, QJSEngine* scripts);

    bool isDark() const { return dark_; }
    void setDark(bool dark);

    QColor accentPrimary() const;

Q_SIGNALS:
    void changed();

private:
    Theme() = default;

    bool dark_ = true;
};

} // namespace ostrella
