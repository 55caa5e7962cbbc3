#include "Views/DocumentEvents.h"

#include <QCoreApplication>
#include <QFileOpenEvent>

namespace ostrella {

DocumentEvents::DocumentEvents(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool DocumentEvents::eventFilter(QObject* watched, QEvent* event) {
    if (watched != QCoreApplication::instance() || event->type() != QEvent::FileOpen) {
        return false;
    }
    Q_EMIT handedOver(static_cast<QFileOpenEvent*>(event)->url());
    return true;
}

} // namespace ostrella
