#include "Views/MainWindow.h"

#include "Models/Precondition.h"
#include "Ostrella/OstrellaApp.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/WindowFront.h"
#include "Update/UpdateController.h"
#include "Views/Controls/Theme.h"
#include "Views/ReducedMotion.h"
#include "Views/Viewport/ViewportItem.h"

#include <QEvent>
#include <QQuickStyle>
#include <QScreen>
#include <QUrl>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace ostrella {

void useControlsModule();
void useViewportModule();
void useSidebarModule();
void usePanelModule();
void useChromeModule();
void useSettingsModule();
void useAboutModule();

namespace {

void useModules() {
    useControlsModule();
    useViewportModule();
    useSidebarModule();
    usePanelModule();
    useChromeModule();
    useSettingsModule();
    useAboutModule();
}

void followAppearance(Theme& theme, const DesktopAppearance& appearance) {
    const auto follow = [&theme, &appearance] {
        theme.setDark(appearance.isDark());
        theme.setTextScale(appearance.textScale());
        theme.setReducedMotion(appearance.prefersReducedMotion());
    };
    QObject::connect(&appearance, &DesktopAppearance::isDarkChanged, &theme, follow);
    QObject::connect(&appearance, &DesktopAppearance::textScaleChanged, &theme, follow);
    QObject::connect(&appearance, &DesktopAppearance::prefersReducedMotionChanged, &theme, follow);
    follow();
}

} // namespace

MainWindow::MainWindow(OstrellaApp& app, const WindowModel::Surroundings& surroundings,
    const DesktopAppearance& appearance, const PackageFacts& package)
    : model_(sharedObjects(app), withDoors(surroundings, package.updates)),
      settingsModel_(
          app.appSettings, surroundings.preferences, package.bundle.information(), package.updates),
      aboutModel_({.bundle = package.bundle,
          .words = surroundings.words,
          .renderer = package.renderer,
          .openAddress = surroundings.openAddress,
          .updates = package.updates,
          .timers = surroundings.timers}) {
    useModules();
    followAppearance(Theme::shared(), appearance);
    // Of what the toolkit draws itself, such as its panels for files: this one has no colours of
    // its own.
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);

    engine_.addImportPath(QStringLiteral(":/qt/qml"));
    engine_.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model_)}});
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/Chrome/MainWindow.qml")));
    precondition(!engine_.rootObjects().isEmpty(), "the main window's description is whole");
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    precondition(window_ != nullptr, "the main window is a window");
    viewport_ = window_->findChild<ViewportItem*>();
    precondition(viewport_ != nullptr, "the main window has a viewport");
    const auto beside = [this](SideWindow::Place place, const char* description, QObject* model) {
        return std::make_unique<SideWindow>(engine_, *window_, place,
            QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/") + QLatin1String(description)),
            QVariantMap{{QStringLiteral("model"), QVariant::fromValue(model)}});
    };
    settings_ =
        beside(SideWindow::Place::overMainWindow, "Settings/SettingsView.qml", &settingsModel_);
    about_ = beside(SideWindow::Place::middleOfScreen, "About/AboutView.qml", &aboutModel_);
    window_->installEventFilter(this);
    followReducedMotion(*viewport_->coordinator(), appearance);
    if (package.updates) {
        connect(package.updates, &UpdateController::canCheckForUpdatesChanged, this,
            [this] { model_.commands()->scheduleRefresh(); });
    }
}

MainWindow::~MainWindow() {
    window_->removeEventFilter(this);
}

SharedObjects MainWindow::sharedObjects(OstrellaApp& app) {
    return {app.parameters, app.renderSettings, app.logStore, app.historyStore, app.appSettings,
        app.simulation, app.notifications, app.importer, app.samples};
}

void MainWindow::ask(const UpdateAlert& alert, std::function<void(bool first)> reply) {
    model_.ask(alert.message, alert.text, alert.firstButton, alert.secondButton, std::move(reply));
}

WindowModel::Surroundings MainWindow::withDoors(
    WindowModel::Surroundings surroundings, UpdateController* updates) {
    surroundings.showSettings = [this] { showSettings(); };
    surroundings.showAbout = [this] { showAbout(); };
    if (updates) {
        surroundings.checkForUpdates = [updates] { updates->checkForUpdates(); };
        surroundings.canCheckForUpdates = [updates] { return updates->canCheckForUpdates(); };
    }
    return surroundings;
}

void MainWindow::show() {
    window_->show();
}

void MainWindow::hide() {
    settings_->close();
    about_->close();
    window_->hide();
}

void MainWindow::raise(const QString& token) {
    if (!token.isEmpty()) {
        // The toolkit hands it to the window system with the request.
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    if (window_->windowStates().testFlag(Qt::WindowMinimized)) {
        // As it was before: one that filled the screen does so again.
        window_->setWindowStates(window_->windowStates() & ~Qt::WindowStates(Qt::WindowMinimized));
    }
    window_->raise();
    if (!WindowFront::ask(*window_)) {
        window_->requestActivate();
    }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_ && event->type() == QEvent::Close) {
        Q_EMIT closed();
    } else if (watched == window_ && event->type() == QEvent::Expose && window_->isExposed() &&
               !std::exchange(isFitted_, true)) {
        fitFrameIntoScreen();
    }
    return false;
}

void MainWindow::fitFrameIntoScreen() {
    // What the window manager puts around it is known no earlier.
    if (window_->frameMargins().isNull() || window_->windowStates() != Qt::WindowNoState) {
        return;
    }
    const QRect room = window_->screen()->availableGeometry();
    const QRect frame = window_->frameGeometry();
    const QSize margins = frame.size() - window_->size();
    const QSize size =
        window_->size().boundedTo(room.size() - margins).expandedTo(window_->minimumSize());
    const QPoint farthest(room.x() + room.width() - size.width() - margins.width(),
        room.y() + room.height() - size.height() - margins.height());
    // The title bar stays in reach where there is too little room.
    const QPoint place(std::max(room.x(), std::min(frame.x(), farthest.x())),
        std::max(room.y(), std::min(frame.y(), farthest.y())));
    if (size != window_->size()) {
        window_->resize(size);
    }
    if (place != frame.topLeft()) {
        window_->setFramePosition(place);
    }
}

} // namespace ostrella
