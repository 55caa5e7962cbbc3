// What the camera frames, from how far, and which part of the view it keeps clear.
#include "Scenes.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using namespace scenes;

constexpr float quarterTurn = 3.1415925F / 4;
constexpr float isoElevation = 0.5654867F;

/// For half a diagonal of √3 in a view whose free part is as high as it; for 0.9 × tan(π / 8).
constexpr float cubeDistance = 4.9585044F;

/// A cube of √3 half a diagonal around a point.
BoundingBox around(const Vec3& centre) {
    return {centre - Vec3(1.0F), centre + Vec3(1.0F)};
}

void uploadSurfaceAround(MetalRenderer& renderer, const Vec3& centre) {
    renderer.uploadSurface(surface(around(centre).min, around(centre).max));
}

void uploadLinesAround(MetalRenderer& renderer, const Vec3& centre) {
    renderer.uploadStreamlines(lines(around(centre).min, around(centre).max));
}

TEST(SceneFraming, looksAtALoadedModelFromTheIsoPose) {
    Scene scene;
    scene.renderer.camera.azimuth = 2;
    scene.renderer.camera.elevation = -1;
    scene.renderer.upload(box({3, -1, -1}, {5, 1, 1}));
    EXPECT_EQ(scene.renderer.camera.target, Vec3(4, 0, 0));
    EXPECT_NEAR(scene.renderer.camera.distance, cubeDistance, 1e-5F);
    EXPECT_EQ(scene.renderer.camera.azimuth, quarterTurn);
    EXPECT_EQ(scene.renderer.camera.elevation, isoElevation);
}

TEST(SceneFraming, staysWhereItIsWithNothingToFrame) {
    Scene scene;
    const ArcBallCamera before = scene.renderer.camera;
    scene.renderer.reframe(false);
    scene.renderer.upload(TriangleMesh());
    scene.renderer.uploadVortex(vortex());
    scene.renderer.reframe(false);
    EXPECT_EQ(scene.renderer.camera, before);
}

TEST(SceneFraming, isNotMovedByAResult) {
    Scene scene;
    scene.renderer.upload(cube());
    const ArcBallCamera before = scene.renderer.camera;
    uploadSurfaceAround(scene.renderer, {20, 0, 0});
    uploadLinesAround(scene.renderer, {40, 0, 0});
    scene.renderer.uploadVortex(vortex());
    scene.renderer.clear();
    EXPECT_EQ(scene.renderer.camera, before);
}

TEST(SceneFraming, takesLinesBeforeTheColouredSurfaceBeforeTheModelBeforeAnySurface) {
    Scene scene;
    MetalRenderer& renderer = scene.renderer;
    const auto target = [&] {
        renderer.reframe(false);
        return renderer.camera.target.x;
    };
    uploadSurfaceAround(renderer, {10, 0, 0});
    EXPECT_EQ(target(), 10);
    renderer.upload(box({29, -1, -1}, {31, 1, 1}));
    EXPECT_EQ(target(), 30);
    renderer.colormapEnabled = true;
    EXPECT_EQ(target(), 10);
    uploadLinesAround(renderer, {20, 0, 0});
    EXPECT_EQ(target(), 10);
    renderer.streamlinesEnabled = true;
    EXPECT_EQ(target(), 20);
    renderer.uploadStreamlines({});
    EXPECT_EQ(target(), 10);
    renderer.clearResults();
    EXPECT_EQ(target(), 30);
}

TEST(SceneFraming, framesATurnedModelWhereItStands) {
    Scene scene;
    scene.renderer.upload(box({0, 0, 0}, {4, 2, 2}));
    scene.renderer.setModelRotation({0, 0, 1.5707964F});
    scene.renderer.reframe(false);
    // It turns about its own middle, and lies in a box of 2 × 4 × 2 then.
    EXPECT_NEAR(scene.renderer.camera.target.x, 2, 1e-6F);
    EXPECT_NEAR(scene.renderer.camera.target.y, 1, 1e-6F);
    EXPECT_NEAR(scene.renderer.camera.distance, 2.4494897F / 1.7320508F * cubeDistance, 1e-5F);
}

TEST(SceneFraming, framesResultsWhereTheyAreShown) {
    Scene scene;
    scene.renderer.upload(box({2, -1, -1}, {4, 1, 1}));
    // Half a turn about y: the solver saw the body at −3, which the scene shows at 3.
    scene.renderer.setModelRotation({0, 3.1415927F, 0});
    scene.renderer.colormapEnabled = true;
    uploadSurfaceAround(scene.renderer, {-3, 0, 0});
    scene.renderer.reframe(false);
    EXPECT_NEAR(scene.renderer.camera.target.x, 3, 1e-5F);
}

