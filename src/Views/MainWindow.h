#pragma once

#include "Platform/AppBundle.h"
#include "Update/UpdateAlert.h"
#include "Views/About/AboutModel.h"
#include "Views/Chrome/WindowModel.h"
#include "Views/Settings/SettingsModel.h"
#include "Views/SideWindow.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <memory>
#include <string>

namespace ostrella {

class DesktopAppearance;
class OstrellaApp;
class UpdateController;
class ViewportItem;

/// What the windows beside the main one tell of.
struct PackageFacts {
    AppBundle bundle = AppBundle::main();
    /// Label of the graphics interface, as the log's first lines have it.
    std::string renderer = {};
    /// May be null; outlives the window.
    UpdateController* updates = nullptr;
};

/// The application's one window, with everything in it. It goes before the shared objects do.
/// Colours, size of text and motion follow the desktop. Main thread only.
class MainWindow final : public QObject {
    Q_OBJECT

public:
    /// The window is made hidden. `appearance` outlives it.
    MainWindow(OstrellaApp& app, const WindowModel::Surroundings& surroundings,
        const DesktopAppearance& appearance, const PackageFacts& package = {});
    ~MainWindow() override;

    /// What the application's views are given.
    static SharedObjects sharedObjects(OstrellaApp& app);

    /// Asks a question in the window, after what is still to be read there.
    void ask(const UpdateAlert& alert, std::function<void(bool first)> reply);

    WindowModel& model() { return model_; }
    QQuickWindow& window() { return *window_; }
    /// For windows beside it.
    QQmlEngine& engine() { return engine_; }
    ViewportItem& viewport() { return *viewport_; }

    void show();
    void hide();
    /// Brings it to the front. `token` is the desktop's permission to do so; may be empty.
    void raise(const QString& token = {});

    /// The windows beside this one: each is made once, and comes to the front when it is asked for
    /// again.
    void showSettings() { settings_->show(); }
    void showAbout() { about_->show(); }
    SideWindow& settings() { return *settings_; }
    SideWindow& about() { return *about_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The user has closed it.
    void closed();

private:
    WindowModel::Surroundings withDoors(
        WindowModel::Surroundings surroundings, UpdateController* updates);
    /// Once, so that title bar and border do not push the content off a small screen.
    void fitFrameIntoScreen();

    WindowModel model_;
    SettingsModel settingsModel_;
    AboutModel aboutModel_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
    ViewportItem* viewport_ = nullptr;
    std::unique_ptr<SideWindow> settings_;
    std::unique_ptr<SideWindow> about_;
    bool isFitted_ = false;
};

} // namespace ostrella
