#include "Views/Viewport/ArcBallMTKView.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

using ViewportInput::Button;
using ViewportInput::Key;
using ViewportInput::Pointer;

namespace {

/// A press that strays no further than this is still a click, points.
constexpr float clickReach = 3;
constexpr float orbitRadiansPerPoint = 0.01F;
constexpr float zoomPerScroll = 0.05F;
constexpr float nearestDistance = 0.001F;
/// Beyond any body; the squares of lengths stay finite.
constexpr float farthestDistance = 1e15F;

float length(Vec2 v) {
    return std::sqrt(v.x * v.x + v.y * v.y);
}

ArcBallMTKView::DragMode modeFor(const ViewportInput::Modifiers& modifiers) {
    return modifiers.pans() ? ArcBallMTKView::DragMode::pan : ArcBallMTKView::DragMode::orbit;
}

} // namespace

void ArcBallMTKView::pressed(const Pointer& event) {
    if (!renderer)
        return;
    renderer->cancelCameraTween();
    if (event.button == Button::left) {
        mouseDown(event);
    } else {
        const bool orbits = event.button == Button::other && event.modifiers.shift;
        lastPoint_ = event.point;
        dragMode_ = orbits ? DragMode::orbit : DragMode::pan;
    }
    changed();
}

void ArcBallMTKView::moved(const Pointer& event) {
    if (!renderer)
        return;
    if (event.buttons.left) {
        mouseDragged(event);
    } else if (event.buttons.any()) {
        applyDrag(event.point);
    } else if (!isFrontmost || isFrontmost(event.point)) {
        updateHover(event.point);
    }
}

void ArcBallMTKView::released(const Pointer& event) {
    if (!renderer)
        return;
    if (event.button == Button::left) {
        mouseUp(event.point);
    } else {
        lastPoint_.reset();
        dragMode_ = DragMode::none;
    }
}

void ArcBallMTKView::exited() {
    updateHover(std::nullopt);
}

void ArcBallMTKView::mouseDown(const Pointer& event) {
    if (event.clickCount == 2) {
        renderer->reframe(false);
        dragMode_ = DragMode::none;
        lastPoint_.reset();
        clickPending_ = false;
        return;
    }
    if (renderer->orientMode) {
        const auto axis = renderer->ringHit(event.point);
        const auto drag = axis ? renderer->beginRingDrag(*axis, event.point) : std::nullopt;
        if (drag) {
            ringDrag_ = drag;
            dragMode_ = DragMode::ring;
            renderer->activeRing = axis;
            renderer->hoveredRing = axis;
            setCursor(Cursor::closedHand);
            return;
        }
    }
    lastPoint_ = event.point;
    downPoint_ = event.point;
    clickPending_ = true;
    dragMode_ = modeFor(event.modifiers);
}

void ArcBallMTKView::mouseDragged(const Pointer& event) {
    if (dragMode_ == DragMode::ring) {
        if (ringDrag_)
            rotate(ringDrag_->move(event.point, event.modifiers.shift));
        return;
    }
    if (clickPending_) {
        if (downPoint_ && length(event.point - *downPoint_) <= clickReach)
            return;
        clickPending_ = false;
    }
    if (dragMode_ != DragMode::none) {
        dragMode_ = modeFor(event.modifiers);
        applyDrag(event.point);
    }
}

void ArcBallMTKView::mouseUp(Vec2 point) {
    // Also where another button took over in mid-drag: no ring stays taken without its button.
    if (ringDrag_)
        endRingDrag();
    else if (clickPending_)
        click(point);
    lastPoint_.reset();
    downPoint_.reset();
    clickPending_ = false;
    dragMode_ = DragMode::none;
    updateHover(point);
}

void ArcBallMTKView::pointerLost() {
    endRingDrag();
    lastPoint_.reset();
    downPoint_.reset();
    clickPending_ = false;
    dragMode_ = DragMode::none;
    updateHover(std::nullopt);
}

void ArcBallMTKView::viewResized(float heightBefore) {
    if (!renderer)
        return;
    // The pointer stays where it is below the upper edge, while points count from the lower one.
    const Vec2 shift(0.0F, viewHeight() - heightBefore);
    if (lastPoint_)
        *lastPoint_ += shift;
    if (downPoint_)
        *downPoint_ += shift;
    if (ringDrag_) {
        ringDrag_->last += shift;
        if (const auto drag = renderer->beginRingDrag(ringDrag_->axis, ringDrag_->last))
            ringDrag_->mode = drag->mode;
    }
}