TEST(SceneFraming, keepsTheOrientationIfAsked) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.camera.azimuth = 2;
    scene.renderer.camera.elevation = -1;
    scene.renderer.camera.distance = 77;
    scene.renderer.camera.target = {7, 7, 7};
    scene.renderer.reframe(true);
    EXPECT_EQ(scene.renderer.camera.azimuth, 2);
    EXPECT_EQ(scene.renderer.camera.elevation, -1);
    EXPECT_EQ(scene.renderer.camera.target, Vec3(0, 0, 0));
    EXPECT_NEAR(scene.renderer.camera.distance, cubeDistance, 1e-5F);
}

TEST(SceneFraming, fitsTheBodyIntoWhatTheInsetsLeave) {
    Scene scene;
    scene.renderer.setInsets({.top = 50, .leading = 0, .bottom = 150, .trailing = 0});
    scene.renderer.upload(cube());
    // Half of the height is free; the tangent of the cone is 0.9 × tan(π / 8) / 2.
    EXPECT_NEAR(scene.renderer.camera.distance, 9.4523578F, 1e-4F);
}

TEST(SceneFraming, waitsForTheView) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.upload(cube());
    EXPECT_NEAR(renderer.camera.distance, cubeDistance, 1e-5F);
    renderer.camera.azimuth = 2;
    renderer.camera.distance = 1;
    renderer.drawableSizeWillChange({1, 1}, {1, 1});
    EXPECT_EQ(renderer.camera.distance, 1);
    // Twice as high as wide: the body fits into half of the height.
    renderer.drawableSizeWillChange({400, 800}, {400, 800});
    EXPECT_NEAR(renderer.camera.distance, 9.4523578F, 1e-4F);
    EXPECT_EQ(renderer.camera.azimuth, quarterTurn);
    // Once.
    renderer.camera.distance = 1;
    renderer.drawableSizeWillChange({800, 800}, {800, 800});
    EXPECT_EQ(renderer.camera.distance, 1);
}

TEST(SceneFraming, remembersWhetherAWaitingFitKeepsTheOrientation) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.upload(cube());
    renderer.camera.azimuth = 2;
    renderer.reframe(true);
    renderer.camera.distance = 1;
    renderer.drawableSizeWillChange({400, 800}, {400, 800});
    EXPECT_EQ(renderer.camera.azimuth, 2);
    EXPECT_NEAR(renderer.camera.distance, 9.4523578F, 1e-4F);
}

TEST(SceneFraming, doesNotWaitForTheViewWithNothingToFrame) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.reframe(false);
    renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    renderer.camera.distance = 1;
    renderer.drawableSizeWillChange({800, 400}, {800, 400});
    EXPECT_EQ(renderer.camera.distance, 1);
}

TEST(SceneFraming, dropsAWaitingFitOnceOneHasBeenMade) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.upload(cube());
    renderer.drawableSizeWillChange({800, 400}, {800, 400});
    renderer.reframe(true);
    renderer.camera.distance = 1;
    renderer.drawableSizeWillChange({800, 401}, {800, 401});
    EXPECT_EQ(renderer.camera.distance, 1);
}

TEST(SceneFraming, movesTheGridWithTheTurnedModel) {
    Scene scene;
    scene.renderer.upload(box({0, 0, 0}, {4, 2, 2}));
    // 0.02 × 4 below.
    EXPECT_NEAR(scene.renderer.contents().gridPlan->y, -0.08F, 1e-6F);
    EXPECT_TRUE(scene.renderer.setModelRotation({0, 0, 1.5707964F}));
    EXPECT_NEAR(scene.renderer.contents().gridPlan->y, -1 - 0.08F, 1e-5F);
    EXPECT_FALSE(scene.renderer.setModelRotation({0, 0, 1.5707964F}));
}

TEST(SceneFraming, laysTheGridUnderTheSurfaceRatherThanTheModel) {
    Scene scene;
    scene.renderer.upload(cube());
    EXPECT_FLOAT_EQ(scene.renderer.contents().gridPlan->y, -1.04F);
    scene.renderer.uploadSurface(surface({-1, 4, -1}, {1, 6, 1}));
    EXPECT_FLOAT_EQ(scene.renderer.contents().gridPlan->y, 3.96F);
    scene.renderer.clear();
    EXPECT_FLOAT_EQ(scene.renderer.contents().gridPlan->y, 3.96F);
    scene.renderer.clearResults();
    EXPECT_FLOAT_EQ(scene.renderer.contents().gridPlan->y, -0.06F);
}

TEST(SceneFraming, readsPixelsPerPointFromTheView) {
    Scene scene;
    scene.renderer.drawableSizeWillChange({1600, 800}, {800, 400});
    EXPECT_EQ(scene.renderer.pointScale(), 2);
    scene.renderer.drawableSizeWillChange({1600, 800}, {0, 0});
    EXPECT_EQ(scene.renderer.pointScale(), 2);
    EXPECT_EQ(scene.renderer.viewportSize(), Vec2(1600, 800));
    EXPECT_EQ(scene.renderer.viewSizePoints(), Vec2(0, 0));
    scene.renderer.drawableSizeWillChange({400, 200}, {800, 400});
    EXPECT_EQ(scene.renderer.pointScale(), 1);
}

} // namespace
} // namespace ostrella
