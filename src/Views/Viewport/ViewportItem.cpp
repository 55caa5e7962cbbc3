#include "Views/Viewport/ViewportItem.h"

#include "Models/MainThread.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Platform/SystemFacts.h"
#include "Platform/WindowCover.h"
#include "Rendering/OffscreenPicture.h"
#include "Rendering/RhiError.h"
#include "Views/Viewport/FrontmostItem.h"
#include "Views/Viewport/ViewportEvents.h"

#include <QCursor>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QThread>
#include <QtQml>

#include <chrono>
#include <cmath>
#include <utility>

namespace ostrella {

namespace {

QString needsBetterDevice() {
    const std::string_view words = SystemFacts::words().requiredGraphics;
    return QString::fromUtf8(words.data(), qsizetype(words.size()));
}

} // namespace

ViewportItem::ViewportItem(QQuickItem* parent) : QQuickItem(parent), pacer_([this] { update(); }) {
    setFlag(ItemHasContents);
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    // A parent's window has come while this was a mere item.
    watch(window());
}

ViewportItem::~ViewportItem() {
    watch(nullptr);
}

double ViewportItem::mediaTime() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void ViewportItem::setModel(
    SimulationParameters& parameters, RenderSettings& settings, MetalRenderer::MediaClock clock) {
    dropModel();
    coordinator_ = std::make_unique<ViewportCoordinator>(parameters, settings, clock);
    clock_ = std::move(clock);
    modelGone_ = {connect(&parameters, &QObject::destroyed, this, &ViewportItem::dropModel),
        connect(&settings, &QObject::destroyed, this, &ViewportItem::dropModel)};
    connectView();
    followSize();
    update();
}

void ViewportItem::connectView() {
    ArcBallMTKView& view = coordinator_->view();
    view.onRedraw = [this] { update(); };
    view.onPausedChanged = [this](bool) { followVisibility(); };
    view.onCursor = [this](
                        ViewportInput::Cursor cursor) { setCursor(ViewportEvents::shape(cursor)); };
    view.onFirstResponder = [this] { forceActiveFocus(Qt::MouseFocusReason); };
    view.isFrontmost = [this](Vec2 point) {
        if (window() == nullptr)
            return true;
        QQuickItem& root = *window()->contentItem();
        const QPointF place = mapToItem(&root, QPointF(point.x, height() - point.y));
        const QQuickItem* found = frontmostItem(root, place);
        return found == this || (found != nullptr && isAncestorOf(found));
    };
    coordinator_->capture = [this](int width, int height,
                                const ViewportCoordinator::SnapshotCompletion& answer) {
        capture(width, height, answer);
    };
}

void ViewportItem::dropModel() {
    if (!coordinator_)
        return;
    for (const QMetaObject::Connection& connection : modelGone_)
        disconnect(connection);
    // At once: an update that is still queued would look for what is gone.
    coordinator_.reset();
    unsetCursor();
    followVisibility();
    update();
}

QSize ViewportItem::pixelSize() const {
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
    return {static_cast<int>(std::lround(width() * ratio)),
        static_cast<int>(std::lround(height() * ratio))};
}

void ViewportItem::followSize() {
    if (!coordinator_)
        return;
    const QSize pixels = pixelSize();
    MetalRenderer& renderer = coordinator_->renderer();
    const float heightBefore = renderer.viewSizePoints().y;
    renderer.drawableSizeWillChange(
        {static_cast<float>(pixels.width()), static_cast<float>(pixels.height())},
        {static_cast<float>(width()), static_cast<float>(height())});
    coordinator_->view().viewResized(heightBefore);
    coordinator_->view().changed();
    followVisibility();
    update();
}

bool ViewportItem::isShown() const {
    return watched_ && watched_->isExposed() && isVisible() && !pixelSize().isEmpty() &&
           !watched_->windowStates().testFlag(Qt::WindowMinimized) && !cover_->isCovered();
}

void ViewportItem::followVisibility() {
    const bool moves = coordinator_ && !coordinator_->view().isPaused();
    pacer_.setRunning(moves && isShown());
    // What comes to rest is drawn as finely as anything else.
    if (!pacer_.isRunning() && samples_ < RhiTarget::preferredSamples)
        update();
}

void ViewportItem::frameWasSwapped() {
    if (!std::exchange(hasDrawn_, false))
        return;
    if (pacer_.isRunning())
        detail_.frameTook(std::chrono::steady_clock::now() - frameBegan_);
    if (coordinator_)
        coordinator_->view().agreeWithRenderer();
    pacer_.frameWasDrawn();
}

void ViewportItem::watch(QQuickWindow* window) {
    if (watched_ == window)
        return;
    if (watched_) {
        watched_->removeEventFilter(this);
        disconnect(watched_, nullptr, this, nullptr);
    }
    cover_.reset();
    watched_ = window;
    if (window != nullptr) {
        window->installEventFilter(this);
        cover_ = std::make_unique<WindowCover>(*window, [this] { followVisibility(); });
        connect(window, &QQuickWindow::frameSwapped, this, &ViewportItem::frameWasSwapped);
        connect(window, &QWindow::windowStateChanged, this, &ViewportItem::followVisibility);
        // Without a listener it would be the end of the process.
        connect(window, &QQuickWindow::sceneGraphError, this,
            [this] { setDeviceProblem(needsBetterDevice()); });
    }
    followSize();
    followVisibility();
}

bool ViewportItem::eventFilter(QObject* watched, QEvent* event) {
    if (watched == watched_ && event->type() == QEvent::Expose)
        followVisibility();
    // Who hides a window gets no more of the pointer, and no release.
    if (watched == watched_ && event->type() == QEvent::Hide)
        ungrabMouse();
    return QQuickItem::eventFilter(watched, event);
}

void ViewportItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange) {
        watch(data.window);
    } else if (change == ItemDevicePixelRatioHasChanged) {
        followSize();
    } else if (change == ItemVisibleHasChanged) {
        if (!isVisible())
            mouseUngrabEvent();
        followVisibility();
    }
}

