#pragma once

#include "Rendering/MetalRenderer.h"
#include "Views/Viewport/ViewportCoordinator.h"
#include "Views/Viewport/ViewportDetail.h"
#include "Views/Viewport/ViewportNode.h"
#include "Views/Viewport/ViewportPacer.h"

#include <QPointer>
#include <QQuickItem>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>

namespace ostrella {

class WindowCover;

/// The viewport as an item of a Qt Quick scene. It draws when something has changed, and follows an
/// animation at sixty frames a second as long as it can be seen. It wants the scene graph on the
/// main thread ("basic" render loop).
///
/// Nothing of it is drawn, and `deviceProblem` says why, where the scene graph has no device that
/// can run the scene's functions.
class ViewportItem : public QQuickItem {
    Q_OBJECT
    Q_PROPERTY(QString deviceProblem READ deviceProblem NOTIFY deviceProblemChanged)
    /// The item has the keyboard and got it by the keyboard.
    Q_PROPERTY(bool showsFocus READ showsFocus NOTIFY showsFocusChanged)

public:
    explicit ViewportItem(QQuickItem* parent = nullptr);
    ~ViewportItem() override;

    /// Seconds of a clock that never jumps.
    static double mediaTime();

    /// Shows these from now on. When one of them goes, the item is empty again. `clock` is for
    /// tests.
    void setModel(SimulationParameters& parameters, RenderSettings& settings,
        MetalRenderer::MediaClock clock = mediaTime);
    /// Null without a model.
    ViewportCoordinator* coordinator() const { return coordinator_.get(); }

    /// What the user reads where the scene cannot be drawn; empty where it can, or where that is
    /// not known yet.
    const QString& deviceProblem() const { return deviceProblem_; }

    /// How many frames of the scene were drawn for the window since the item was made. Frames of
    /// the window that show the scene as it was do not count.
    std::uint64_t frameCount() const { return frameCount_; }
    /// Samples a pixel of the latest frame, at most: fewer while an animation would be too slow.
    int samples() const { return samples_; }
    /// Draws every frame as finely as can be from now on, however long an animation's frames take.
    void drawFinely() { isAlwaysFine_ = true; }
    bool showsFocus() const { return hasActiveFocus() && isFocusFromKeys_; }
    /// The window can be seen, as far as the window system tells, and the item is shown in it.
    bool isShown() const;
    /// Frames follow one another by themselves.
    bool isAnimating() const { return pacer_.isRunning(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void deviceProblemChanged();
    void showsFocusChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void connectView();
    void dropModel();
    void watch(QQuickWindow* window);
    void followSize();
    /// Starts or stops the animation.
    void followVisibility();
    void frameWasSwapped();
    void setDeviceProblem(const QString& problem);
    /// The device had no room for a frame that it was to draw.
    void frameHasFailed(const QString& problem);
    void capture(int width, int height, const ViewportCoordinator::SnapshotCompletion& answer);
    QSize pixelSize() const;

    MetalRenderer::MediaClock clock_;
    std::unique_ptr<ViewportCoordinator> coordinator_;
    std::array<QMetaObject::Connection, 2> modelGone_;
    ViewportPacer pacer_;
    ViewportDetail detail_;
    int samples_ = RhiTarget::preferredSamples;
    std::chrono::steady_clock::time_point frameBegan_;
    QPointer<QQuickWindow> watched_;
    std::unique_ptr<WindowCover> cover_;
    QString deviceProblem_;
    std::uint64_t frameCount_ = 0;
    bool isFocusFromKeys_ = false;
    bool isAlwaysFine_ = false;
    bool hasDrawn_ = false;    ///< since the window's last swap
    bool frameFailed_ = false; ///< and nothing is to be shown until the next one
    // Of the node, if it is still there.
    std::weak_ptr<RhiScene> scene_;
    const QRhi* sceneDevice_ = nullptr;
};

} // namespace ostrella
