#pragma once

#include <QQuickWindow>
#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQmlEngine;

namespace ostrella {

/// A window beside the main one, such as the settings: made when it is first asked for, and kept
/// when it is closed. Main thread only.
class SideWindow {
public:
    /// Where it comes up each time.
    enum class Place {
        overMainWindow, ///< its middle on that of the main window
        middleOfScreen, ///< of the screen that has the main window
    };

    /// `description` is the window's QML, and `properties` what it is made with. Engine and main
    /// window outlive the object.
    SideWindow(QQmlEngine& engine, QQuickWindow& mainWindow, Place place, QUrl description,
        QVariantMap properties);
    ~SideWindow();

    /// Shows it, or brings it to the front.
    void show();
    void close();

    /// Null before it is shown for the first time.
    QQuickWindow* window() const { return window_.get(); }

private:
    void make();
    void moveToPlace();

    QQmlEngine& engine_;
    QQuickWindow& mainWindow_;
    Place place_;
    QUrl description_;
    QVariantMap properties_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace ostrella
