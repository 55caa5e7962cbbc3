// How the camera and the lens get to where they are sent, at times that the test sets.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {
namespace {

using namespace scenes;

constexpr float cubeDistance = 4.9585044F;
constexpr float half = 0.875F; // of the way at half the time: 1 − (1 − ½)³

/// A scene with a cube, looked at from the iso pose.
struct Cube : Scene {
    ArcBallCamera& camera = renderer.camera;
    Cube() { renderer.upload(cube()); }
    void drawAt(double seconds) {
        now = 100 + seconds;
        renderer.draw();
    }
};

TEST(CameraTween, easesOutFromPoseToPose) {
    Cube scene;
    scene.camera.azimuth = 1;
    scene.camera.elevation = 0.5F;
    scene.camera.distance = 2 * cubeDistance;
    scene.renderer.applyPreset(ViewPreset::side, true);
    EXPECT_EQ(scene.camera.azimuth, 1);
    EXPECT_TRUE(scene.renderer.wantsContinuousRedraw());
    scene.drawAt(0.15);
    EXPECT_NEAR(scene.camera.azimuth, 1 - half, 1e-5F);
    EXPECT_NEAR(scene.camera.elevation, 0.5F * (1 - half), 1e-5F);
    // By equal factors: what is left of the way is an eighth of a halving.
    EXPECT_NEAR(scene.camera.distance, cubeDistance * std::pow(2.0F, 0.125F), 1e-4F);
    EXPECT_TRUE(scene.renderer.wantsContinuousRedraw());
    scene.drawAt(0.301);
    EXPECT_EQ(scene.camera.azimuth, 0);
    EXPECT_EQ(scene.camera.elevation, 0);
    EXPECT_NEAR(scene.camera.distance, cubeDistance, 1e-5F);
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(CameraTween, doesNotMoveAheadOfItsStart) {
    Cube scene;
    scene.renderer.applyPreset(ViewPreset::front, true);
    const ArcBallCamera before = scene.camera;
    scene.drawAt(-5);
    EXPECT_NEAR(scene.camera.azimuth, before.azimuth, 1e-6F);
    EXPECT_TRUE(scene.renderer.wantsContinuousRedraw());
}

TEST(CameraTween, leavesTheTarget) {
    Cube scene;
    scene.camera.target = {1, 2, 3};
    scene.renderer.applyPreset(ViewPreset::top, true);
    scene.drawAt(1);
    EXPECT_EQ(scene.camera.target, Vec3(1, 2, 3));
    EXPECT_FLOAT_EQ(scene.camera.elevation, 1.5707963F);
}

TEST(CameraTween, goesTheShorterWayRound) {
    Cube scene;
    scene.camera.azimuth = 3;
    scene.renderer.applyPreset(ViewPreset::front, false);
    // On through π to 3π/2, which is −π/2: 1.7123890 further.
    EXPECT_NEAR(scene.camera.azimuth, 4.712389F, 1e-5F);
    scene.camera.azimuth = -3;
    scene.renderer.applyPreset(ViewPreset::front, false);
    EXPECT_NEAR(scene.camera.azimuth, -1.5707963F, 1e-5F);
}

TEST(CameraTween, neverTurnsByMoreThanHalfATurnHoweverFarTheCameraHasComeRound) {
    Cube scene;
    for (const float azimuth : {-1000.0F, -20.0F, -3.2F, 3.2F, 20.0F, 1000.0F}) {
        for (const ViewPreset preset : allViewPresets) {
            scene.camera.azimuth = azimuth;
            scene.renderer.applyPreset(preset, false);
            EXPECT_LE(std::abs(scene.camera.azimuth - azimuth), 3.14160F);
            EXPECT_NEAR(std::cos(scene.camera.azimuth), std::cos(pose(preset).azimuth), 1e-3F);
            EXPECT_NEAR(std::sin(scene.camera.azimuth), std::sin(pose(preset).azimuth), 1e-3F);
        }
    }
}

TEST(CameraTween, turnsForwardsByExactlyHalfATurn) {
    Cube scene;
    scene.camera.azimuth = 3.1415925F;
    scene.renderer.applyPreset(ViewPreset::side, false);
    // −π in 32 bits is at the bound, and becomes the turn the other way.
    EXPECT_NEAR(scene.camera.azimuth, 6.283185F, 1e-5F);
}

TEST(CameraTween, jumpsUnderReducedMotionAndWithoutAnimation) {
    for (const bool reduced : {false, true}) {
        Cube scene;
        scene.renderer.applyPreset(ViewPreset::top, true);
        scene.renderer.reduceMotion = reduced;
        scene.renderer.applyPreset(ViewPreset::side, reduced);
        EXPECT_EQ(scene.camera.elevation, 0);
        EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
        scene.drawAt(1);
        EXPECT_EQ(scene.camera.elevation, 0);
    }
}

TEST(CameraTween, keepsTheDistanceWithNothingToFrame) {
    Scene scene;
    scene.renderer.camera.distance = 3;
    scene.renderer.applyPreset(ViewPreset::front, false);
    EXPECT_EQ(scene.renderer.camera.distance, 3);
    EXPECT_EQ(scene.renderer.camera.elevation, 0);
}

TEST(CameraTween, isReplacedByTheNextFromWhereItGot) {
    Cube scene;
    scene.camera.azimuth = 1;
    scene.renderer.applyPreset(ViewPreset::side, true);
    scene.drawAt(0.15);
    scene.renderer.applyPreset(ViewPreset::side, true);
    scene.drawAt(0.15);
    EXPECT_NEAR(scene.camera.azimuth, 1 - half, 1e-5F);
    scene.drawAt(0.3);
    EXPECT_NEAR(scene.camera.azimuth, (1 - half) * (1 - half), 1e-5F);
}

TEST(CameraTween, isCancelledWhereItGot) {
    Cube scene;
    scene.camera.azimuth = 1;
    scene.renderer.applyPreset(ViewPreset::side, true);
    scene.drawAt(0.15);
    const ArcBallCamera reached = scene.camera;
    scene.renderer.cancelCameraTween();
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
    scene.drawAt(1);
    EXPECT_EQ(scene.camera, reached);
}

TEST(CameraTween, isCancelledByAReframe) {
    Cube scene;
    scene.renderer.applyPreset(ViewPreset::front, true);
    scene.renderer.reframe(false);
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(Refit, backsOffFromTheRingsOverTime) {
    Cube scene;
    scene.renderer.orientMode = true;
    scene.renderer.refitAfterOrienting();
    EXPECT_TRUE(scene.renderer.wantsContinuousRedraw());
    scene.drawAt(0.301);
    // 1.196 times as far.
    EXPECT_NEAR(scene.camera.distance, 5.9303714F, 1e-4F);
    EXPECT_EQ(scene.camera.azimuth, 3.1415925F / 4);
}

TEST(Refit, isAtOnceUnderReducedMotion) {
    Cube scene;
    scene.renderer.applyPreset(ViewPreset::front, true);
    scene.renderer.orientMode = true;
    scene.renderer.reduceMotion = true;
    scene.renderer.refitAfterOrienting();
    EXPECT_NEAR(scene.camera.distance, 5.9303714F, 1e-4F);
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(Refit, neverMovesCloserNorByAHair) {
    for (const float share : {0.98F, 0.99F, 1.0F, 5.0F}) {
        Cube scene;
        scene.camera.distance = share * cubeDistance + 1e-5F;
        const ArcBallCamera before = scene.camera;
        scene.renderer.refitAfterOrienting();
        scene.drawAt(1);
        EXPECT_EQ(scene.camera, before) << share;
    }
    Cube scene;
    scene.camera.distance = 0.979F * cubeDistance;
    scene.renderer.refitAfterOrienting();
    scene.drawAt(1);
    EXPECT_NEAR(scene.camera.distance, cubeDistance, 1e-5F);
}

TEST(Refit, needsAViewAndSomethingToFrame) {
    Scene empty;
    empty.renderer.camera.distance = 0.5F;
    empty.renderer.refitAfterOrienting();
    EXPECT_FALSE(empty.renderer.wantsContinuousRedraw());
    double now = 0;
    MetalRenderer unseen([&] { return now; });
    unseen.upload(cube());
    unseen.camera.distance = 0.5F;
    unseen.refitAfterOrienting();
    EXPECT_FALSE(unseen.wantsContinuousRedraw());
}

TEST(LensShift, movesToTheMiddleOfTheFreePart) {
    Scene scene;
    scene.renderer.setInsets({.top = 40, .leading = 200, .bottom = 0, .trailing = 40});
    EXPECT_EQ(scene.renderer.lensShift(), Vec2(0, 0));
    EXPECT_TRUE(scene.renderer.wantsContinuousRedraw());
    scene.now += 0.125;
    scene.renderer.draw();
    // (200 − 40) / 800 and (0 − 40) / 400.
    EXPECT_NEAR(scene.renderer.lensShift().x, half * 0.2F, 1e-6F);
    EXPECT_NEAR(scene.renderer.lensShift().y, half * -0.1F, 1e-6F);
    scene.now += 0.125;
    scene.renderer.draw();
    EXPECT_FLOAT_EQ(scene.renderer.lensShift().x, 0.2F);
    EXPECT_FLOAT_EQ(scene.renderer.lensShift().y, -0.1F);
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(LensShift, isNoneForEqualInsets) {
    Scene scene;
    scene.renderer.reduceMotion = true;
    scene.renderer.setInsets({.top = 30, .leading = 77, .bottom = 30, .trailing = 77});
    EXPECT_EQ(scene.renderer.lensShift(), Vec2(0, 0));
}

TEST(LensShift, goesOnFromWhereItWasWithNewInsets) {
    Scene scene;
    scene.renderer.setInsets({.leading = 160});
    scene.now += 0.125;
    scene.renderer.setInsets({});
    scene.renderer.draw();
    EXPECT_NEAR(scene.renderer.lensShift().x, half * 0.2F, 1e-6F);
    scene.now += 0.25;
    scene.renderer.draw();
    EXPECT_EQ(scene.renderer.lensShift(), Vec2(0, 0));
}

TEST(LensShift, startsNothingForTheSameInsets) {
    Scene scene;
    scene.renderer.setInsets({.leading = 160});
    scene.now += 1;
    scene.renderer.draw();
    scene.renderer.setInsets({.leading = 160});
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(LensShift, jumpsUnderReducedMotion) {
    Scene scene;
    scene.renderer.setInsets({.leading = 80});
    scene.renderer.reduceMotion = true;
    scene.renderer.setInsets({.leading = 160});
    EXPECT_FLOAT_EQ(scene.renderer.lensShift().x, 0.2F);
    EXPECT_FALSE(scene.renderer.wantsContinuousRedraw());
}

TEST(LensShift, snapsWithTheViewsSize) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.setInsets({.leading = 160});
    EXPECT_EQ(renderer.lensShift(), Vec2(0, 0));
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
    renderer.drawableSizeWillChange({800, 400}, {800, 400});
    EXPECT_FLOAT_EQ(renderer.lensShift().x, 0.2F);
    renderer.setInsets({});
    renderer.drawableSizeWillChange({400, 400}, {400, 400});
    EXPECT_EQ(renderer.lensShift(), Vec2(0, 0));
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
    renderer.setInsets({.leading = 80});
    renderer.drawableSizeWillChange({1, 1}, {1, 1});
    EXPECT_EQ(renderer.lensShift(), Vec2(0, 0));
}

TEST(LensShift, leavesAShareOfTheViewFree) {
    Scene scene;
    scene.renderer.reduceMotion = true;
    // Scaled back to 0.7 × 800 = 560 in all.
    scene.renderer.setInsets({.leading = 2000, .trailing = 0});
    EXPECT_NEAR(scene.renderer.lensShift().x, 0.7F, 1e-6F);
}

TEST(LensShift, movesThePictureAndNothingElse) {
    Scene scene;
    const Mat4 before = scene.frame().uniforms[0].projectionMatrix;
    scene.renderer.reduceMotion = true;
    scene.renderer.setInsets({.leading = 160});
    const Mat4 after = scene.frame().uniforms[0].projectionMatrix;
    const Vec4 point = before * Vec4(0.3F, 0.2F, -5, 1);
    const Vec4 shifted = after * Vec4(0.3F, 0.2F, -5, 1);
    EXPECT_NEAR(shifted.x / shifted.w, point.x / point.w + 0.2F, 1e-6F);
    EXPECT_FLOAT_EQ(shifted.y, point.y);
    EXPECT_FLOAT_EQ(shifted.z, point.z);
}

} // namespace
} // namespace ostrella
