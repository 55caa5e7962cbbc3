#pragma once

#include <QObject>
#include <QPoint>
#include <QQuickWindow>
#include <QRect>

#include <memory>

class QQmlEngine;

namespace ostrella {

class UpdateWindowModel;

/// Shows the update window while its model has something to tell, over the middle of the main
/// window. It is made when it is first needed. What the user has not asked for comes when the
/// application is in front, and not before. Main thread only.
class UpdateWindow final : public QObject {
    Q_OBJECT

public:
    /// All outlive it; the engine imports from ":/qt/qml".
    UpdateWindow(UpdateWindowModel& model, QQmlEngine& engine, QWindow& mainWindow,
        QObject* parent = nullptr);
    ~UpdateWindow() override;

    /// The user asks for updates while one may be on show.
    void bringToFront();
    /// Null before it was first needed.
    QQuickWindow* window() const { return window_.get(); }

private:
    void follow();
    void show();
    void make();
    void centre();
    void keepOnScreen();
    /// Where a window of this place and size lies whole on the main window's screen.
    QPoint onScreen(const QRect& place) const;

    UpdateWindowModel& model_;
    QQmlEngine& engine_;
    QWindow& mainWindow_;
    std::unique_ptr<QQuickWindow> window_;
    /// There has been nothing to tell since, so that what the user has closed stays closed.
    bool isNew_ = true;
    bool wasAskedFor_ = false;
};

} // namespace ostrella
