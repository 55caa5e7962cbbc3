#pragma once

#include "Update/UpdateAlert.h"
#include "Views/Chrome/WindowModel.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace ostrella {

class DesktopAppearance;
class OstrellaApp;
class UpdateController;
class ViewportItem;

/// What the windows beside the main one tell of.
struct PackageFacts {
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
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
    ViewportItem* viewport_ = nullptr;
    bool isFitted_ = false;
};

} // namespace ostrella
