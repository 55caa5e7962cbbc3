#include "Views/Viewport/DropTarget.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>

namespace ostrella {

DropTarget::DropTarget(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemAcceptsDrops);
}

void DropTarget::setDelegate(STLDropDelegate* delegate) {
    if (delegate != delegate_) {
        delegate_ = delegate;
        Q_EMIT delegateChanged();
    }
}

void DropTarget::dragEnterEvent(QDragEnterEvent* event) {
    if (!delegate_) {
        event->ignore();
        return;
    }
    delegate_->dropEntered(event->mimeData()->urls());
    // Accepting is what keeps the drag's moves coming; those say whether it may be dropped.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void DropTarget::dragMoveEvent(QDragMoveEvent* event) {
    answer(*event);
}

void DropTarget::answer(QDropEvent& event) const {
    if (delegate_ && delegate_->dropUpdated()) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    } else {
        event.setDropAction(Qt::IgnoreAction);
        event.ignore();
    }
}

void DropTarget::dragLeaveEvent(QDragLeaveEvent*) {
    if (delegate_) {
        delegate_->dropExited();
    }
}

void DropTarget::dropEvent(QDropEvent* event) {
    if (delegate_ && delegate_->performDrop(event->mimeData()->urls())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}

} // namespace ostrella
