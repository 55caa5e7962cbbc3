#pragma once

#include "Views/Viewport/STLDropDelegate.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// The part of the window that takes dropped files. A drag that is refused is followed all the
/// same, so that the user can be told why nothing will come of it.
class DropTarget : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        ostrella::STLDropDelegate* delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)

public:
    explicit DropTarget(QQuickItem* parent = nullptr);

    STLDropDelegate* delegate() const { return delegate_; }
    void setDelegate(STLDropDelegate* delegate);

Q_SIGNALS:
    void delegateChanged();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void answer(QDropEvent& event) const;

    QPointer<STLDropDelegate> delegate_;
};

} // namespace ostrella
