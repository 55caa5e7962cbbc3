#include "Views/Viewport/ViewportEvents.h"

#include <QGuiApplication>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>

namespace ostrella::ViewportEvents {

namespace {

ViewportInput::Button buttonOf(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return ViewportInput::Button::left;
    case Qt::RightButton:
        return ViewportInput::Button::right;
    default:
        return ViewportInput::Button::other;
    }
}

ViewportInput::Buttons buttonsOf(Qt::MouseButtons buttons) {
    const Qt::MouseButtons others = buttons & ~(Qt::LeftButton | Qt::RightButton);
    return {buttons.testFlag(Qt::LeftButton), buttons.testFlag(Qt::RightButton), bool(others)};
}

Vec2 vectorOf(QPoint point) {
    return {static_cast<float>(point.x()), static_cast<float>(point.y())};
}

/// A wheel stands still between its notches, while fingers touch and lift off.
bool countsPoints(const QWheelEvent& event) {
    const QPointingDevice* device = event.pointingDevice();
    return event.phase() != Qt::NoScrollPhase ||
           (device != nullptr && device->type() == QInputDevice::DeviceType::TouchPad);
}

} // namespace

Vec2 point(QPointF position, double viewHeight) {
    return {static_cast<float>(position.x()), static_cast<float>(viewHeight - position.y())};
}

ViewportInput::Modifiers modifiers(Qt::KeyboardModifiers modifiers) {
    return {modifiers.testFlag(Qt::ShiftModifier), modifiers.testFlag(Qt::AltModifier)};
}

ViewportInput::Pointer pointer(const QMouseEvent& event, double viewHeight, int clickCount) {
    ViewportInput::Pointer out;
    out.point = point(event.position(), viewHeight);
    out.button = buttonOf(event.button());
    out.buttons = buttonsOf(event.buttons());
    out.clickCount = clickCount;
    out.modifiers = modifiers(event.modifiers());
    return out;
}

ViewportInput::Pointer pointer(const QHoverEvent& event, double viewHeight) {
    ViewportInput::Pointer out;
    out.point = point(event.position(), viewHeight);
    out.modifiers = modifiers(event.modifiers());
    return out;
}

bool altTurnsScrolls() {
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

ViewportInput::Scroll scroll(const QWheelEvent& event, bool turnedByAlt) {
    QPoint pixels = countsPoints(event) ? event.pixelDelta() : QPoint();
    QPoint angle = event.angleDelta();
    if (turnedByAlt && event.modifiers().testFlag(Qt::AltModifier)) {
        pixels = pixels.transposed();
        angle = angle.transposed();
    }
    return {vectorOf(pixels), vectorOf(angle), modifiers(event.modifiers())};
}

std::optional<ViewportInput::Pinch> pinch(const QNativeGestureEvent& event) {
    if (event.gestureType() != Qt::ZoomNativeGesture)
        return std::nullopt;
    return ViewportInput::Pinch{static_cast<float>(event.value())};
}

ViewportInput::Key key(const QKeyEvent& event) {
    return event.key() == Qt::Key_Escape ? ViewportInput::Key::escape : ViewportInput::Key::other;
}

Qt::CursorShape shape(ViewportInput::Cursor cursor) {
    switch (cursor) {
    case ViewportInput::Cursor::pointingHand:
        return Qt::PointingHandCursor;
    case ViewportInput::Cursor::openHand:
        return Qt::OpenHandCursor;
    case ViewportInput::Cursor::closedHand:
        return Qt::ClosedHandCursor;
    case ViewportInput::Cursor::arrow:
        break;
    }
    return Qt::ArrowCursor;
}

} // namespace ostrella::ViewportEvents
