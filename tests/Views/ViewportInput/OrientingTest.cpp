#include "Views/ViewportInput/ViewportWindow.h"

#include <set>
#include <string>

namespace ostrella::test {
namespace {

/// Choosing the model, hovering, and the keyboard.
class Orienting : public ViewportWindow {};

TEST_F(Orienting, aClickOnTheModelEntersAndOneOnEmptySpaceLeaves) {
    user->click(onBody);
    EXPECT_TRUE(settings->orientMode());
    EXPECT_TRUE(renderer().orientMode);
    EXPECT_TRUE(item->hasActiveFocus()) << "the keyboard is the viewport's";
    finishTweens();
    user->click(besideBody);
    EXPECT_FALSE(settings->orientMode());
    EXPECT_FALSE(renderer().orientMode);
    user->click(besideBody);
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Orienting, aFurtherClickOnTheModelChangesNothing) {
    enterOrientMode();
    user->click(onBody);
    EXPECT_TRUE(settings->orientMode());
    EXPECT_FALSE(renderer().wantsContinuousRedraw());
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Orienting, aClickWithShiftIsAClick) {
    user->click(onBody, {.modifiers = Qt::ShiftModifier});
    EXPECT_TRUE(settings->orientMode());
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Orienting, theModelOfEverySampleCanBeChosen) {
    for (const char* sample : {"rounded_box", "simple_wing", "sphere"}) {
        load(sample);
        settings->setReframeRequestID(QUuid::createUuid());
        user->settle();
        user->click(onBody);
        EXPECT_TRUE(settings->orientMode()) << sample;
        finishTweens();
        user->click(besideBody);
        EXPECT_FALSE(settings->orientMode()) << sample;
    }
}

TEST_F(Orienting, aDragBesideTheRingsOrbitsAndStaysInTheMode) {
    enterOrientMode();
    user->drag(besideBody, {30, 10});
    EXPECT_NEAR(azimuthMoved(), -0.2F, 1e-5);
    EXPECT_TRUE(settings->orientMode());
    EXPECT_EQ(rotation(), Vec3(0.0F));
}

TEST_F(Orienting, isNotEnteredWhileARunOrALoadGoesOn) {
    parameters->setIsRunning(true);
    user->click(onBody);
    EXPECT_FALSE(settings->orientMode());
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    parameters->setIsRunning(false);
    parameters->setLoadingFileName("next.stl");
    user->click(onBody);
    EXPECT_FALSE(settings->orientMode());
    parameters->setLoadingFileName(std::nullopt);
    user->click(onBody);
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(Orienting, withoutAModelThereIsNothingToChoose) {
    parameters->setMesh(std::nullopt);
    user->moveTo(onBody);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->click(onBody);
    EXPECT_FALSE(settings->orientMode());
}

TEST_F(Orienting, theCursorTellsWhatLiesUnderIt) {
    user->moveTo(besideBody);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->moveTo(onBody);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    // The sphere's rim: its radius is 0.5774 of the ball around its box, whose cone reaches nine
    // tenths of the half height; seen from 2.8628 radii that is 362.13 × 0.5774 / √(2.8628² −
    // 0.5774²) = 74.6 points.
    user->moveTo(onBody + QPointF(0, 73));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo(onBody + QPointF(0, 77));
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Orienting, theRingsAreHoveredOnlyInTheMode) {
    user->moveTo(onZRing);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    enterOrientMode();
    const auto frames = item->frameCount();
    for (const auto& [point, ring] : {std::pair(onXRing, OrientationAxis::x),
             std::pair(onYRing, OrientationAxis::y), std::pair(onZRing, OrientationAxis::z)}) {
        user->moveTo(point);
        EXPECT_EQ(renderer().hoveredRing, ring);
        EXPECT_EQ(cursor(), Qt::OpenHandCursor);
        EXPECT_EQ(renderer().activeRing, std::nullopt);
    }
    EXPECT_TRUE(drawsMoreThan(frames));
    user->moveTo(besideBody);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Orienting, aRingCanBeTakenUpToSixPointsAway) {
    enterOrientMode();
    // The y ring's outermost point on the right is near (327, 168); it runs upright there.
    user->moveTo(onYRing + QPointF(5, 0));
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::y);
    user->moveTo(onYRing + QPointF(7, 0));
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
}

TEST_F(Orienting, ofTwoRingsTheNearerOneIsHovered) {
    enterOrientMode();
    // The x and the z ring cross at (200, 24.8). To the right of it the x ring runs above the z
    // ring, to the left below.
    user->moveTo({214, 23});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::x);
    user->moveTo({214, 31});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    user->moveTo({186, 31});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::x);
    user->moveTo({186, 23});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
}

