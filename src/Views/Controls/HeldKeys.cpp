#include "Views/Controls/HeldKeys.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace ostrella {

HeldKeys::HeldKeys(QObject* parent) : QObject(parent) {
    qGuiApp->installEventFilter(this);
    // Let go of over another application's window, the key is not heard of.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this] { setAlt(false); });
}

bool HeldKeys::eventFilter(QObject*, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt) {
            setAlt(type == QEvent::KeyPress);
        }
    }
    return false;
}

void HeldKeys::setAlt(bool isHeld) {
    if (alt_ != isHeld) {
        alt_ = isHeld;
        Q_EMIT altChanged();
    }
}

} // namespace ostrella
