#pragma once

#include "Models/Vector.h"
#include "Rendering/MetalRenderer.h"
#include "Rendering/OrientationAxis.h"
#include "Rendering/OrientationRings.h"
#include "Views/Viewport/ViewportInput.h"

#include <functional>
#include <optional>

namespace ostrella {

/// Turns the events of the viewport into moves of the camera, into orient mode and into drags of
/// its rings, and decides when a frame is wanted. The item on the screen feeds it and draws; it
/// knows no toolkit itself. Main thread only.
class ArcBallMTKView {
public:
    using Cursor = ViewportInput::Cursor;
    enum class DragMode { none, orbit, pan, ring };

    /// Not owned; events without a renderer do nothing.
    MetalRenderer* renderer = nullptr;
    /// The user has orbited.
    std::function<void()> onOrbit;
    /// Orient mode was turned on or off here.
    std::function<void(bool)> onSelect;
    /// The model is to be turned about an axis by so many degrees.
    std::function<void(OrientationAxis, double)> onRotate;
    /// A drag of a ring has ended.
    std::function<void()> onRotateEnded;
    /// The item is to take the keyboard.
    std::function<void()> onFirstResponder;
    /// The pointer is to look like this while it is over the item.
    std::function<void(Cursor)> onCursor;
    /// One frame is wanted; only while paused.
    std::function<void()> onRedraw;
    /// Frames have to follow one another from now on (false), or come only when asked for (true).
    std::function<void(bool)> onPausedChanged;
    /// The item is what lies on top at this point; without it, always.
    std::function<bool(Vec2)> isFrontmost;
    /// Orienting is allowed now.
    bool canOrient = false;

    // Events, sorted by button here.
    void pressed(const ViewportInput::Pointer& event);
    /// A drag where a button is held, a mere move otherwise.
    void moved(const ViewportInput::Pointer& event);
    void released(const ViewportInput::Pointer& event);
    void exited();
    void scrollWheel(const ViewportInput::Scroll& event);
    void magnify(const ViewportInput::Pinch& event);
    /// True if the key was for the viewport.
    bool keyDown(ViewportInput::Key key);
    void flagsChanged(const ViewportInput::Modifiers& modifiers);
    /// The pointer has come in and takes the cursor that was last set.
    void cursorUpdate();
    /// The press under way will see no release: another window or item took the pointer.
    void pointerLost();
    /// The renderer's view has another size; `heightBefore` is that which it had, points. What is
    /// held stays held, and what the pointer has not moved is not moved.
    void viewResized(float heightBefore);

    void endRingDrag();
    /// What lies under the pointer; without a point it has left.
    void updateHover(std::optional<Vec2> point);

    /// Follows the renderer's wish for frames; to be called after each of them.
    void agreeWithRenderer();
    /// The same, and one frame if none follow by themselves.
    void changed();

    bool isPaused() const { return isPaused_; }
    DragMode dragMode() const { return dragMode_; }
    bool clickPending() const { return clickPending_; }
    const std::optional<OrientationRings::Drag>& ringDrag() const { return ringDrag_; }
    Cursor hoverCursor() const { return hoverCursor_; }

private:
    void mouseDown(const ViewportInput::Pointer& event);
    void mouseDragged(const ViewportInput::Pointer& event);
    void mouseUp(Vec2 point);
    void applyDrag(Vec2 point);
    void orbit(Vec2 delta);
    void zoom(float exponent);
    void click(Vec2 point);
    void leaveOrientMode();
    void rotate(double degrees);
    void setCursor(Cursor cursor);
    float viewHeight() const { return renderer->viewSizePoints().y; }

    std::optional<Vec2> lastPoint_;
    std::optional<Vec2> downPoint_;
    bool clickPending_ = false; ///< no drag has begun since the press
    DragMode dragMode_ = DragMode::none;
    std::optional<OrientationRings::Drag> ringDrag_;
    Cursor hoverCursor_ = Cursor::arrow;
    bool isPaused_ = true;
};

} // namespace ostrella
