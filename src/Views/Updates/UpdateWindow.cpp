#include "Views/Updates/UpdateWindow.h"

#include "Models/Precondition.h"
#include "Views/Updates/UpdateWindowModel.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QScreen>
#include <QUrl>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace ostrella {

void useControlsModule();
void useSidebarModule();
void useUpdatesModule();

UpdateWindow::UpdateWindow(
    UpdateWindowModel& model, QQmlEngine& engine, QWindow& mainWindow, QObject* parent)
    : QObject(parent), model_(model), engine_(engine), mainWindow_(mainWindow) {
    connect(&model_, &UpdateWindowModel::stageChanged, this, &UpdateWindow::follow);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &UpdateWindow::follow);
    follow();
}

UpdateWindow::~UpdateWindow() = default;

void UpdateWindow::follow() {
    if (!model_.isShown()) {
        if (window_) {
            window_->hide();
        }
        isNew_ = true;
        wasAskedFor_ = false;
        return;
    }
    const bool isAskedFor = model_.session().userInitiated;
    // What came by itself may be asked for afterwards.
    const bool isAskedForNow = isAskedFor && !std::exchange(wasAskedFor_, isAskedFor);
    const bool isInFront = QGuiApplication::focusWindow() != nullptr;
    if (isAskedForNow || (isNew_ && isInFront)) {
        isNew_ = false;
        show();
    }
}

void UpdateWindow::bringToFront() {
    if (model_.isShown()) {
        isNew_ = false;
        show();
    }
}

void UpdateWindow::show() {
    if (!window_) {
        make();
    }
    if (!window_->isVisible()) {
        centre();
    }
    window_->show();
    window_->raise();
    window_->requestActivate();
}

void UpdateWindow::make() {
    useControlsModule();
    useSidebarModule();
    useUpdatesModule();
    QQmlComponent component(
        &engine_, QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/Updates/UpdateWindow.qml")));
    std::unique_ptr<QObject> made(component.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(&model_)}}));
    auto* window = qobject_cast<QQuickWindow*>(made.get());
    precondition(window != nullptr, "the update window's description is whole");
    static_cast<void>(made.release());
    window_.reset(window);
    // It grows with what it tells.
    connect(window, &QWindow::heightChanged, this, &UpdateWindow::keepOnScreen);
}

void UpdateWindow::centre() {
    const QRect around =
        mainWindow_.isVisible() ? mainWindow_.geometry() : window_->screen()->availableGeometry();
    QRect place(QPoint(), window_->size());
    place.moveCenter(around.center());
    window_->setPosition(onScreen(place));
}

void UpdateWindow::keepOnScreen() {
    const QPoint place = onScreen(window_->geometry());
    if (window_->isVisible() && place != window_->position()) {
        window_->setPosition(place);
    }
}

QPoint UpdateWindow::onScreen(const QRect& place) const {
    const QScreen* screen = mainWindow_.screen() ? mainWindow_.screen() : window_->screen();
    // With a frame like the main window's.
    const QRect room = screen->availableGeometry().marginsRemoved(mainWindow_.frameMargins());
    return {std::clamp(place.left(), room.left(),
                std::max(room.left(), room.left() + room.width() - place.width())),
        std::clamp(place.top(), room.top(),
            std::max(room.top(), room.top() + room.height() - place.height()))};
}

} // namespace ostrella
