#include "support/RealInput.h"
#include "support/Wait.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <QWindow>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrella::test {
namespace {

using testing::ElementsAre;

/// Notes the events that it is told of, in short words.
class NotingWindow final : public QWindow {
public:
    std::vector<std::string> notes;

    std::vector<std::string> take() { return std::exchange(notes, {}); }

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::NativeGesture) {
            const auto* gesture = static_cast<QNativeGestureEvent*>(event);
            if (gesture->gestureType() == Qt::ZoomNativeGesture)
                note("pinch " + std::to_string(gesture->value()).substr(0, 4));
        } else if (event->type() == QEvent::Enter) {
            note("enter");
        } else if (event->type() == QEvent::Leave) {
            note("leave");
        }
        return QWindow::event(event);
    }

    void mousePressEvent(QMouseEvent* event) override { mouse("press", *event); }
    void mouseReleaseEvent(QMouseEvent* event) override { mouse("release", *event); }
    void mouseMoveEvent(QMouseEvent* event) override { mouse("move", *event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { mouse("double", *event); }
    void wheelEvent(QWheelEvent* event) override {
        note("wheel " + pair(event->pixelDelta()) + " " + pair(event->angleDelta()) +
             shiftOf(event->modifiers()));
    }
    void keyPressEvent(QKeyEvent* event) override { note("key " + std::to_string(event->key())); }
    void keyReleaseEvent(QKeyEvent* event) override { note("up " + std::to_string(event->key())); }

private:
    static std::string pair(QPoint point) {
        return std::to_string(point.x()) + "," + std::to_string(point.y());
    }
    static std::string shiftOf(Qt::KeyboardModifiers modifiers) {
        return modifiers.testFlag(Qt::ShiftModifier) ? " shift" : "";
    }
    void mouse(const std::string& what, const QMouseEvent& event) {
        std::string text = what + " " + pair(event.position().toPoint());
        if (event.button() != Qt::NoButton)
            text += " button " + std::to_string(event.button());
        note(text + shiftOf(event.modifiers()));
    }
    void note(std::string text) { notes.push_back(std::move(text)); }
};

class RealInputAtAWindow : public testing::Test {
protected:
    RealInputAtAWindow() {
        window.setGeometry(100, 80, 400, 300);
        window.show();
        input.emplace(window);
        input->moveTo({-30, -30});
        window.notes.clear();
    }

    NotingWindow window;
    std::optional<RealInput> input;
};

TEST_F(RealInputAtAWindow, movesThePointerToPointsOfTheWindow) {
    input->moveTo({120, 70});
    input->moveTo({130, 80}, 2);
    EXPECT_THAT(window.take(), ElementsAre("enter", "move 120,70", "move 125,75", "move 130,80"));
    EXPECT_EQ(window.mapFromGlobal(QCursor::pos()), QPoint(130, 80));
    input->moveTo({-5, 80});
    EXPECT_THAT(window.take(), ElementsAre("leave"));
}

TEST_F(RealInputAtAWindow, pressesEachButton) {
    input->moveTo({50, 50});
    window.notes.clear();
    for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
        input->click({50, 50}, {.button = button});
    EXPECT_THAT(window.take(),
        ElementsAre("press 50,50 button 1", "release 50,50 button 1", "press 50,50 button 2",
            "release 50,50 button 2", "press 50,50 button 4", "release 50,50 button 4"));
}

TEST_F(RealInputAtAWindow, aHeldButtonIsFollowedOutsideOfTheWindow) {
    input->moveTo({50, 50});
    input->press();
    input->moveTo({-20, 60});
    EXPECT_EQ(window.notes.back(), "move -20,60");
    input->release();
    EXPECT_THAT(window.notes, testing::Contains("release -20,60 button 1"));
}

TEST_F(RealInputAtAWindow, onlyADoubleClickIsOne) {
    input->click({60, 60});
    window.notes.clear();
    input->click({60, 60});
    EXPECT_THAT(window.take(), ElementsAre("press 60,60 button 1", "release 60,60 button 1"));
    input->doubleClick({60, 60});
    EXPECT_THAT(window.take(),
        ElementsAre("press 60,60 button 1", "release 60,60 button 1", "press 60,60 button 1",
            "double 60,60 button 1", "release 60,60 button 1"));
}

TEST_F(RealInputAtAWindow, dragsWithModifiersHeld) {
    input->drag({10, 10}, {30, 20}, {.modifiers = Qt::ShiftModifier, .steps = 2});
    EXPECT_THAT(window.take(),
        ElementsAre("enter", "move 10,10", "key 16777248", "press 10,10 button 1 shift",
            "move 20,15 shift", "move 30,20 shift", "release 30,20 button 1 shift", "up 16777248"));
}

TEST_F(RealInputAtAWindow, turnsTheWheelByNotches) {
    input->moveTo({50, 50});
    window.notes.clear();
    input->wheel(2);
    input->wheel(-1);
    EXPECT_THAT(
        window.take(), ElementsAre("wheel 0,0 0,120", "wheel 0,0 0,120", "wheel 0,0 0,-120"));
    input->wheelSideways(1);
    input->wheelSideways(-1);
    EXPECT_THAT(window.take(), ElementsAre("wheel 0,0 120,0", "wheel 0,0 -120,0"));
    input->wheel(1, Qt::ShiftModifier);
    EXPECT_THAT(window.take(), ElementsAre("key 16777248", "wheel 0,0 0,120 shift", "up 16777248"));
}

TEST_F(RealInputAtAWindow, typesKeys) {
    input->type(Qt::Key_Escape);
    input->type(Qt::Key_B);
    EXPECT_THAT(window.take(), ElementsAre("key 16777216", "up 16777216", "key 66", "up 66"));
}

TEST_F(RealInputAtAWindow, strokesATrackpad) {
    input->moveTo({50, 50});
    window.notes.clear();
    input->scroll({0, -8}, Qt::ShiftModifier);
    EXPECT_THAT(
        window.take(), ElementsAre("key 16777248", "wheel 0,-8 0,-16 shift", "up 16777248"));
    input->scroll({3, -8});
    EXPECT_THAT(window.take(), testing::Contains("wheel 3,-8 6,-16"));
    input->pinch(0.25);
    EXPECT_THAT(window.take(), ElementsAre("pinch 0.25"));
}

TEST_F(RealInputAtAWindow, letsGoOfWhatIsHeldWhenItGoes) {
    input->moveTo({50, 50});
    input->press();
    input->hold(Qt::ShiftModifier);
    input.reset();
    EXPECT_TRUE(waitUntil([&] { return QGuiApplication::mouseButtons() == Qt::NoButton; }));
    EXPECT_TRUE(waitUntil([&] { return window.notes.back() == "up 16777248"; }));
}

TEST_F(RealInputAtAWindow, knowsThePictureOfThePointer) {
    input->moveTo({50, 50});
    window.setCursor(Qt::ArrowCursor);
    input->settle();
    const auto arrow = input->pointerPicture();
    window.setCursor(Qt::PointingHandCursor);
    input->settle();
    const auto hand = input->pointerPicture();
    EXPECT_NE(hand, arrow);
    window.setCursor(Qt::ArrowCursor);
    input->settle();
    EXPECT_EQ(input->pointerPicture(), arrow);
}

} // namespace
} // namespace ostrella::test
