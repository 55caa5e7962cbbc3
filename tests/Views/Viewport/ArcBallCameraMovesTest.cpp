#include "Views/Viewport/ViewportBench.h"

#include <cmath>

namespace ostrella::test {
namespace {

using DragMode = ArcBallMTKView::DragMode;
using ViewportInput::Button;
using ViewportInput::Pinch;
using ViewportInput::Scroll;

class ArcBallCameraMoves : public ViewportBench {
protected:
    ArcBallCameraMoves() {
        loadBox();
        before = renderer.camera;
    }

    float azimuthMoved() const { return renderer.camera.azimuth - before.azimuth; }
    float elevationMoved() const { return renderer.camera.elevation - before.elevation; }
    bool targetMoved() const { return renderer.camera.target != before.target; }
    bool turned() const { return azimuthMoved() != 0 || elevationMoved() != 0; }

    /// Points of the view for a metre at the target: the field of view is 45 degrees high.
    float pointsPerMetre() const {
        return 300.0F / (2 * renderer.camera.distance * std::tan(3.1415925F / 8));
    }

    ArcBallCamera before;
};

TEST_F(ArcBallCameraMoves, aDragOrbitsByAHundredthOfARadianForAPoint) {
    press({100, 100});
    drag({120, 90});
    EXPECT_NEAR(azimuthMoved(), -0.2F, 1e-6);
    EXPECT_NEAR(elevationMoved(), 0.1F, 1e-6);
    drag({110, 90});
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
    EXPECT_FALSE(targetMoved());
    release({110, 90});
    EXPECT_EQ(view.dragMode(), DragMode::none);
}

TEST_F(ArcBallCameraMoves, anOrbitEndsStraightAboveAndStraightBelow) {
    press({100, 100});
    drag({100, -900});
    EXPECT_EQ(renderer.camera.elevation, 1.57079625F);
    drag({100, 9000});
    EXPECT_EQ(renderer.camera.elevation, -1.57079625F);
}

TEST_F(ArcBallCameraMoves, aPressThatStraysThreePointsMovesNothing) {
    press({100, 100});
    drag({103, 100});
    EXPECT_TRUE(view.clickPending());
    EXPECT_EQ(renderer.camera, before);
}

TEST_F(ArcBallCameraMoves, fourPointsAndBackIsADragAndNoClick) {
    int selections = 0;
    view.onSelect = [&](bool) { ++selections; };
    press(onBox);
    drag(onBox + Vec2(4, 0));
    EXPECT_NEAR(azimuthMoved(), -0.04F, 1e-6);
    drag(onBox);
    EXPECT_NEAR(azimuthMoved(), 0.0F, 1e-6);
    release(onBox);
    EXPECT_EQ(selections, 0);
    EXPECT_FALSE(renderer.orientMode);
}

TEST_F(ArcBallCameraMoves, shiftOrOptionPansInsteadAndMayComeAndGoInMidDrag) {
    for (const auto& modifiers : {shift, option}) {
        press({100, 100}, modifiers);
        EXPECT_EQ(view.dragMode(), DragMode::pan);
        drag({120, 100}, modifiers);
        EXPECT_FALSE(turned());
        drag({130, 100});
        EXPECT_EQ(view.dragMode(), DragMode::orbit);
        EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
        drag({140, 100}, modifiers);
        EXPECT_EQ(view.dragMode(), DragMode::pan);
        EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6);
        release({140, 100});
        renderer.camera = before;
    }
}

TEST_F(ArcBallCameraMoves, aPanKeepsTheSceneUnderThePointerSideways) {
    press({100, 100}, shift);
    drag({130, 100}, shift);
    // To the right of the iso pose is (cos 45°, 0, −sin 45°); the scene follows the pointer.
    const float metres = 30 / pointsPerMetre();
    EXPECT_NEAR(renderer.camera.target.x, -metres * std::sqrt(0.5F), 1e-4);
    EXPECT_NEAR(renderer.camera.target.y, 0, 1e-6);
    EXPECT_NEAR(renderer.camera.target.z, metres * std::sqrt(0.5F), 1e-4);
}

TEST_F(ArcBallCameraMoves, aPanHandsOnTheVerticalStepNegated) {
    press({100, 100}, shift);
    drag({100, 130}, shift);
    ArcBallCamera expected = before;
    expected.pan(0, -30, 300);
    EXPECT_EQ(renderer.camera, expected);
}

TEST_F(ArcBallCameraMoves, aRightDragAlwaysPans) {
    for (const auto& modifiers : {ViewportInput::Modifiers{}, shift, option}) {
        renderer.camera = before;
        press({100, 100}, modifiers, Button::right);
        drag({101, 100}, modifiers, Button::right);
        EXPECT_TRUE(targetMoved()) << "from the first point on";
        EXPECT_FALSE(turned());
        release({101, 100}, Button::right);
        EXPECT_EQ(view.dragMode(), DragMode::none);
        const ArcBallCamera left = renderer.camera;
        drag({150, 100}, modifiers, Button::right);
        EXPECT_EQ(renderer.camera, left) << "the drag has ended";
    }
}

TEST_F(ArcBallCameraMoves, aMiddleDragPansAndOrbitsWithShift) {
    press({100, 100}, {}, Button::other);
    drag({110, 100}, {}, Button::other);
    EXPECT_TRUE(targetMoved());
    EXPECT_FALSE(turned());
    release({110, 100}, Button::other);

    renderer.camera = before;
    press({100, 100}, shift, Button::other);
    drag({110, 100}, {}, Button::other);
    EXPECT_NEAR(azimuthMoved(), -0.1F, 1e-6) << "as it began";
    EXPECT_FALSE(targetMoved());
}

TEST_F(ArcBallCameraMoves, aScrollZooms) {
    view.scrollWheel({.pixels = {7, 10}, .angle = {}, .modifiers = {}});
    EXPECT_NEAR(renderer.camera.distance, before.distance * 0.60653066F, 1e-4);
    view.scrollWheel({.pixels = {0, -10}, .angle = {}, .modifiers = {}});
    EXPECT_NEAR(renderer.camera.distance, before.distance, 1e-4);
    EXPECT_FALSE(targetMoved());
    EXPECT_EQ(renderer.camera.nearZ, before.nearZ);
}

TEST_F(ArcBallCameraMoves, aNotchOfAWheelIsOneModestStep) {
    view.scrollWheel({.pixels = {}, .angle = {0, 120}, .modifiers = {}});
    EXPECT_NEAR(renderer.camera.distance / before.distance, 0.8607080F, 1e-5);
    for (int part = 0; part < 8; ++part)
        view.scrollWheel({.pixels = {}, .angle = {0, -15}, .modifiers = {}});
    EXPECT_NEAR(renderer.camera.distance / before.distance, 1.0F, 1e-5)
        << "a wheel with fine steps reaches as far";
}

TEST_F(ArcBallCameraMoves, aTrackpadsPointsCountAndNotTheAngleMadeFromThem) {
    view.scrollWheel({.pixels = {0, 1}, .angle = {0, 120}, .modifiers = {}});
    EXPECT_NEAR(renderer.camera.distance / before.distance, 0.9512294F, 1e-5);
}

TEST_F(ArcBallCameraMoves, theEyeComesNoNearerThanAMillimetreAndNeverLeavesTheNumbers) {
    view.scrollWheel({.pixels = {0, 1000}, .angle = {}, .modifiers = {}});
    EXPECT_EQ(renderer.camera.distance, 0.001F);
    for (int i = 0; i < 10; ++i)
        view.scrollWheel({.pixels = {0, -5000}, .angle = {}, .modifiers = {}});
    EXPECT_TRUE(std::isfinite(squaredLength(renderer.camera.eye())));
    press(besideBox, {}, Button::left, 2);
    EXPECT_EQ(renderer.camera, before) << "and a double click brings it back";
}

TEST_F(ArcBallCameraMoves, aScrollWithShiftOrOptionPans) {
    for (const auto& modifiers : {shift, option}) {
        renderer.camera = before;
        view.scrollWheel({.pixels = {12, -5}, .angle = {}, .modifiers = modifiers});
        ArcBallCamera expected = before;
        expected.pan(12, -5, 300);
        EXPECT_EQ(renderer.camera, expected);
    }
    renderer.camera = before;
    view.scrollWheel({.pixels = {}, .angle = {0, 120}, .modifiers = shift});
    ArcBallCamera expected = before;
    expected.pan(0, 40, 300);
    EXPECT_EQ(renderer.camera, expected);
}

TEST_F(ArcBallCameraMoves, aPinchZooms) {
    view.magnify(Pinch{0.1F});
    EXPECT_NEAR(renderer.camera.distance / before.distance, 0.9048374F, 1e-5);
    view.magnify(Pinch{-0.1F});
    EXPECT_NEAR(renderer.camera.distance / before.distance, 1.0F, 1e-5);
}

TEST_F(ArcBallCameraMoves, aDoubleClickFramesTheSceneInTheIsoPose) {
    press({100, 100});
    drag({190, 140});
    release({190, 140});
    view.scrollWheel({.pixels = {20, 10}, .angle = {}, .modifiers = shift});
    view.scrollWheel({.pixels = {0, 10}, .angle = {}, .modifiers = {}});
    ASSERT_NE(renderer.camera, before);
    press(onBox, {}, Button::left, 2);
    EXPECT_EQ(renderer.camera, before);
    drag(onBox + Vec2(50, 0));
    EXPECT_EQ(renderer.camera, before) << "the second press begins no drag";
    release(onBox);
    EXPECT_FALSE(renderer.orientMode) << "and is no click";
}

TEST_F(ArcBallCameraMoves, aDoubleClickForgetsAPressWhoseReleaseGotLost) {
    press(onBox);
    press(onBox, {}, Button::left, 2);
    release(onBox);
    EXPECT_FALSE(renderer.orientMode);

    press(onBox);
    press(onBox, {}, Button::left, 2);
    drag(onBox + Vec2(50, 0));
    EXPECT_EQ(renderer.camera, before);
    release(onBox);
    EXPECT_FALSE(renderer.orientMode);
}

TEST_F(ArcBallCameraMoves, onlyAnOrbitEndsThePresetsMark) {
    settings.requestView(ViewPreset::iso);
    turn();
    press({100, 100}, shift);
    drag({150, 130}, shift);
    release({150, 130});
    view.scrollWheel({.pixels = {0, 10}, .angle = {}, .modifiers = {}});
    view.magnify(Pinch{0.1F});
    press({100, 100}, {}, Button::right);
    drag({150, 130}, {}, Button::right);
    release({150, 130}, Button::right);
    EXPECT_TRUE(settings.viewPresetIsCurrent());
    press({100, 100});
    drag({110, 100});
    EXPECT_FALSE(settings.viewPresetIsCurrent());
}

TEST_F(ArcBallCameraMoves, anyPressAndAnyScrollEndsARunningTweenWhereItIs) {
    const auto halfWay = [this] {
        renderer.camera = before;
        renderer.applyPreset(ViewPreset::top, true);
        now += 0.1;
        renderer.draw();
        ASSERT_TRUE(renderer.wantsContinuousRedraw());
    };
    const auto expectHeld = [this] {
        EXPECT_FALSE(renderer.wantsContinuousRedraw());
        EXPECT_TRUE(view.isPaused());
        const float reached = renderer.camera.elevation;
        EXPECT_GT(reached, before.elevation);
        EXPECT_LT(reached, 1.57F);
        now += 1;
        renderer.draw();
        EXPECT_EQ(renderer.camera.elevation, reached);
    };
    for (const Button button : {Button::left, Button::right, Button::other}) {
        halfWay();
        press({100, 100}, {}, button);
        expectHeld();
        release({100, 100}, button);
    }
    halfWay();
    view.scrollWheel({.pixels = {0, 1}, .angle = {}, .modifiers = {}});
    expectHeld();
    halfWay();
    view.magnify(Pinch{0.01F});
    expectHeld();
}

TEST_F(ArcBallCameraMoves, aPressThatLosesThePointerMovesNothingMore) {
    press({100, 100});
    drag({110, 100});
    view.pointerLost();
    const ArcBallCamera held = renderer.camera;
    drag({150, 100});
    EXPECT_EQ(renderer.camera, held);
    EXPECT_EQ(view.dragMode(), DragMode::none);
}

TEST_F(ArcBallCameraMoves, aViewThatGrowsInMidDragMovesNothing) {
    press({100, 100});
    drag({110, 100});
    // A view of 400 points' height instead of 300: what was at 100 from below is now at 200.
    renderer.drawableSizeWillChange({800, 800}, {400, 400});
    view.viewResized(300);
    drag({120, 200});
    EXPECT_NEAR(azimuthMoved(), -0.2F, 1e-6);
    EXPECT_EQ(elevationMoved(), 0);
}

TEST_F(ArcBallCameraMoves, aViewThatGrowsLeavesAClickAClick) {
    press(onBox);
    renderer.drawableSizeWillChange({800, 800}, {400, 400});
    view.viewResized(300);
    drag(onBox + Vec2(0, 100));
    EXPECT_TRUE(view.clickPending());
}

TEST_F(ArcBallCameraMoves, framesAreAskedForOnlyWhereSomethingChanged) {
    redraws = 0;
    hover(besideBox);
    hover(besideBox + Vec2(1, 0));
    EXPECT_EQ(redraws, 0);
    press({100, 100});
    const int afterPress = redraws;
    drag({102, 100});
    EXPECT_EQ(redraws, afterPress) << "no drag yet";
    drag({110, 100});
    EXPECT_EQ(redraws, afterPress + 1);
    view.scrollWheel({.pixels = {0, 1}, .angle = {}, .modifiers = {}});
    EXPECT_EQ(redraws, afterPress + 2);
}

TEST_F(ArcBallCameraMoves, whileFramesFollowOneAnotherNoneIsAskedFor) {
    std::vector<bool> paused;
    view.onPausedChanged = [&](bool isPaused) { paused.push_back(isPaused); };
    settings.requestView(ViewPreset::front);
    redraws = 0;
    turn();
    EXPECT_FALSE(view.isPaused());
    EXPECT_EQ(redraws, 0);
    finishTweens();
    EXPECT_TRUE(view.isPaused());
    EXPECT_THAT(paused, testing::ElementsAre(false, true));
}

TEST(ArcBallMTKView, withoutARendererNothingHappens) {
    ArcBallMTKView view;
    view.canOrient = true;
    view.pressed({});
    view.moved({});
    view.released({});
    view.scrollWheel({});
    view.magnify({});
    view.flagsChanged({});
    view.viewResized(300);
    view.exited();
    EXPECT_FALSE(view.keyDown(ViewportInput::Key::escape));
    EXPECT_EQ(view.dragMode(), DragMode::none);
    EXPECT_TRUE(view.isPaused());
}

} // namespace
} // namespace ostrella::test
