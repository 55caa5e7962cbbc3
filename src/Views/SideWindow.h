#pragma once

#include <QQuickWindow>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQmlEngine;

namespace ostrella {

/// A window beside the main one, such as the settings: made when it is first asked for, over the
/// middle of the main window, and kept when it is closed. Main thread only.
class SideWindow {
public:
    /// `description` is the window's QML, and `properties` what it is made with. Engine and main
    /// window outlive the object.
    SideWindow(
        QQmlEngine& engine, QQuickWindow& mainWindow, QUrl description, QVariantMap properties);
    ~SideWindow();

    /// Shows it, or brings it to the front.
    void show();
    void close();

    /// Null before it is shown for the first time.
    QQuickWindow* window() const { return window_.get(); }

private:
    void make();
    void place();

    QQmlEngine& engine_;
    QQuickWindow& mainWindow_;
    QUrl description_;
    QVariantMap properties_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace ostrella
