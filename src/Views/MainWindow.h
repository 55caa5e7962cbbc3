#pragma once

#include "Views/Chrome/WindowModel.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace ostrella {

class DesktopAppearance;
class OstrellaApp;
class ViewportItem;

/// The application's one window, with everything in it. It goes before the shared objects do.
/// Colours, size of text and motion follow the desktop. Main thread only.
class MainWindow final : public QObject {
    Q_OBJECT

public:
    /// The window is made hidden. `appearance` outlives it.
    MainWindow(OstrellaApp& app, const WindowModel::Surroundings& surroundings,
        const DesktopAppearance& appearance);
    ~MainWindow() override;

    /// What the application's views are given.
    static SharedObjects sharedObjects(OstrellaApp& app);

    WindowModel& model() { return model_; }
    QQuickWindow& window() { return *window_; }
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
    /// Once, so that title bar and border do not push the content off a small screen.
    void fitFrameIntoScreen();

    WindowModel model_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
    ViewportItem* viewport_ = nullptr;
    bool isFitted_ = false;
};

} // namespace ostrella
