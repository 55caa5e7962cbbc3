#pragma once

#include <QPoint>
#include <QPointF>
#include <Qt>

#include <cstdint>
#include <memory>
#include <vector>

class QWindow;

namespace ostrella::test {

class XServer;

/// How a button is used.
struct Gesture {
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers{}; ///< held from before the press until after the release
    int steps = 4;                     ///< moves from the one end to the other
};

/// A user at the display server: it moves the one pointer, presses buttons and keys through the
/// server's test extension, and the application sees events that are no different from a person's.
/// Each call returns when the application has dealt with what it caused: a mark is sent after the
/// events, and it arrives behind them.
///
/// Positions are points of the window from its upper left corner; they may lie outside of it.
/// What is still held when the object goes is let go of. Throws std::runtime_error where there is
/// no X server or where it lacks the extension.
class RealInput {
public:
    /// Waits until `window`, which must be shown, is on the screen, and gives it the keyboard.
    explicit RealInput(QWindow& window);
    ~RealInput();
    RealInput(const RealInput&) = delete;
    RealInput& operator=(const RealInput&) = delete;

    // The pointer.
    void moveTo(QPointF point);
    /// In a straight line and in so many moves.
    void moveTo(QPointF point, int steps);
    void press(Qt::MouseButton button = Qt::LeftButton);
    void release(Qt::MouseButton button = Qt::LeftButton);
    /// Never half of a double click, however soon it comes.
    void click(QPointF point, Gesture gesture = {});
    /// A double click, however slow the machine.
    void doubleClick(QPointF point, Gesture gesture = {});
    /// A press that makes a double click with the click before it.
    void pressForDoubleClick(Qt::MouseButton button = Qt::LeftButton);
    void drag(QPointF from, QPointF to, Gesture gesture = {});

    // The wheel, where the pointer is. Up and left are positive.
    void wheel(int notches, Qt::KeyboardModifiers modifiers = {});
    void wheelSideways(int notches, Qt::KeyboardModifiers modifiers = {});

    // Keys: those that produce Latin-1 characters, and the usual named ones.
    void pressKey(Qt::Key key);
    void releaseKey(Qt::Key key);
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void hold(Qt::KeyboardModifiers modifiers);
    void letGo(Qt::KeyboardModifiers modifiers);

    // What the test extension cannot do is sent as the system's plugin would send it. Such events
    // come from a trackpad, where the pointer is.
    /// One stroke of two fingers, in points; positive: the content moves right and down.
    void scroll(QPoint pixels, Qt::KeyboardModifiers modifiers = {});
    /// A growth by so much, 0.1 for a tenth; negative brings the fingers together.
    void pinch(double magnification);

    /// Waits until the application has dealt with everything that the server had for it.
    void settle();

    /// A number for the picture of the pointer that the server shows: equal for equal pictures.
    std::uint64_t pointerPicture() const;

private:
    QPoint nativePoint(QPointF point) const;
    void turn(int button, int notches, Qt::KeyboardModifiers modifiers);

    QWindow& window_;
    std::unique_ptr<XServer> server_;
    QPointF position_;
    Qt::KeyboardModifiers modifiers_;
    std::vector<Qt::MouseButton> heldButtons_;
    std::vector<Qt::Key> heldKeys_;
};

} // namespace ostrella::test
