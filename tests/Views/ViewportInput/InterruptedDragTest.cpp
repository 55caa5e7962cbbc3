#include "Views/ViewportInput/ViewportWindow.h"

#include "support/Wait.h"

#include <QWindow>

#include <cmath>

namespace ostrella::test {
namespace {

using DragMode = ArcBallMTKView::DragMode;

/// What may come between a press and its release.
class InterruptedDrag : public ViewportWindow {
protected:
    void beginOrbit() {
        user->moveTo({100, 100});
        user->press();
        user->moveTo({110, 100});
        ASSERT_NEAR(azimuthMoved(), -0.1F, 1e-6);
        noteCamera();
    }

    void activateAnotherWindow() {
        other.setGeometry(540, 100, 120, 100);
        other.show();
        other.requestActivate();
        ASSERT_TRUE(waitUntil([&] { return other.isActive() && !window->isActive(); }));
    }

    /// Nothing is held any more: the pointer only hovers, and a new drag works from its own start.
    void expectNothingHeld() {
        EXPECT_EQ(view().dragMode(), DragMode::none);
        EXPECT_EQ(renderer().activeRing, std::nullopt);
        finishTweens();
        noteCamera();
        const Vec3 turned = rotation();
        user->moveTo({30, 30});
        user->moveTo({60, 40});
        EXPECT_FALSE(cameraMoved());
        EXPECT_EQ(rotation(), turned);
        user->drag({20, 20}, {30, 20});
        EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-5);
    }

