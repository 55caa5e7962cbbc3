#include "Views/ViewportInput/ViewportWindow.h"

#include "support/Wait.h"

#include <functional>
#include <numbers>

namespace ostrella::test {
namespace {

/// What the user's hand does to a camera that moves by itself.
class Tweens : public ViewportWindow {
protected:
    /// Asks for the view from above and stops the clock after a third of the way's time.
    void setOut() {
        renderer().camera = before;
        settings->requestView(ViewPreset::top);
        user->settle();
        advance(0.1);
        ASSERT_GT(elevationMoved(), 0.1F);
        ASSERT_LT(renderer().camera.elevation, 1.5F);
    }

    /// The camera stays where it is, and nothing more is drawn.
    void expectHeld() {
        const ArcBallCamera reached = renderer().camera;
        EXPECT_FALSE(renderer().wantsContinuousRedraw());
        now += 1;
        EXPECT_TRUE(waitUntil([&] { return !item->isAnimating(); }));
        EXPECT_EQ(renderer().camera, reached);
        EXPECT_LT(reached.elevation, 1.5F);
    }
};

TEST_F(Tweens, arriveWhenTheyAreLeftAlone) {
    setOut();
    // 1 − (1 − 1/3)³ = 19/27 of the way from 32.4° to 90° and from 45° to 0°.
    EXPECT_NEAR(elevationMoved(), 19.0 / 27 * (std::numbers::pi / 2 - 0.5654867), 1e-4);
    EXPECT_NEAR(azimuthMoved(), -19.0 / 27 * std::numbers::pi / 4, 1e-4);
    finishTweens();
    EXPECT_EQ(renderer().camera.elevation, 1.57079625F);
    EXPECT_NEAR(renderer().camera.azimuth, 0, 1e-6);
    EXPECT_TRUE(settings->viewPresetIsCurrent());
}

TEST_F(Tweens, endWithAPressOfAnyButton) {
    for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        user->moveTo(besideBody);
        setOut();
        user->press(button);
        expectHeld();
        user->release(button);
    }
}

TEST_F(Tweens, endWithAWheelAStrokeAndAPinch) {
    user->moveTo(besideBody);
    const std::vector<std::function<void()>> moves{[&] { user->wheel(1); },
        [&] {
            user->scroll({0, 1});
        },
        [&] {
            user->scroll({5, 0}, Qt::ShiftModifier);
        },
        [&] { user->pinch(0.01); }};
    for (const auto& move : moves) {
        setOut();
        move();
        expectHeld();
    }
}

TEST_F(Tweens, goOnUnderAPointerThatOnlyMoves) {
    user->moveTo(besideBody);
    setOut();
    user->moveTo(onBody, 3);
    user->type(Qt::Key_Escape);
    finishTweens();
    EXPECT_EQ(renderer().camera.elevation, 1.57079625F);
}

TEST_F(Tweens, areTakenOverByADrag) {
    user->moveTo({50, 50});
    setOut();
    const ArcBallCamera reached = renderer().camera;
    user->press();
    user->moveTo({60, 50});
    EXPECT_NEAR(renderer().camera.azimuth, reached.azimuth - 0.1F, 1e-6);
    EXPECT_EQ(renderer().camera.elevation, reached.elevation);
    EXPECT_EQ(renderer().camera.distance, reached.distance);
    EXPECT_FALSE(settings->viewPresetIsCurrent());
}

TEST_F(Tweens, takeTheShortWayRoundAfterAnOrbit) {
    // To 0.7854 + 2.2 = 2.9854 from behind; the front is nearer through π than back through 0.
    user->drag({300, 150}, {80, 150}, {.steps = 8});
    ASSERT_NEAR(renderer().camera.azimuth, 2.9854F, 1e-4);
    settings->requestView(ViewPreset::front);
    user->settle();
    finishTweens();
    EXPECT_NEAR(renderer().camera.azimuth, 3 * std::numbers::pi / 2, 1e-4);
}

TEST_F(Tweens, ofAClickOnTheModelBackOffForTheRings) {
    user->click(onBody);
    ASSERT_TRUE(settings->orientMode());
    advance(0.1);
    EXPECT_GT(zoomed(), 1.05F);
    EXPECT_LT(zoomed(), 1.19F);
    finishTweens();
    EXPECT_NEAR(zoomed(), 1.196F, 1e-4);
}

TEST_F(Tweens, ofAClickStartNowhereWhenTheCameraIsFarEnough) {
    user->moveTo(besideBody);
    user->wheel(-2);
    noteCamera();
    user->click(onBody);
    ASSERT_TRUE(settings->orientMode());
    EXPECT_FALSE(renderer().wantsContinuousRedraw());
    finishTweens();
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Tweens, aFitWaitsUntilTheViewHasASize) {
    item->setSize({0, 0});
    load("simple_wing");
    settings->setReframeRequestID(QUuid::createUuid());
    user->settle();
    item->setSize({400, 300});
    user->settle();
    const ArcBallCamera framed = renderer().camera;
    settings->setReframeRequestID(QUuid::createUuid());
    user->settle();
    EXPECT_EQ(renderer().camera, framed) << "nothing was left to do";
    EXPECT_NE(framed.distance, before.distance);
}

TEST_F(Tweens, areJumpsWhereLessMotionIsAskedFor) {
    item->coordinator()->prefersReducedMotion = [] { return true; };
    settings->requestView(ViewPreset::top);
    user->settle();
    EXPECT_EQ(renderer().camera.elevation, 1.57079625F);
    EXPECT_FALSE(renderer().wantsContinuousRedraw());
    settings->requestView(ViewPreset::iso);
    user->click(onBody);
    EXPECT_NEAR(zoomed(), 1.196F, 1e-4);
    EXPECT_FALSE(renderer().wantsContinuousRedraw());
}

} // namespace
} // namespace ostrella::test
