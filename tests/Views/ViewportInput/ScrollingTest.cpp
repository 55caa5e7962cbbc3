#include "Views/ViewportInput/ViewportWindow.h"

namespace ostrella::test {
namespace {

/// The wheel, the trackpad and the pinch.
class Scrolling : public ViewportWindow {
protected:
    Scrolling() { user->moveTo(besideBody); }

    void expectTarget(const Vec3& expected) const {
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(renderer().camera.target[axis], expected[axis], 2e-5);
        EXPECT_EQ(renderer().camera.distance, before.distance);
    }
};

// A notch of a wheel stands for three points of a trackpad: e^(−0.05 × 3) = 0.86070798.
TEST_F(Scrolling, awayFromTheUserWithAWheelComesNearerByAModestStep) {
    user->wheel(1);
    EXPECT_NEAR(zoomed(), 0.86070798F, 1e-5);
    EXPECT_EQ(azimuthMoved(), 0);
    EXPECT_EQ(renderer().camera.target, before.target);
    user->wheel(-1);
    EXPECT_NEAR(zoomed(), 1, 1e-5);
    user->wheel(-2);
    EXPECT_NEAR(zoomed(), 1.3498588F, 1e-5);
}

TEST_F(Scrolling, withATrackpadZoomsByEachPoint) {
    user->scroll({0, 10});
    EXPECT_NEAR(zoomed(), 0.60653066F, 1e-5);
    user->scroll({0, -10});
    EXPECT_NEAR(zoomed(), 1, 1e-5);
    user->scroll({0, 1});
    EXPECT_NEAR(zoomed(), 0.95122942F, 1e-5);
}

TEST_F(Scrolling, sidewaysAloneDoesNothing) {
    user->wheelSideways(1);
    user->scroll({25, 0});
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Scrolling, comesNoNearerThanAMillimetre) {
    for (int i = 0; i < 4; ++i)
        user->scroll({0, 100});
    EXPECT_EQ(renderer().camera.distance, 0.001F);
    user->wheel(1);
    EXPECT_EQ(renderer().camera.distance, 0.001F);
    EXPECT_EQ(renderer().camera.nearZ, before.nearZ);
    EXPECT_EQ(renderer().camera.farZ, before.farZ);
}

TEST_F(Scrolling, withShiftOrAltPans) {
    for (const auto modifier : {Qt::ShiftModifier, Qt::AltModifier}) {
        renderer().camera = before;
        user->scroll({12, -5}, modifier);
        expectTarget(targetAfter(-12, 5));
    }
}

// A notch pans by forty points.
TEST_F(Scrolling, withShiftOrAltPansAlsoWithAWheel) {
    for (const auto modifier : {Qt::ShiftModifier, Qt::AltModifier}) {
        renderer().camera = before;
        user->wheel(1, modifier);
        expectTarget(targetAfter(0, -40));
        user->wheel(-1, modifier);
        expectTarget(before.target);
        user->wheelSideways(1, modifier);
        expectTarget(targetAfter(-40, 0));
    }
}

TEST_F(Scrolling, withControlZoomsLikeWithout) {
    user->wheel(1, Qt::ControlModifier);
    EXPECT_NEAR(zoomed(), 0.86070798F, 1e-5);
}

TEST_F(Scrolling, followsAChangeOfTheModifier) {
    user->hold(Qt::ShiftModifier);
    user->scroll({0, 8});
    expectTarget(targetAfter(0, -8));
    user->letGo(Qt::ShiftModifier);
    user->scroll({0, 10});
    EXPECT_NEAR(zoomed(), 0.60653066F, 1e-5);
}

TEST_F(Scrolling, whileDraggingZoomsAndTheDragGoesOn) {
    user->press();
    user->moveTo(besideBody + QPointF(20, 0));
    user->wheel(1);
    EXPECT_NEAR(zoomed(), 0.86070798F, 1e-5);
    EXPECT_NEAR(azimuthMoved(), -0.2F, 1e-6);
    user->moveTo(besideBody + QPointF(30, 0));
    EXPECT_NEAR(azimuthMoved(), -0.3F, 1e-6);
}

TEST_F(Scrolling, betweenPressAndReleaseLeavesAClickAClick) {
    user->moveTo(onBody);
    user->press();
    user->wheel(1);
    user->release();
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(Scrolling, isForTheViewportOnlyWhereThePointerIs) {
    user->moveTo(outside);
    user->wheel(2);
    EXPECT_FALSE(cameraMoved());
}

// A growth by a tenth brings the eye nearer by e^(−0.1) = 0.90483742.
TEST_F(Scrolling, aPinchZooms) {
    user->pinch(0.1);
    EXPECT_NEAR(zoomed(), 0.90483742F, 1e-5);
    user->pinch(-0.1);
    EXPECT_NEAR(zoomed(), 1, 1e-5);
    EXPECT_EQ(azimuthMoved(), 0);
    EXPECT_EQ(renderer().camera.target, before.target);
}

} // namespace
} // namespace ostrella::test