void ArcBallMTKView::applyDrag(Vec2 point) {
    if (!lastPoint_)
        return;
    const Vec2 delta = point - *lastPoint_;
    if (dragMode_ == DragMode::orbit) {
        orbit(delta);
    } else if (dragMode_ == DragMode::pan) {
        renderer->camera.pan(delta.x, -delta.y, viewHeight());
    }
    lastPoint_ = point;
    changed();
}

void ArcBallMTKView::orbit(Vec2 delta) {
    ArcBallCamera& camera = renderer->camera;
    camera.azimuth -= orbitRadiansPerPoint * delta.x;
    camera.elevation = std::clamp(camera.elevation - orbitRadiansPerPoint * delta.y,
        -camera.elevationLimit, camera.elevationLimit);
    if (onOrbit)
        onOrbit();
}

void ArcBallMTKView::zoom(float exponent) {
    float& distance = renderer->camera.distance;
    distance = std::clamp(distance * std::exp(exponent), nearestDistance, farthestDistance);
}

void ArcBallMTKView::click(Vec2 point) {
    if (canOrient && renderer->modelHit(point)) {
        if (onFirstResponder)
            onFirstResponder();
        if (renderer->orientMode)
            return;
        renderer->orientMode = true;
        renderer->refitAfterOrienting();
        if (onSelect)
            onSelect(true);
        changed();
    } else if (renderer->orientMode) {
        leaveOrientMode();
        changed();
    }
}

void ArcBallMTKView::leaveOrientMode() {
    renderer->orientMode = false;
    renderer->hoveredRing.reset();
    renderer->activeRing.reset();
    if (onSelect)
        onSelect(false);
}

void ArcBallMTKView::endRingDrag() {
    if (!ringDrag_)
        return;
    ringDrag_.reset();
    dragMode_ = DragMode::none;
    if (renderer)
        renderer->activeRing.reset();
    if (onRotateEnded)
        onRotateEnded();
    changed();
}

void ArcBallMTKView::rotate(double degrees) {
    if (degrees == 0)
        return;
    if (onRotate)
        onRotate(ringDrag_->axis, degrees);
    changed();
}

void ArcBallMTKView::flagsChanged(const ViewportInput::Modifiers& modifiers) {
    if (renderer && dragMode_ == DragMode::ring && ringDrag_)
        rotate(ringDrag_->resnap(modifiers.shift));
}

bool ArcBallMTKView::keyDown(Key key) {
    if (key != Key::escape || !renderer || !renderer->orientMode)
        return false;
    endRingDrag();
    leaveOrientMode();
    updateHover(std::nullopt);
    changed();
    return true;
}

void ArcBallMTKView::scrollWheel(const ViewportInput::Scroll& event) {
    if (!renderer)
        return;
    renderer->cancelCameraTween();
    if (event.modifiers.pans()) {
        const Vec2 delta = ViewportInput::panDelta(event);
        renderer->camera.pan(delta.x, delta.y, viewHeight());
    } else {
        zoom(-zoomPerScroll * ViewportInput::zoomDelta(event));
    }
    changed();
}

void ArcBallMTKView::magnify(const ViewportInput::Pinch& event) {
    if (!renderer)
        return;
    renderer->cancelCameraTween();
    zoom(-event.magnification);
    changed();
}

void ArcBallMTKView::updateHover(std::optional<Vec2> point) {
    if (!renderer || dragMode_ != DragMode::none)
        return;
    Cursor cursor = Cursor::arrow;
    std::optional<OrientationAxis> ring;
    if (point && canOrient) {
        ring = renderer->ringHit(*point);
        if (ring)
            cursor = Cursor::openHand;
        else if (renderer->modelHit(*point))
            cursor = Cursor::pointingHand;
    }
    if (ring != renderer->hoveredRing) {
        renderer->hoveredRing = ring;
        changed();
    }
    if (cursor != hoverCursor_ || !point)
        setCursor(cursor);
}

void ArcBallMTKView::cursorUpdate() {
    setCursor(hoverCursor_);
}

void ArcBallMTKView::setCursor(Cursor cursor) {
    hoverCursor_ = cursor;
    if (onCursor)
        onCursor(cursor);
}

void ArcBallMTKView::agreeWithRenderer() {
    const bool paused = !renderer || !renderer->wantsContinuousRedraw();
    if (paused == isPaused_)
        return;
    isPaused_ = paused;
    if (onPausedChanged)
        onPausedChanged(paused);
}

void ArcBallMTKView::changed() {
    agreeWithRenderer();
    if (isPaused_ && onRedraw)
        onRedraw();
}

} // namespace ostrella
