#include "Views/ViewportInput/ViewportWindow.h"

#include <numbers>

namespace ostrella::test {
namespace {

/// Drags that move the camera.
class Dragging : public ViewportWindow {
protected:
    void expectTarget(const Vec3& expected) const {
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(renderer().camera.target[axis], expected[axis], 2e-5);
    }
    bool turned() const { return azimuthMoved() != 0 || elevationMoved() != 0; }
};

TEST_F(Dragging, orbitsByAHundredthOfARadianForAPoint) {
    user->drag({50, 50}, {90, 70});
    EXPECT_NEAR(azimuthMoved(), -0.4F, 1e-5);
    EXPECT_NEAR(elevationMoved(), 0.2F, 1e-5) << "down on the screen shows more of the top";
    EXPECT_EQ(renderer().camera.target, before.target);
    EXPECT_EQ(renderer().camera.distance, before.distance);
}

TEST_F(Dragging, endsStraightAboveAndStraightBelow) {
    user->drag({50, 10}, {50, 250});
    EXPECT_EQ(renderer().camera.elevation, 1.57079625F);
    user->drag({50, 290}, {50, -150});
    EXPECT_EQ(renderer().camera.elevation, -1.57079625F);
}

TEST_F(Dragging, withinThreePointsIsAClick) {
    user->moveTo(onBody);
    user->press();
    user->moveTo(onBody + QPointF(3, 0));
    user->moveTo(onBody + QPointF(0, -3));
    EXPECT_FALSE(cameraMoved());
    user->release();
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(Dragging, byFourPointsAndBackIsNoClick) {
    user->moveTo(onBody);
    user->press();
    user->moveTo(onBody + QPointF(4, 0));
    EXPECT_NEAR(azimuthMoved(), -0.04F, 1e-6) << "the whole way counts";
    user->moveTo(onBody);
    user->release();
    EXPECT_NEAR(azimuthMoved(), 0, 1e-6);
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Dragging, withShiftOrAltPans) {
    for (const auto modifier : {Qt::ShiftModifier, Qt::AltModifier}) {
        renderer().camera = before;
        user->drag({50, 50}, {80, 70}, {.modifiers = modifier});
        expectTarget(targetAfter(-30, -20));
        EXPECT_FALSE(turned());
        EXPECT_EQ(renderer().camera.distance, before.distance);
    }
}

TEST_F(Dragging, changesBetweenOrbitAndPanWithTheModifier) {
    user->moveTo({50, 50});
    user->press();
    user->moveTo({70, 50});
    EXPECT_NEAR(azimuthMoved(), -0.2F, 1e-6);
    noteCamera();
    user->hold(Qt::ShiftModifier);
    EXPECT_FALSE(cameraMoved());
    user->moveTo({90, 50});
    EXPECT_FALSE(turned());
    EXPECT_NE(renderer().camera.target, before.target);
    noteCamera();
    user->letGo(Qt::ShiftModifier);
    user->moveTo({100, 50});
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
    EXPECT_EQ(renderer().camera.target, before.target);
    noteCamera();
    user->hold(Qt::AltModifier);
    user->moveTo({110, 60});
    EXPECT_FALSE(turned());
}

TEST_F(Dragging, withTheRightButtonAlwaysPans) {
    for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(),
             Qt::KeyboardModifiers(Qt::ShiftModifier), Qt::KeyboardModifiers(Qt::AltModifier)}) {
        renderer().camera = before;
        user->drag({50, 50}, {62, 38}, {.button = Qt::RightButton, .modifiers = modifiers});
        expectTarget(targetAfter(-12, 12));
        EXPECT_FALSE(turned());
    }
}

TEST_F(Dragging, withTheRightButtonMovesFromTheFirstPointOn) {
    user->drag(onBody, onBody + QPointF(2, 0), {.button = Qt::RightButton, .steps = 1});
    expectTarget(targetAfter(-2, 0));
    user->click(onBody, {.button = Qt::RightButton});
    EXPECT_FALSE(settings->orientMode()) << "nor is it a click";
}

TEST_F(Dragging, withTheMiddleButtonPansOrOrbitsWithShift) {
    user->drag({50, 50}, {62, 38}, {.button = Qt::MiddleButton});
    expectTarget(targetAfter(-12, 12));
    EXPECT_FALSE(turned());
    renderer().camera = before;
    user->drag({50, 50}, {60, 45}, {.button = Qt::MiddleButton, .modifiers = Qt::ShiftModifier});
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
    EXPECT_NEAR(elevationMoved(), -0.05F, 1e-6);
    EXPECT_EQ(renderer().camera.target, before.target);
    user->click(onBody, {.button = Qt::MiddleButton});
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Dragging, withTheMiddleButtonKeepsWhatItBeganAs) {
    user->moveTo({50, 50});
    user->press(Qt::MiddleButton);
    user->moveTo({60, 50});
    user->hold(Qt::ShiftModifier);
    user->moveTo({70, 50});
    expectTarget(targetAfter(-20, 0));
    EXPECT_FALSE(turned());
}

TEST_F(Dragging, goesOnOutsideOfTheWindowAndBack) {
    user->moveTo({390, 150});
    user->press();
    user->moveTo({440, 150});
    EXPECT_NEAR(azimuthMoved(), -0.5F, 1e-5);
    user->moveTo({440, 330});
    EXPECT_EQ(renderer().camera.elevation, 1.57079625F);
    user->moveTo({380, 330});
    EXPECT_NEAR(azimuthMoved(), 0.1F, 1e-5);
    user->release();
    noteCamera();
    user->moveTo({300, 200});
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Dragging, endsWithAReleaseOutsideOfTheWindow) {
    user->moveTo(onBody);
    user->press();
    user->moveTo(outside);
    user->release();
    noteCamera();
    user->moveTo(onBody);
    user->moveTo({100, 100});
    EXPECT_FALSE(cameraMoved());
    EXPECT_EQ(view().dragMode(), ArcBallMTKView::DragMode::none);
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Dragging, keepsItsCursor) {
    user->moveTo(besideBody);
    user->press();
    user->moveTo(onBody, 3);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->release();
    EXPECT_EQ(cursor(), Qt::PointingHandCursor) << "what is below it counts again";
}

TEST_F(Dragging, endsThePresetsMarkOnlyWithAnOrbit) {
    settings->requestView(ViewPreset::iso);
    user->settle();
    finishTweens();
    user->drag({50, 50}, {80, 70}, {.modifiers = Qt::ShiftModifier});
    user->drag({50, 50}, {80, 70}, {.button = Qt::RightButton});
    user->drag({50, 50}, {80, 70}, {.button = Qt::MiddleButton});
    user->wheel(1);
    user->scroll({0, 5});
    user->pinch(0.1);
    user->click(besideBody);
    EXPECT_TRUE(settings->viewPresetIsCurrent());
    user->drag({50, 50}, {55, 50});
    EXPECT_FALSE(settings->viewPresetIsCurrent());
}

TEST_F(Dragging, doubleClickFramesTheSceneInTheIsoPose) {
    user->drag({50, 50}, {120, 90});
    user->drag({50, 50}, {120, 90}, {.modifiers = Qt::AltModifier});
    user->wheel(3);
    ASSERT_TRUE(cameraMoved());
    user->doubleClick(besideBody);
    EXPECT_EQ(renderer().camera, before);
    EXPECT_NEAR(renderer().camera.azimuth, std::numbers::pi / 4, 1e-6);
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Dragging, doubleClickOnTheModelSelectsItWithItsFirstClickOnly) {
    user->drag({50, 50}, {120, 90});
    user->doubleClick(onBody);
    EXPECT_TRUE(settings->orientMode());
    finishTweens();
    EXPECT_EQ(renderer().camera, before) << "the whole model, in iso pose, and nothing after that";
}

TEST_F(Dragging, afterADoubleClickDoesNothingUntilTheRelease) {
    user->doubleClick(besideBody);
    user->press();
    user->release();
    noteCamera();
    // The second press of a double click, held and dragged.
    user->click(besideBody);
    user->pressForDoubleClick();
    ASSERT_EQ(view().dragMode(), ArcBallMTKView::DragMode::none);
    user->moveTo(onBody, 4);
    EXPECT_FALSE(cameraMoved());
    user->release();
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Dragging, doubleClickWithAnotherButtonIsNone) {
    user->drag({50, 50}, {120, 90});
    noteCamera();
    user->doubleClick(onBody, {.button = Qt::RightButton});
    user->doubleClick(onBody, {.button = Qt::MiddleButton});
    EXPECT_FALSE(cameraMoved());
    EXPECT_EQ(view().dragMode(), ArcBallMTKView::DragMode::none);
}

} // namespace
} // namespace ostrella::test