void ViewportItem::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    isFocusFromKeys_ =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    Q_EMIT showsFocusChanged();
}

void ViewportItem::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    Q_EMIT showsFocusChanged();
}

void ViewportItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        followSize();
}

void ViewportItem::setDeviceProblem(const QString& problem) {
    if (problem == std::exchange(deviceProblem_, problem))
        return;
    Q_EMIT deviceProblemChanged();
}

void ViewportItem::frameHasFailed(const QString& problem) {
    setDeviceProblem(problem);
    // What the device was to draw into holds no picture.
    frameFailed_ = true;
    update();
}

QSGNode* ViewportItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<ViewportNode*>(old);
    QRhi* rhi = ViewportNode::deviceOf(*window());
    const bool canDraw = rhi != nullptr && RhiScene::isSupported(*rhi);
    // On whichever thread this is, nobody is to be told in the middle of a frame.
    const auto report = [this](const QString& problem) {
        QMetaObject::invokeMethod(
            this, [this, problem] { setDeviceProblem(problem); }, Qt::QueuedConnection);
    };
    const QSize pixels = pixelSize();
    const bool hasFailed = std::exchange(frameFailed_, false);
    if (!canDraw || !coordinator_ || pixels.isEmpty() || hasFailed) {
        if (!canDraw)
            report(needsBetterDevice());
        delete node;
        return nullptr;
    }
    try {
        if (node == nullptr) {
            node = new ViewportNode(*window(), *rhi);
            node->onFailure = [this](const std::string& text) {
                QMetaObject::invokeMethod(
                    this, [this, text] { frameHasFailed(QString::fromStdString(text)); },
                    Qt::QueuedConnection);
            };
            node->onDrawn = [item = QPointer(this)] {
                if (item)
                    ++item->frameCount_;
            };
            node->onUnfinished = [item = QPointer(this)] {
                if (item)
                    QMetaObject::invokeMethod(item, &QQuickItem::update, Qt::QueuedConnection);
            };
            scene_ = node->scene();
            sceneDevice_ = rhi;
        }
        frameBegan_ = std::chrono::steady_clock::now();
        const bool mayBeCoarse = pacer_.isRunning() && !isAlwaysFine_;
        samples_ = mayBeCoarse ? detail_.samples() : RhiTarget::preferredSamples;
        MetalRenderer& renderer = coordinator_->renderer();
        FrameEncoding frame = renderer.draw();
        node->setPicture(
            {std::move(frame), renderer.buffers(), pixels, renderer.pointScale(), samples_},
            boundingRect());
        hasDrawn_ = true;
        if (!deviceProblem_.isEmpty())
            report({});
        return node;
    } catch (const RhiError& error) {
        report(QString::fromStdString(error.what()));
        delete node;
        return nullptr;
    }
}

