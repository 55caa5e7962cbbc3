#include "Views/Viewport/ViewportBench.h"

#include <cmath>
#include <utility>
#include <vector>

namespace ostrella::test {
namespace {

using Cursor = ViewportInput::Cursor;
using DragMode = ArcBallMTKView::DragMode;
using testing::ElementsAre;
using testing::IsEmpty;
using ViewportInput::Button;
using ViewportInput::Key;

class ArcBallOrienting : public ViewportBench {
protected:
    ArcBallOrienting() {
        loadBox();
        view.onCursor = [this](Cursor cursor) { cursors.push_back(cursor); };
    }

    /// Takes a ring and notes what a drag of it asks for.
    Vec2 takeRing(OrientationAxis axis) {
        enterOrientMode();
        view.onRotate = [this](OrientationAxis about, double degrees) {
            turns.emplace_back(about, degrees);
        };
        view.onRotateEnded = [this] { ++rotationsEnded; };
        const Vec2 start = pointOn(axis);
        press(start);
        EXPECT_EQ(view.dragMode(), DragMode::ring);
        return start;
    }

    /// `point` after a turn about the rings' centre on the screen, counter-clockwise.
    Vec2 turned(Vec2 point, float degrees) {
        const Vec2 arm = point - ringCentre();
        const float angle = degrees * 3.14159265F / 180;
        return ringCentre() + Vec2(arm.x * std::cos(angle) - arm.y * std::sin(angle),
                                  arm.x * std::sin(angle) + arm.y * std::cos(angle));
    }

    double turnedBy() const {
        double sum = 0;
        for (const auto& [axis, degrees] : turns)
            sum += degrees;
        return sum;
    }

