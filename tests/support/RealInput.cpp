#include "support/RealInput.h"

#include "support/Wait.h"
#include "support/XServer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QPointingDevice>
#include <QStyleHints>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace ostrella::test {

namespace {

constexpr int wheelUp = 4;
constexpr int wheelDown = 5;
constexpr int wheelLeft = 6;
constexpr int wheelRight = 7;

int serverButton(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::MiddleButton:
        return 2;
    case Qt::RightButton:
        return 3;
    default:
        throw std::runtime_error("a mouse here has three buttons");
    }
}

constexpr std::array<std::pair<Qt::KeyboardModifier, Qt::Key>, 4> modifierKeys{
    {{Qt::ShiftModifier, Qt::Key_Shift}, {Qt::ControlModifier, Qt::Key_Control},
        {Qt::AltModifier, Qt::Key_Alt}, {Qt::MetaModifier, Qt::Key_Meta}}};

/// Numbered apart from the devices that the system has.
const QPointingDevice& trackpad() {
    static auto* device = [] {
        auto* made = new QPointingDevice(QStringLiteral("test trackpad"), 7001,
            QInputDevice::DeviceType::TouchPad, QPointingDevice::PointerType::Finger,
            QInputDevice::Capability::Position | QInputDevice::Capability::Scroll |
                QInputDevice::Capability::PixelScroll,
            5, 3, QString(), QPointingDeviceUniqueId(), QCoreApplication::instance());
        QWindowSystemInterface::registerInputDevice(made);
        return made;
    }();
    return *device;
}

void setDoubleClicks(bool happen) {
    constexpr int anHour = 3'600'000;
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(happen ? anHour : 0);
}

} // namespace

RealInput::RealInput(QWindow& window)
    : window_(window), server_(std::make_unique<XServer>(window.winId())) {
    if (!waitUntil([&] { return window.isExposed(); }))
        throw std::runtime_error("the window does not come to the screen");
    window.requestActivate();
    if (!waitUntil([&] { return window.isActive(); }))
        throw std::runtime_error("the window does not get the keyboard");
    setDoubleClicks(false);
    settle();
}

RealInput::~RealInput() {
    for (const Qt::MouseButton button : heldButtons_)
        server_->button(serverButton(button), false);
    for (const Qt::Key key : heldKeys_)
        server_->key(key, false);
}

QPoint RealInput::nativePoint(QPointF point) const {
    const QPointF pixels = point * window_.devicePixelRatio();
    return {static_cast<int>(std::lround(pixels.x())), static_cast<int>(std::lround(pixels.y()))};
}

void RealInput::moveTo(QPointF point) {
    server_->movePointer(nativePoint(point));
    position_ = point;
    settle();
}

void RealInput::moveTo(QPointF point, int steps) {
    const QPointF from = position_;
    for (int step = 1; step <= steps; ++step)
        moveTo(from + (point - from) * step / steps);
}

void RealInput::press(Qt::MouseButton button) {
    server_->button(serverButton(button), true);
    heldButtons_.push_back(button);
    settle();
}

void RealInput::release(Qt::MouseButton button) {
    server_->button(serverButton(button), false);
    std::erase(heldButtons_, button);
    settle();
}

void RealInput::click(QPointF point, Gesture gesture) {
    moveTo(point);
    hold(gesture.modifiers);
    press(gesture.button);
    release(gesture.button);
    letGo(gesture.modifiers);
}

void RealInput::doubleClick(QPointF point, Gesture gesture) {
    click(point, gesture);
    hold(gesture.modifiers);
    pressForDoubleClick(gesture.button);
    release(gesture.button);
    letGo(gesture.modifiers);
}

void RealInput::pressForDoubleClick(Qt::MouseButton button) {
    setDoubleClicks(true);
    press(button);
    setDoubleClicks(false);
}

void RealInput::drag(QPointF from, QPointF to, Gesture gesture) {
    moveTo(from);
    hold(gesture.modifiers);
    press(gesture.button);
    moveTo(to, gesture.steps);
    release(gesture.button);
    letGo(gesture.modifiers);
}

void RealInput::wheel(int notches, Qt::KeyboardModifiers modifiers) {
    turn(notches > 0 ? wheelUp : wheelDown, std::abs(notches), modifiers);
}

void RealInput::wheelSideways(int notches, Qt::KeyboardModifiers modifiers) {
    turn(notches > 0 ? wheelLeft : wheelRight, std::abs(notches), modifiers);
}

void RealInput::turn(int button, int notches, Qt::KeyboardModifiers modifiers) {
    hold(modifiers);
    for (int i = 0; i < notches; ++i) {
        server_->button(button, true);
        server_->button(button, false);
        settle();
    }
    letGo(modifiers);
}

void RealInput::pressKey(Qt::Key key) {
    server_->key(key, true);
    heldKeys_.push_back(key);
    settle();
}

void RealInput::releaseKey(Qt::Key key) {
    server_->key(key, false);
    std::erase(heldKeys_, key);
    settle();
}

void RealInput::type(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    hold(modifiers);
    pressKey(key);
    releaseKey(key);
    letGo(modifiers);
}

void RealInput::hold(Qt::KeyboardModifiers modifiers) {
    for (const auto& [modifier, key] : modifierKeys) {
        if (modifiers.testFlag(modifier))
            pressKey(key);
    }
    modifiers_ |= modifiers;
}

void RealInput::letGo(Qt::KeyboardModifiers modifiers) {
    for (const auto& [modifier, key] : modifierKeys) {
        if (modifiers.testFlag(modifier))
            releaseKey(key);
    }
    modifiers_ &= ~modifiers;
}

void RealInput::scroll(QPoint pixels, Qt::KeyboardModifiers modifiers) {
    hold(modifiers);
    const QPoint local = nativePoint(position_);
    const QPoint global = server_->onScreen(local);
    // With Alt held, the plugin for X turns every scroll aside.
    const QPoint delta = modifiers_.testFlag(Qt::AltModifier) ? pixels.transposed() : pixels;
    // Systems derive an angle from the points: eighths of a degree, twice the points.
    QWindowSystemInterface::handleWheelEvent(&window_, server_->time(), &trackpad(), local, global,
        delta, delta * 2, modifiers_, Qt::ScrollUpdate, Qt::MouseEventSynthesizedBySystem);
    settle();
    letGo(modifiers);
}

void RealInput::pinch(double magnification) {
    const QPoint local = nativePoint(position_);
    const QPoint global = server_->onScreen(local);
    const auto time = server_->time();
    QWindowSystemInterface::handleGestureEvent(
        &window_, time, &trackpad(), Qt::BeginNativeGesture, local, global, 2);
    QWindowSystemInterface::handleGestureEventWithRealValue(
        &window_, time, &trackpad(), Qt::ZoomNativeGesture, magnification, local, global, 2);
    QWindowSystemInterface::handleGestureEvent(
        &window_, time, &trackpad(), Qt::EndNativeGesture, local, global, 2);
    settle();
}

void RealInput::settle() {
    const auto mark = server_->sendMark();
    if (!waitUntil([&] { return server_->lastMark() == mark; }))
        throw std::runtime_error("the display server's events do not arrive");
    QWindowSystemInterface::flushWindowSystemEvents();
    // What was done at once may have queued more for the turns to come.
    for (int turns = 0; turns < 8; ++turns)
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

std::uint64_t RealInput::pointerPicture() const {
    return server_->pointerPicture();
}

} // namespace ostrella::test