TEST_F(Orienting, aRingInFrontOfTheModelCountsBeforeIt) {
    enterOrientMode();
    // 240° from x to y, on the disc of the sphere.
    user->moveTo({166, 203});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
}

TEST_F(Orienting, leavingTheWindowLeavesTheRing) {
    enterOrientMode();
    user->moveTo(onZRing);
    user->moveTo(outside);
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    user->moveTo(onZRing);
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
}

TEST_F(Orienting, theServerShowsADifferentPointerForEach) {
    user->moveTo(besideBody);
    std::set<std::uint64_t> pictures{user->pointerPicture()};
    const auto arrow = user->pointerPicture();
    user->moveTo(onBody);
    pictures.insert(user->pointerPicture());
    enterOrientMode();
    user->moveTo(onZRing);
    pictures.insert(user->pointerPicture());
    user->press();
    pictures.insert(user->pointerPicture());
    EXPECT_EQ(pictures.size(), 4U);
    user->release();
    user->moveTo(besideBody);
    EXPECT_EQ(user->pointerPicture(), arrow);
}

TEST_F(Orienting, picksWhereTheSceneIsShiftedTo) {
    // A hundred points covered on the left: the middle of the rest is fifty to the right.
    ViewportInsets insets;
    insets.leading = 100;
    settings->setViewportInsets(insets);
    user->settle();
    finishTweens();
    user->moveTo(onBody + QPointF(50 + 73, 0));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo(onBody + QPointF(50 - 77, 0));
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    enterOrientMode();
    user->moveTo(onZRing + QPointF(50, 0));
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
}

TEST_F(Orienting, picksWhereTheItemIsInItsWindow) {
    // The view is as high as before, a hundred points narrower, and in the lower right corner.
    window->resize(500, 380);
    item->setPosition({200, 80});
    item->setSize({300, 300});
    user->settle();
    const QPointF middle(350, 230);
    user->moveTo(middle + QPointF(0, 73));
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo(middle - QPointF(0, 77));
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->click(middle);
    ASSERT_TRUE(settings->orientMode());
    finishTweens();
    user->moveTo(onZRing + QPointF(150, 80));
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    noteCamera();
    user->moveTo({100, 230});
    EXPECT_EQ(renderer().hoveredRing, std::nullopt) << "the pointer has left the item";
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->drag({100, 230}, {150, 200});
    user->wheel(1);
    user->click({100, 230});
    EXPECT_FALSE(cameraMoved());
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(Orienting, picksTheModelAsItIsTurned) {
    load("rounded_box");
    settings->setReframeRequestID(QUuid::createUuid());
    settings->requestView(ViewPreset::side);
    user->settle();
    finishTweens();
    // Seen from +z the box is 2 m wide and 1 m high; on end it is the other way round.
    const double pointsPerMetre = 1 / (2 * double(renderer().camera.distance) * 0.41421356 / 300);
    const QPointF alongX(0.85 * pointsPerMetre, 0);
    const QPointF alongY(0, 0.85 * pointsPerMetre);
    user->moveTo(onBody + alongX);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo(onBody + alongY);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    parameters->setRotationZ(90);
    user->moveTo(onBody + alongX);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    user->moveTo(onBody + alongY);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
}

TEST_F(Orienting, escapeLeavesTheModeAndTheRing) {
    enterOrientMode();
    user->moveTo(onZRing);
    user->type(Qt::Key_Escape);
    EXPECT_FALSE(settings->orientMode());
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Orienting, escapeOutsideOfTheModeAndOtherKeysAreForOthers) {
    KeyCounter keys;
    item->setParentItem(&keys);
    keys.setParentItem(window->contentItem());
    item->forceActiveFocus();
    user->type(Qt::Key_Escape);
    EXPECT_EQ(keys.count, 1);
    user->click(onBody);
    ASSERT_TRUE(settings->orientMode());
    user->type(Qt::Key_A);
    EXPECT_EQ(keys.count, 2);
    EXPECT_TRUE(settings->orientMode());
    user->type(Qt::Key_Escape);
    EXPECT_EQ(keys.count, 2) << "this one was the viewport's";
    EXPECT_FALSE(settings->orientMode());
    item->setParentItem(window->contentItem());
}

TEST_F(Orienting, escapeInAnotherFieldLeavesTheModeAlone) {
    enterOrientMode();
    KeyCounter field;
    field.setParentItem(window->contentItem());
    field.forceActiveFocus();
    user->type(Qt::Key_Escape);
    EXPECT_EQ(field.count, 1);
    EXPECT_TRUE(settings->orientMode());
}

} // namespace
} // namespace ostrella::test