void ViewportItem::capture(
    int width, int height, const ViewportCoordinator::SnapshotCompletion& answer) {
    QRhi* rhi = watched_ ? ViewportNode::deviceOf(*watched_) : nullptr;
    // A device belongs to the thread that draws the window.
    const bool canDraw = rhi != nullptr && rhi->thread() == QThread::currentThread() &&
                         !rhi->isRecordingFrame() && RhiScene::isSupported(*rhi);
    std::optional<QImage> image;
    if (canDraw) {
        MetalRenderer& renderer = coordinator_->renderer();
        try {
            // The window's own copies of the scene, where it has drawn before.
            std::shared_ptr<RhiScene> scene = sceneDevice_ == rhi ? scene_.lock() : nullptr;
            if (!scene)
                scene = std::make_shared<RhiScene>(*rhi);
            const Vec2 size(static_cast<float>(width), static_cast<float>(height));
            image = OffscreenPicture::render(*rhi, *scene, {width, height},
                renderer.encodeScene(size, clock_(), false), renderer.buffers(),
                renderer.pointScale());
        } catch (const RhiError& error) {
            qWarning("The viewport's picture could not be drawn: %s", error.what());
        }
    }
    MainThread::post([answer, image] { answer(image ? &*image : nullptr); });
}

bool ViewportItem::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture && coordinator_) {
        const auto& gesture = *static_cast<QNativeGestureEvent*>(event);
        ArcBallMTKView& view = coordinator_->view();
        // Items that lie above let pass what they do not know.
        const auto pinch = ViewportEvents::pinch(gesture);
        if (pinch && view.isFrontmost(ViewportEvents::point(gesture.position(), height()))) {
            view.magnify(*pinch);
            event->accept();
            return true;
        }
    }
    return QQuickItem::event(event);
}

void ViewportItem::mousePressEvent(QMouseEvent* event) {
    if (!coordinator_)
        return event->ignore();
    forceActiveFocus(Qt::MouseFocusReason);
    coordinator_->view().pressed(ViewportEvents::pointer(*event, height()));
}

void ViewportItem::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!coordinator_)
        return event->ignore();
    // The press that made it double has come by itself already, and is taken back.
    if (event->button() == Qt::LeftButton) {
        coordinator_->view().pointerLost();
        coordinator_->view().pressed(ViewportEvents::pointer(*event, height(), 2));
    }
}

void ViewportItem::mouseMoveEvent(QMouseEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().moved(ViewportEvents::pointer(*event, height()));
}

void ViewportItem::mouseReleaseEvent(QMouseEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().released(ViewportEvents::pointer(*event, height()));
}

void ViewportItem::mouseUngrabEvent() {
    if (coordinator_ && coordinator_->view().dragMode() != ArcBallMTKView::DragMode::none)
        coordinator_->view().pointerLost();
}

void ViewportItem::hoverEnterEvent(QHoverEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().cursorUpdate();
    coordinator_->view().moved(ViewportEvents::pointer(*event, height()));
}

void ViewportItem::hoverMoveEvent(QHoverEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().moved(ViewportEvents::pointer(*event, height()));
}

void ViewportItem::hoverLeaveEvent(QHoverEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().exited();
}

void ViewportItem::wheelEvent(QWheelEvent* event) {
    if (!coordinator_)
        return event->ignore();
    coordinator_->view().scrollWheel(ViewportEvents::scroll(*event));
    event->accept();
}

void ViewportItem::keyPressEvent(QKeyEvent* event) {
    event->ignore();
    if (!coordinator_)
        return;
    coordinator_->view().flagsChanged(ViewportEvents::modifiers(event->modifiers()));
    event->setAccepted(coordinator_->view().keyDown(ViewportEvents::key(*event)));
}

void ViewportItem::keyReleaseEvent(QKeyEvent* event) {
    event->ignore();
    if (coordinator_)
        coordinator_->view().flagsChanged(ViewportEvents::modifiers(event->modifiers()));
}

} // namespace ostrella
