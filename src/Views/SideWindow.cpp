#include "Views/SideWindow.h"

#include "Models/Precondition.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace ostrella {

namespace {

constexpr int layoutPasses = 4;

/// Gives everything its place, which would happen with the first frame only.
void layOut(QQuickItem& item) {
    for (QQuickItem* child : item.childItems()) {
        layOut(*child);
    }
    item.ensurePolished();
}

} // namespace

SideWindow::SideWindow(QQmlEngine& engine, QQuickWindow& mainWindow, Place place, QUrl description,
    QVariantMap properties)
    : engine_(engine),
      mainWindow_(mainWindow),
      place_(place),
      description_(std::move(description)),
      properties_(std::move(properties)) {}

SideWindow::~SideWindow() = default;

void SideWindow::make() {
    QQmlComponent component(&engine_, description_);
    window_.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(properties_)));
    precondition(window_ != nullptr, "the description of a window beside the main one is whole");
    // The engine's collector must leave it alone.
    QQmlEngine::setObjectOwnership(window_.get(), QQmlEngine::CppOwnership);
    window_->setTransientParent(&mainWindow_);
}

void SideWindow::show() {
    if (!window_) {
        make();
    }
    if (!window_->isVisible()) {
        // Its size is its content's, of which one part may wait for another.
        for (int pass = 0; pass < layoutPasses; ++pass) {
            // The window gives it that only when it is on the screen.
            window_->contentItem()->setSize(window_->size());
            layOut(*window_->contentItem());
        }
        moveToPlace();
        window_->show();
    }
    window_->raise();
    window_->requestActivate();
}

void SideWindow::close() {
    if (window_) {
        window_->close();
    }
}

void SideWindow::moveToPlace() {
    const QRect room = mainWindow_.screen()->availableGeometry();
    QRect frame(QPoint(), window_->size());
    frame.moveCenter(
        place_ == Place::overMainWindow ? mainWindow_.geometry().center() : room.center());
    // The title bar stays in reach.
    const QPoint farthest(
        room.x() + room.width() - frame.width(), room.y() + room.height() - frame.height());
    window_->setPosition(std::max(room.x(), std::min(frame.x(), farthest.x())),
        std::max(room.y(), std::min(frame.y(), farthest.y())));
}

} // namespace ostrella
