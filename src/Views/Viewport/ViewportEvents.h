#pragma once

#include "Views/Viewport/ViewportInput.h"

#include <QPointF>
#include <Qt>

#include <optional>

class QHoverEvent;
class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QWheelEvent;

namespace ostrella {

/// The toolkit's events as the viewport takes them. Positions come in item points from the upper
/// left corner, and leave in view points from the lower left one.
namespace ViewportEvents {

Vec2 point(QPointF position, double viewHeight);
ViewportInput::Modifiers modifiers(Qt::KeyboardModifiers modifiers);

/// A press, a move or a release. `clickCount` is that of a press.
ViewportInput::Pointer pointer(const QMouseEvent& event, double viewHeight, int clickCount = 1);
/// A move without a button.
ViewportInput::Pointer pointer(const QHoverEvent& event, double viewHeight);

/// Whether the window system has turned a vertical scroll into a horizontal one because Alt is
/// held, as Qt does on X11.
bool altTurnsScrolls();
/// Points where the device really reports points: on X11 a wheel's notches come as such, too.
ViewportInput::Scroll scroll(const QWheelEvent& event, bool turnedByAlt = altTurnsScrolls());

/// Nothing for a gesture other than a pinch.
std::optional<ViewportInput::Pinch> pinch(const QNativeGestureEvent& event);

ViewportInput::Key key(const QKeyEvent& event);

Qt::CursorShape shape(ViewportInput::Cursor cursor);

} // namespace ViewportEvents

} // namespace ostrella