    QWindow other;
};

TEST_F(InterruptedDrag, aRunThatStartsTakesTheRingAway) {
    takeZRing();
    user->moveTo(around(20));
    const Vec3 turned = rotation();
    parameters->setIsRunning(true);
    user->settle();
    EXPECT_FALSE(settings->orientMode());
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    finishTweens();
    noteCamera();
    user->moveTo(around(50));
    EXPECT_EQ(rotation(), turned);
    EXPECT_FALSE(cameraMoved()) << "nor does the drag become another";
    user->release();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aFileThatIsLoadedTakesTheRingAway) {
    takeZRing();
    parameters->setLoadingFileName("next.stl");
    user->moveTo(around(20));
    EXPECT_EQ(rotation(), Vec3(0.0F));
    EXPECT_FALSE(settings->orientMode());
    load("rounded_box");
    parameters->setLoadingFileName(std::nullopt);
    user->moveTo(around(40));
    EXPECT_EQ(rotation(), Vec3(0.0F));
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, anOrbitGoesOnWhenARunStarts) {
    beginOrbit();
    parameters->setIsRunning(true);
    user->moveTo({120, 100});
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aModelThatIsClearedTakesTheRingAway) {
    takeZRing();
    parameters->setMesh(std::nullopt);
    user->moveTo(around(20));
    EXPECT_EQ(rotation(), Vec3(0.0F));
    EXPECT_FALSE(settings->orientMode());
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, theModeTurnedOffElsewhereTakesTheRingAway) {
    takeZRing();
    settings->setOrientMode(false);
    user->moveTo(around(20));
    EXPECT_EQ(rotation(), Vec3(0.0F));
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    user->moveTo(onBody);
    user->release();
    EXPECT_FALSE(settings->orientMode()) << "the release is no click";
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aSecondButtonDoesNotLeaveTheFirstOnesDragBehind) {
    beginOrbit();
    user->press(Qt::RightButton);
    user->moveTo({115, 100});
    user->release(Qt::RightButton);
    user->moveTo({120, 100});
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aSecondButtonDoesNotLeaveTheRingTaken) {
    takeZRing();
    user->moveTo(around(20));
    user->press(Qt::RightButton);
    user->release();
    user->moveTo(around(40));
    user->release(Qt::RightButton);
    expectNothingHeld();
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(InterruptedDrag, aSecondButtonReleasedLastLeavesNothing) {
    user->moveTo(onBody);
    user->press(Qt::MiddleButton);
    user->press();
    user->release(Qt::MiddleButton);
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aResizeAloneMovesNothing) {
    beginOrbit();
    resizeTo(400, 420);
    user->moveTo({111, 100});
    user->moveTo({120, 100});
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
    EXPECT_EQ(elevationMoved(), 0) << "the pointer has not moved upward";
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aRingIsHeldOverAResize) {
    takeZRing();
    user->moveTo(around(20));
    const Vec3 turned = rotation();
    resizeTo(400, 360);
    user->moveTo(around(20) + QPointF(0, 1));
    user->moveTo(around(20));
    EXPECT_NEAR(rotation().z, turned.z, 0.5);
    // The middle of the rings is at (200, 180) now.
    user->moveTo({320, 180});
    const double level = rotation().z;
    user->moveTo({200, 60});
    EXPECT_NEAR(std::remainder(rotation().z - level, 360), 90, 1e-3);
    user->release();
    expectNothingHeld();
}

// A window that is no longer the active one gives up what it holds; a user who comes back to it
// must not find the camera at the pointer.
TEST_F(InterruptedDrag, anotherWindowThatComesToTheFrontEndsTheDrag) {
    beginOrbit();
    activateAnotherWindow();
    user->moveTo({120, 100});
    EXPECT_FALSE(cameraMoved());
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, anotherWindowThatComesToTheFrontEndsTheTurn) {
    takeZRing();
    user->hold(Qt::ShiftModifier);
    user->moveTo(around(20));
    ASSERT_NEAR(rotation().z, 15, 1e-5);
    activateAnotherWindow();
    user->letGo(Qt::ShiftModifier);
    user->moveTo(around(40));
    EXPECT_NEAR(rotation().z, 15, 1e-5);
    user->release();
    EXPECT_TRUE(settings->orientMode());
    expectNothingHeld();
}

TEST_F(InterruptedDrag, shiftThatIsReleasedInAnotherFieldCountsFromTheNextMove) {
    KeyCounter field;
    field.setParentItem(window->contentItem());
    takeZRing();
    user->hold(Qt::ShiftModifier);
    user->moveTo(around(20));
    ASSERT_NEAR(rotation().z, 15, 1e-5);
    field.forceActiveFocus();
    user->letGo(Qt::ShiftModifier);
    user->moveTo(around(24));
    EXPECT_NEAR(rotation().z, angleTo(around(24)), 1e-3);
}

TEST_F(InterruptedDrag, anItemThatTakesThePointerEndsTheDrag) {
    beginOrbit();
    item->ungrabMouse();
    user->moveTo({150, 100});
    EXPECT_FALSE(cameraMoved());
    user->release();
    expectNothingHeld();
}

TEST_F(InterruptedDrag, anItemThatTakesThePointerEndsTheTurn) {
    takeZRing();
    user->moveTo(around(20));
    const Vec3 turned = rotation();
    item->ungrabMouse();
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    user->moveTo(around(50));
    EXPECT_EQ(rotation(), turned);
    user->release();
    EXPECT_TRUE(settings->orientMode());
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aHiddenItemLetsGo) {
    takeZRing();
    item->setVisible(false);
    user->moveTo(around(40));
    EXPECT_EQ(rotation(), Vec3(0.0F));
    user->release();
    item->setVisible(true);
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aDisabledItemLetsGo) {
    beginOrbit();
    item->setEnabled(false);
    user->moveTo({150, 100});
    EXPECT_FALSE(cameraMoved());
    user->release();
    item->setEnabled(true);
    expectNothingHeld();
}

TEST_F(InterruptedDrag, aHiddenWindowLetsGo) {
    beginOrbit();
    window->hide();
    user->release();
    window->show();
    ASSERT_TRUE(waitUntil([&] { return window->isExposed(); }));
    expectNothingHeld();
}

TEST_F(InterruptedDrag, sharedObjectsThatGoLeaveAnEmptyItem) {
    takeZRing();
    parameters.reset();
    EXPECT_EQ(item->coordinator(), nullptr);
    user->moveTo(around(20));
    user->wheel(1);
    user->pinch(0.1);
    user->type(Qt::Key_Escape);
    user->release();
    user->click(onBody);
    EXPECT_FALSE(item->isAnimating());
    EXPECT_EQ(cursor(), Qt::ArrowCursor) << "no ring is held any more";
}

TEST_F(InterruptedDrag, aPressElsewhereIsNoDragHere) {
    other.setGeometry(540, 100, 120, 100);
    other.show();
    ASSERT_TRUE(waitUntil([&] { return other.isExposed(); }));
    const QPoint there = QPoint(560, 120) - window->position();
    user->moveTo(there);
    user->press();
    user->moveTo({100, 100});
    user->moveTo({150, 100});
    EXPECT_FALSE(cameraMoved());
    user->release();
    EXPECT_FALSE(settings->orientMode());
    expectNothingHeld();
}

} // namespace
} // namespace ostrella::test
