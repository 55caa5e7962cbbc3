#include "Views/ViewportInput/ViewportWindow.h"

namespace ostrella::test {
namespace {

/// The model turned by hand. All angles are those of whole points of the window, so that what is
/// expected is exact; a point's step is half a degree at the z ring.
class RingDragging : public ViewportWindow {
protected:
    double z() const { return parameters->rotationZ(); }
};

TEST_F(RingDragging, aPressTakesTheRingAndTurnsNothing) {
    takeZRing();
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
    EXPECT_EQ(rotation(), Vec3(0.0F));
    user->release();
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    EXPECT_TRUE(settings->orientMode()) << "it was no click";
}

TEST_F(RingDragging, theModelFollowsThePointerAroundTheRingsCentre) {
    takeZRing();
    user->moveTo(around(20));
    user->moveTo(around(37));
    EXPECT_NEAR(z(), angleTo(around(37)), 1e-3);
    EXPECT_NEAR(z(), 37, 0.5);
    EXPECT_EQ(parameters->rotationX(), 0);
    EXPECT_EQ(parameters->rotationY(), 0);
    EXPECT_NEAR(renderer().modelRotation().z, z() * 3.14159265 / 180, 1e-5);
    EXPECT_FALSE(cameraMoved());
    user->moveTo(around(-50));
    EXPECT_NEAR(z(), angleTo(around(-50)), 1e-3);
    user->release();
    user->moveTo(around(80));
    EXPECT_NEAR(z(), angleTo(around(-50)), 1e-3);
}

TEST_F(RingDragging, eachRingTurnsAboutItsAxis) {
    enterOrientMode();
    // The eye is on the positive side of every axis: turns look as they are.
    user->drag(onXRing, onXRing + QPointF(20, 6));
    EXPECT_GT(parameters->rotationX(), 5);
    EXPECT_EQ(parameters->rotationY(), 0);
    EXPECT_EQ(parameters->rotationZ(), 0);
    parameters->setRotationX(0);
    user->settle();
    user->drag(onYRing, onYRing + QPointF(-2, -20));
    EXPECT_GT(parameters->rotationY(), 5);
    EXPECT_EQ(parameters->rotationX(), 0);
    EXPECT_EQ(parameters->rotationZ(), 0);
}

TEST_F(RingDragging, fromBehindTheSenseOfTheTurnIsKeptOnTheScreen) {
    // Half a turn round the model: the eye is at −x and −z, so that the z axis points away.
    user->drag({40, 20}, {40 + 314, 20}, {.steps = 8});
    enterOrientMode();
    // Where the x ring was, the z ring's mirror image is: 45° from −x to −y and the like.
    user->moveTo(onXRing);
    ASSERT_EQ(renderer().hoveredRing, OrientationAxis::x);
    user->press();
    const QPointF end(166, 266);
    user->moveTo(end);
    // Counter-clockwise on the screen is a negative turn about an axis that points away.
    const auto angle = [](QPointF p) {
        return std::atan2(150 - p.y(), p.x() - 200) * 180 / 3.14159265358979;
    };
    EXPECT_NEAR(parameters->rotationX(), -(angle(end) - angle(onXRing)), 1e-2);
    EXPECT_LT(parameters->rotationX(), -5);
}

TEST_F(RingDragging, shiftSnapsToFifteenDegrees) {
    takeZRing();
    user->hold(Qt::ShiftModifier);
    ASSERT_LT(angleTo(around(7)), 7.5);
    user->moveTo(around(7));
    EXPECT_EQ(z(), 0);
    ASSERT_GT(angleTo(around(8.3)), 7.5);
    user->moveTo(around(8.3));
    EXPECT_NEAR(z(), 15, 1e-6);
    user->moveTo(around(24));
    EXPECT_NEAR(z(), 30, 1e-6);
    user->moveTo(around(-20));
    EXPECT_NEAR(z(), -15, 1e-6);
    EXPECT_FALSE(cameraMoved()) << "shift pans only where no ring is held";
}

TEST_F(RingDragging, shiftSnapsAtOnceAndLettingGoGivesTheRest) {
    takeZRing();
    user->moveTo(around(20));
    const double free = z();
    EXPECT_NEAR(free, angleTo(around(20)), 1e-3);
    user->hold(Qt::ShiftModifier);
    EXPECT_NEAR(z(), 15, 1e-6);
    user->letGo(Qt::ShiftModifier);
    EXPECT_NEAR(z(), free, 1e-5);
    user->hold(Qt::AltModifier);
    EXPECT_NEAR(z(), free, 1e-5) << "Alt does not snap";
}

TEST_F(RingDragging, aRingThatIsTakenTakesTheKeyboardToo) {
    KeyCounter field;
    field.setParentItem(window->contentItem());
    field.forceActiveFocus();
    settings->setOrientMode(true);
    user->settle();
    finishTweens();
    user->moveTo(onZRing);
    user->press();
    ASSERT_EQ(renderer().activeRing, OrientationAxis::z);
    user->moveTo(around(20));
    user->hold(Qt::ShiftModifier);
    EXPECT_NEAR(z(), 15, 1e-6);
}

TEST_F(RingDragging, theSnapIsOfTheDragAndNotOfTheModel) {
    takeZRing();
    parameters->setRotationZ(4);
    user->hold(Qt::ShiftModifier);
    user->moveTo(around(31));
    EXPECT_NEAR(z(), 34, 1e-6);
}

TEST_F(RingDragging, aRingTakenWithShiftHeldSnapsFromTheStart) {
    enterOrientMode();
    user->hold(Qt::ShiftModifier);
    user->moveTo(onZRing);
    user->press();
    ASSERT_EQ(renderer().activeRing, OrientationAxis::z);
    user->moveTo(around(11));
    EXPECT_NEAR(z(), 15, 1e-6);
}

TEST_F(RingDragging, onceRoundLeavesTheModelAsItWas) {
    takeZRing();
    for (int degrees = 30; degrees <= 360; degrees += 30)
        user->moveTo(around(degrees));
    EXPECT_NEAR(z(), 0, 1e-4);
}

TEST_F(RingDragging, halfATurnEitherWayIsOneHundredAndEighty) {
    takeZRing();
    user->hold(Qt::ShiftModifier);
    for (const int degrees : {-60, -120, -180})
        user->moveTo(around(degrees));
    EXPECT_NEAR(z(), 180, 1e-6);
}

TEST_F(RingDragging, atTheRingsCentreNothingTurns) {
    takeZRing();
    user->moveTo(ringCentre);
    EXPECT_EQ(z(), 0);
    user->moveTo(ringCentre + QPointF(3, 2));
    EXPECT_EQ(z(), 0) << "within four points of it neither";
    user->moveTo(around(70));
    EXPECT_NEAR(z(), angleTo(around(70)), 1e-3) << "the last place outside still counts";
}

TEST_F(RingDragging, aRingSeenEdgeOnIsPulledAlong) {
    settings->requestView(ViewPreset::front);
    user->settle();
    finishTweens();
    enterOrientMode();
    // Seen from −x the y ring is a level line through the middle, the z ring an upright one.
    user->moveTo({290, 150});
    ASSERT_EQ(renderer().hoveredRing, OrientationAxis::y);
    user->press();
    user->moveTo({290, 120});
    EXPECT_EQ(parameters->rotationY(), 0) << "across the line nothing happens";
    user->moveTo({330, 120});
    // At its nearest point the ring, taken with the radius of the ball around the model's box, is
    // 3.4239 − 1 radii away: 362.13 / 2.4239 = 149.40 points for a radian. To the right is +z, a
    // turn about y takes what is in front, at −x, there.
    EXPECT_NEAR(parameters->rotationY(), 40 / 149.40 * 180 / 3.14159265, 0.01);
    user->release();
}

TEST_F(RingDragging, aTurnToStraightUpKeepsTheRollInZ) {
    enterOrientMode();
    parameters->setRotationX(30);
    user->moveTo(onYRing);
    user->press();
    ASSERT_EQ(renderer().activeRing, OrientationAxis::y);
    user->hold(Qt::ShiftModifier);
    // A quarter turn counter-clockwise about the middle: from 127 to the right and 18 down to 18 to
    // the right and 127 up.
    user->moveTo({303, 73});
    user->moveTo({218, 23});
    EXPECT_NEAR(parameters->rotationY(), 90, 1e-6);
    // Rx(30) then Ry(90) is Ry(90) then Rz(−30): x and z cannot be told apart there.
    EXPECT_EQ(parameters->rotationX(), 0);
    EXPECT_NEAR(parameters->rotationZ(), -30, 1e-6);
}

TEST_F(RingDragging, goesOnOutsideOfTheWindowAndEndsThere) {
    takeZRing();
    user->moveTo({450, 350});
    user->moveTo({450, -20});
    EXPECT_NEAR(z(), angleTo({450, -20}), 1e-3);
    user->release();
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    const double reached = z();
    user->moveTo(onZRing);
    EXPECT_EQ(z(), reached);
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
}

TEST_F(RingDragging, theCameraBacksOffWhenATurnedModelNeedsIt) {
    load("simple_wing");
    settings->setReframeRequestID(QUuid::createUuid());
    user->settle();
    takeZRing();
    user->hold(Qt::ShiftModifier);
    user->moveTo(around(45));
    EXPECT_FALSE(cameraMoved()) << "not while the ring is held";
    user->release();
    finishTweens();
    EXPECT_GE(zoomed(), 1.0F) << "and never nearer";
}

TEST_F(RingDragging, anotherButtonDoesNotTakeARing) {
    enterOrientMode();
    user->moveTo(onZRing);
    user->press(Qt::RightButton);
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    user->moveTo(around(30));
    EXPECT_EQ(z(), 0);
    EXPECT_NE(renderer().camera.target, before.target) << "it pans";
    user->release(Qt::RightButton);
}

TEST_F(RingDragging, theWheelZoomsAndTheDragGoesOn) {
    takeZRing();
    user->moveTo(around(20));
    user->wheel(-1);
    EXPECT_NEAR(zoomed(), 1.1618342F, 1e-5);
    user->moveTo(around(40));
    EXPECT_NEAR(z(), angleTo(around(40)), 1e-3);
}

TEST_F(RingDragging, escapeEndsTheDragAndTheMode) {
    takeZRing();
    user->moveTo(around(20));
    const double reached = z();
    user->type(Qt::Key_Escape);
    EXPECT_FALSE(settings->orientMode());
    EXPECT_EQ(renderer().activeRing, std::nullopt);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    finishTweens();
    noteCamera();
    user->moveTo(around(50));
    EXPECT_EQ(z(), reached);
    EXPECT_FALSE(cameraMoved());
    user->moveTo(onBody);
    user->release();
    EXPECT_FALSE(settings->orientMode()) << "the release is no click";
}

} // namespace
} // namespace ostrella::test