    std::vector<Cursor> cursors;
    std::vector<std::pair<OrientationAxis, double>> turns;
    int rotationsEnded = 0;
};

TEST_F(ArcBallOrienting, aClickOnTheModelEntersAndBacksOffForTheRings) {
    int focused = 0;
    view.onFirstResponder = [&] { ++focused; };
    const float distance = renderer.camera.distance;
    press(onBox);
    drag(onBox + Vec2(3, 0));
    release(onBox + Vec2(3, 0));
    EXPECT_TRUE(renderer.orientMode);
    EXPECT_TRUE(settings.orientMode());
    EXPECT_EQ(focused, 1);
    EXPECT_FALSE(view.isPaused());
    turn();
    finishTweens();
    EXPECT_NEAR(renderer.camera.distance, 1.196F * distance, 1e-3);
}

TEST_F(ArcBallOrienting, aFurtherClickOnTheModelChangesNothing) {
    enterOrientMode();
    std::vector<bool> selections;
    view.onSelect = [&](bool isOn) { selections.push_back(isOn); };
    click(onBox);
    EXPECT_TRUE(renderer.orientMode);
    EXPECT_THAT(selections, IsEmpty());
}

TEST_F(ArcBallOrienting, aClickOnEmptySpaceLeaves) {
    enterOrientMode();
    renderer.hoveredRing = OrientationAxis::y;
    click(besideBox);
    EXPECT_FALSE(renderer.orientMode);
    EXPECT_FALSE(settings.orientMode());
    EXPECT_EQ(renderer.hoveredRing, std::nullopt);
    click(besideBox);
    EXPECT_FALSE(renderer.orientMode);
}

TEST_F(ArcBallOrienting, nothingIsEnteredWhereOrientingIsNotAllowed) {
    parameters.setIsRunning(true);
    turn();
    click(onBox);
    EXPECT_FALSE(renderer.orientMode);
    hover(onBox);
    EXPECT_EQ(view.hoverCursor(), Cursor::arrow);
}

TEST_F(ArcBallOrienting, aRingThatIsPressedIsTaken) {
    takeRing(OrientationAxis::y);
    EXPECT_EQ(renderer.activeRing, OrientationAxis::y);
    EXPECT_EQ(renderer.hoveredRing, OrientationAxis::y);
    EXPECT_EQ(cursors.back(), Cursor::closedHand);
    EXPECT_THAT(turns, IsEmpty());
}

TEST_F(ArcBallOrienting, aRingFollowsThePointerAroundItsCentre) {
    // The eye of the iso pose is on the positive side of every axis: turns look as they are.
    for (const OrientationAxis axis : allOrientationAxes) {
        turns.clear();
        const Vec2 start = takeRing(axis);
        drag(turned(start, 20));
        drag(turned(start, 37));
        EXPECT_NEAR(turnedBy(), 37, 0.01);
        EXPECT_EQ(turns.front().first, axis);
        release(turned(start, 37));
    }
    EXPECT_EQ(rotationsEnded, 3);
}

TEST_F(ArcBallOrienting, shiftSnapsToFifteenDegreesAtOnceAndLettingGoGivesTheRest) {
    const Vec2 start = takeRing(OrientationAxis::z);
    drag(turned(start, 20));
    EXPECT_NEAR(turnedBy(), 20, 0.01);
    view.flagsChanged(shift);
    EXPECT_NEAR(turnedBy(), 15, 1e-9);
    view.flagsChanged(shift);
    EXPECT_EQ(turns.size(), 2U) << "no turn by nothing";
    drag(turned(start, 22), shift);
    EXPECT_EQ(turns.size(), 2U);
    drag(turned(start, 24), shift);
    EXPECT_NEAR(turnedBy(), 30, 1e-9);
    view.flagsChanged({});
    EXPECT_NEAR(turnedBy(), 24, 0.01);
}

TEST_F(ArcBallOrienting, aRingIsHeldWhereTheViewGrows) {
    const Vec2 start = takeRing(OrientationAxis::z);
    drag(turned(start, 20));
    const Vec2 held = turned(start, 20);
    renderer.drawableSizeWillChange({800, 800}, {400, 400});
    view.viewResized(300);
    drag(held + Vec2(0, 100));
    EXPECT_NEAR(turnedBy(), 20, 0.01) << "the pointer has not moved below the upper edge";
    // The middle of the rings is at (200, 200) now.
    drag({290, 200});
    const double before = turnedBy();
    drag({200, 290});
    EXPECT_NEAR(turnedBy() - before, 90, 0.01);
}

TEST_F(ArcBallOrienting, modifiersMeanNothingWithoutARing) {
    view.flagsChanged(shift);
    press({100, 100});
    view.flagsChanged(shift);
    EXPECT_THAT(turns, IsEmpty());
    EXPECT_EQ(view.dragMode(), DragMode::orbit) << "until the next move";
}

TEST_F(ArcBallOrienting, aRingLetGoOfIsOnlyHovered) {
    const Vec2 start = takeRing(OrientationAxis::x);
    release(start);
    EXPECT_EQ(rotationsEnded, 1);
    EXPECT_EQ(view.ringDrag(), std::nullopt);
    EXPECT_EQ(renderer.activeRing, std::nullopt);
    EXPECT_EQ(renderer.hoveredRing, OrientationAxis::x);
    EXPECT_EQ(cursors.back(), Cursor::openHand);
    EXPECT_TRUE(renderer.orientMode);
}

TEST_F(ArcBallOrienting, escapeEndsADragAndTheMode) {
    const Vec2 start = takeRing(OrientationAxis::x);
    EXPECT_TRUE(view.keyDown(Key::escape));
    EXPECT_EQ(rotationsEnded, 1);
    EXPECT_FALSE(renderer.orientMode);
    EXPECT_FALSE(settings.orientMode());
    EXPECT_EQ(renderer.activeRing, std::nullopt);
    EXPECT_EQ(renderer.hoveredRing, std::nullopt);
    EXPECT_EQ(cursors.back(), Cursor::arrow);
    const ArcBallCamera held = renderer.camera;
    drag(turned(start, 40));
    release(turned(start, 40));
    EXPECT_THAT(turns, IsEmpty());
    EXPECT_EQ(renderer.camera, held);
    EXPECT_FALSE(renderer.orientMode) << "the release is no click";
}

TEST_F(ArcBallOrienting, escapeElsewhereAndOtherKeysAreNotForTheViewport) {
    EXPECT_FALSE(view.keyDown(Key::escape));
    enterOrientMode();
    EXPECT_FALSE(view.keyDown(Key::other));
    EXPECT_TRUE(renderer.orientMode);
}

TEST_F(ArcBallOrienting, anotherButtonInMidDragLeavesNoRingTaken) {
    const Vec2 start = takeRing(OrientationAxis::x);
    press(start, {}, Button::right);
    release(start, Button::right);
    release(start);
    EXPECT_EQ(renderer.activeRing, std::nullopt);
    EXPECT_EQ(rotationsEnded, 1);
}

TEST_F(ArcBallOrienting, losingThePointerEndsADrag) {
    takeRing(OrientationAxis::x);
    view.pointerLost();
    EXPECT_EQ(rotationsEnded, 1);
    EXPECT_EQ(renderer.activeRing, std::nullopt);
    EXPECT_EQ(renderer.hoveredRing, std::nullopt);
    EXPECT_TRUE(renderer.orientMode);
}

TEST_F(ArcBallOrienting, theCursorTellsWhatLiesUnderIt) {
    hover(onBox);
    EXPECT_THAT(cursors, ElementsAre(Cursor::pointingHand));
    hover(onBox + Vec2(1, 0));
    EXPECT_EQ(cursors.size(), 1U);
    hover(besideBox);
    EXPECT_EQ(cursors.back(), Cursor::arrow);
    enterOrientMode();
    redraws = 0;
    hover(pointOn(OrientationAxis::z));
    EXPECT_EQ(cursors.back(), Cursor::openHand);
    EXPECT_EQ(renderer.hoveredRing, OrientationAxis::z);
    EXPECT_EQ(redraws, 1);
    view.exited();
    EXPECT_EQ(cursors.back(), Cursor::arrow);
    EXPECT_EQ(renderer.hoveredRing, std::nullopt);
    EXPECT_EQ(redraws, 2);
}

TEST_F(ArcBallOrienting, leavingSetsTheArrowAlsoWhereItWasOne) {
    view.exited();
    EXPECT_THAT(cursors, ElementsAre(Cursor::arrow));
}

TEST_F(ArcBallOrienting, comingInTakesTheCursorThatWasSetLast) {
    hover(onBox);
    view.cursorUpdate();
    EXPECT_THAT(cursors, ElementsAre(Cursor::pointingHand, Cursor::pointingHand));
}

TEST_F(ArcBallOrienting, aDragKeepsItsCursor) {
    press({100, 100});
    drag({110, 100});
    view.updateHover(onBox);
    EXPECT_THAT(cursors, IsEmpty());
}

TEST_F(ArcBallOrienting, aCardOnTopKeepsItsOwnCursor) {
    Vec2 asked{0.0F};
    view.isFrontmost = [&](Vec2 point) {
        asked = point;
        return false;
    };
    hover(onBox);
    EXPECT_EQ(asked, onBox);
    EXPECT_THAT(cursors, IsEmpty());
    view.isFrontmost = [](Vec2) { return true; };
    hover(onBox);
    EXPECT_THAT(cursors, ElementsAre(Cursor::pointingHand));
}

} // namespace
} // namespace ostrella::test
