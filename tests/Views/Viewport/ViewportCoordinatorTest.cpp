#include "Views/Viewport/ViewportBench.h"

#include <cmath>

namespace ostrella::test {
namespace {

class ViewportCoordinatorTest : public ViewportBench {
protected:
    ViewportCoordinatorTest() { turn(); }
};

TEST_F(ViewportCoordinatorTest, bringsTogglesToTheRendererInTheNextTurn) {
    settings.setWireframe(true);
    settings.setShowGrid(false);
    settings.setColormapEnabled(true);
    settings.setStreamlinesEnabled(true);
    settings.setVortexEnabled(true);
    settings.setFlowAnimation(false);
    EXPECT_FALSE(renderer.wireframe);
    turn();
    EXPECT_TRUE(renderer.wireframe);
    EXPECT_FALSE(renderer.showGrid);
    EXPECT_TRUE(renderer.colormapEnabled);
    EXPECT_TRUE(renderer.streamlinesEnabled);
    EXPECT_TRUE(renderer.vortexEnabled);
    EXPECT_FALSE(renderer.flowAnimation);
}

TEST_F(ViewportCoordinatorTest, updatesOnceForAllThatIsSetInATurn) {
    redraws = 0;
    settings.setWireframe(true);
    settings.setShowGrid(false);
    parameters.setAlpha(3);
    parameters.setRotationY(10);
    EXPECT_EQ(redraws, 0);
    turn();
    EXPECT_EQ(redraws, 1);
    turn();
    EXPECT_EQ(redraws, 1) << "and not at all while nothing is set";
}

TEST_F(ViewportCoordinatorTest, valuesTheViewportDoesNotShowCostNoFrame) {
    redraws = 0;
    parameters.setVelocity(80);
    parameters.setDensity(1);
    settings.setViewPresetIsCurrent(false);
    turn();
    EXPECT_EQ(redraws, 0);
}

TEST_F(ViewportCoordinatorTest, asksTheSystemForItsWishForLessMotion) {
    coordinator.prefersReducedMotion = [] { return true; };
    coordinator.scheduleUpdate();
    turn();
    EXPECT_TRUE(renderer.reduceMotion);
    settings.requestView(ViewPreset::top);
    turn();
    EXPECT_TRUE(view.isPaused()) << "views change without a tween";
    EXPECT_EQ(renderer.camera.elevation, 1.57079625F);
}

TEST_F(ViewportCoordinatorTest, turnsTheModelAndTheFreeStream) {
    parameters.setRotationX(90);
    parameters.setAlpha(90);
    turn();
    EXPECT_NEAR(renderer.modelRotation().x, 1.5707963F, 1e-6);
    EXPECT_EQ(renderer.modelRotation().y, 0);
    // Straight from below: at 90 degrees of attack nothing is left along x.
    ASSERT_TRUE(renderer.freeStream);
    EXPECT_NEAR(renderer.freeStream->x, 0, 1e-6);
    EXPECT_NEAR(std::abs(renderer.freeStream->y), 1, 1e-6);
}

TEST_F(ViewportCoordinatorTest, uploadsOnceWhenFileAndMeshAreSetOneAfterTheOther) {
    MetalRenderer once([] { return 0.0; });
    once.upload(boxMesh(Vec3(-1), Vec3(1)));
    loadBox();
    // Each replaced buffer counts on; one upload has replaced as many here as there.
    EXPECT_EQ(renderer.buffers()[SceneBuffer::modelVertices].version,
        once.buffers()[SceneBuffer::modelVertices].version);
    EXPECT_EQ(renderer.contents().meshIndexCount, 36U);
}

TEST_F(ViewportCoordinatorTest, theSameModelIsNotUploadedAgain) {
    loadBox();
    const auto version = renderer.buffers()[SceneBuffer::modelVertices].version;
    parameters.setMesh(TriangleMesh(*parameters.mesh()));
    settings.setWireframe(true);
    turn();
    EXPECT_EQ(renderer.buffers()[SceneBuffer::modelVertices].version, version);
}

TEST_F(ViewportCoordinatorTest, anotherFileIsUploadedWhateverItHolds) {
    loadBox();
    const auto version = renderer.buffers()[SceneBuffer::modelVertices].version;
    load(TriangleMesh(*parameters.mesh()), "copy of box.stl");
    EXPECT_GT(renderer.buffers()[SceneBuffer::modelVertices].version, version);
}

TEST_F(ViewportCoordinatorTest, anotherMeshOfTheSameFileIsUploaded) {
    loadBox();
    load(boxMesh(Vec3(-3), Vec3(3)));
    EXPECT_EQ(renderer.contents().meshBounds.max, Vec3(3));
    EXPECT_NEAR(renderer.camera.distance, distanceFor(3 * std::sqrt(3.0F)), 1e-3);
}

TEST_F(ViewportCoordinatorTest, theModelGoesWithItsMesh) {
    loadBox();
    ASSERT_TRUE(renderer.hasModel());
    parameters.setMesh(std::nullopt);
    turn();
    EXPECT_FALSE(renderer.hasModel());
    loadBox();
    EXPECT_TRUE(renderer.hasModel());
}

TEST_F(ViewportCoordinatorTest, aNewModelEndsOrientMode) {
    loadBox();
    enterOrientMode();
    ASSERT_TRUE(renderer.orientMode);
    parameters.setMesh(boxMesh(Vec3(-2), Vec3(2)));
    coordinator.update();
    EXPECT_TRUE(settings.orientMode()) << "an update changes no shared state itself";
    turn();
    EXPECT_FALSE(settings.orientMode());
    EXPECT_FALSE(renderer.orientMode);
}

TEST_F(ViewportCoordinatorTest, aResultIsUploadedWithWhatItHoldsAndGoesWithIt) {
    loadBox();
    SimulationResult result = resultAt("run-1", Vec3(-1), Vec3(1));
    result.streamlines = diagonalLines(Vec3(-2), Vec3(4));
    result.vortex = smallVortex();
    parameters.setLastRunResult(result);
    turn();
    EXPECT_EQ(renderer.contents().surfaceIndexCount, 3U);
    EXPECT_GT(renderer.contents().ribbonIndexCount, 0U);
    EXPECT_EQ(renderer.contents().vortexIndexCount, 3U);
    parameters.setLastRunResult(std::nullopt);
    turn();
    EXPECT_FALSE(renderer.hasResult());
    EXPECT_TRUE(renderer.hasModel());
}

TEST_F(ViewportCoordinatorTest, aResultIsKnownByItsDirectory) {
    parameters.setLastRunResult(resultAt("run-1", Vec3(-1), Vec3(1)));
    turn();
    parameters.setLastRunResult(resultAt("run-1", Vec3(-5), Vec3(5)));
    turn();
    EXPECT_EQ(renderer.contents().surfaceBounds.max, Vec3(1));
    parameters.setLastRunResult(resultAt("run-2", Vec3(-5), Vec3(5)));
    turn();
    EXPECT_EQ(renderer.contents().surfaceBounds.max, Vec3(5));
}

TEST_F(ViewportCoordinatorTest, whatAResultLacksIsNotLeftFromTheOneBefore) {
    SimulationResult first = resultAt("run-1", Vec3(-1), Vec3(1));
    first.vortex = smallVortex();
    parameters.setLastRunResult(first);
    turn();
    parameters.setLastRunResult(resultAt("run-2", Vec3(-1), Vec3(1)));
    turn();
    EXPECT_EQ(renderer.contents().vortexIndexCount, 0U);
    EXPECT_EQ(renderer.contents().surfaceIndexCount, 3U);
}

// The order of an update: what comes earlier is there for what comes later.

TEST_F(ViewportCoordinatorTest, togglesComeBeforeTheFrameOfAResult) {
    loadBox();
    settings.setColormapEnabled(true);
    parameters.setLastRunResult(resultAt("run-1", Vec3(-4), Vec3(4)));
    turn();
    EXPECT_NEAR(renderer.camera.distance, distanceFor(4 * std::sqrt(3.0F)), 1e-3)
        << "of the surface, which the colour map shows";
}

TEST_F(ViewportCoordinatorTest, theTurnComesBeforeTheFrameOfAModel) {
    parameters.setRotationZ(45);
    load(boxMesh(Vec3(-2, -1, 0), Vec3(2, 1, 0)));
    // A plate of 4 m by 2 m turned by 45 degrees fills a square of 6/sqrt(2) m.
    EXPECT_NEAR(renderer.camera.distance, distanceFor(3), 1e-3);
}

TEST_F(ViewportCoordinatorTest, insetsComeBeforeTheFrameOfAModel) {
    settings.setViewportInsets({0, 150, 0, 150});
    load(boxMesh(Vec3(-1), Vec3(1)));
    // Three tenths of 400 points are left free, and the view is 300 points high.
    EXPECT_NEAR(renderer.camera.distance, distanceFor(std::sqrt(3.0F), 0.4F), 1e-2);
}

TEST_F(ViewportCoordinatorTest, theRingsBackOffFromTheCardOfTheirMode) {
    coordinator.prefersReducedMotion = [] { return true; };
    loadBox();
    load(boxMesh(Vec3(-1), Vec3(1)));
    enterOrientMode();
    const float radius = 1.196F * std::sqrt(3.0F);
    EXPECT_NEAR(renderer.camera.distance, distanceFor(radius, 1), 1e-2);
    // 180 of 300 points are left.
    settings.setViewportInsets({0, 0, 120, 0});
    turn();
    EXPECT_NEAR(renderer.camera.distance, distanceFor(radius, 0.6F), 1e-2);
    settings.setViewportInsets({0, 0, 150, 0});
    turn();
    EXPECT_NEAR(renderer.camera.distance, distanceFor(radius, 0.6F), 1e-2) << "only for the card";
}

TEST_F(ViewportCoordinatorTest, theModelComesBeforeAResultsFrame) {
    parameters.setSTLURL("box.stl");
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    parameters.setLastRunResult(resultAt("run-1", Vec3(-4), Vec3(4)));
    renderer.camera.azimuth = 1;
    turn();
    // With the colour map off the model is framed; its upload took the iso pose, the result kept
    // it.
    EXPECT_NEAR(renderer.camera.distance, distanceFor(std::sqrt(3.0F)), 1e-3);
    EXPECT_EQ(renderer.camera.azimuth, 0.785398126F);
}

TEST_F(ViewportCoordinatorTest, aResultIsUploadedAfterItsModel) {
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    parameters.setLastRunResult(resultAt("run-1", Vec3(-4), Vec3(4)));
    turn();
    EXPECT_GT(renderer.buffers()[SceneBuffer::surfaceVertices].version,
        renderer.buffers()[SceneBuffer::modelVertices].version);
}

TEST_F(ViewportCoordinatorTest, aPresetComesAfterTheFrameOfAModelAndAResult) {
    settings.requestView(ViewPreset::top);
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    parameters.setLastRunResult(resultAt("run-1", Vec3(-4), Vec3(4)));
    turn();
    finishTweens();
    EXPECT_EQ(renderer.camera.elevation, 1.57079625F);
    EXPECT_NEAR(renderer.camera.distance, distanceFor(std::sqrt(3.0F)), 1e-3);
}

TEST_F(ViewportCoordinatorTest, aResultKeepsThePoseAndAReframeThenTakesTheIsoPose) {
    loadBox();
    renderer.camera.azimuth = 1;
    parameters.setLastRunResult(resultAt("run-1", Vec3(-1), Vec3(1)));
    turn();
    EXPECT_EQ(renderer.camera.azimuth, 1);

    settings.requestView(ViewPreset::front);
    turn();
    finishTweens();
    parameters.setLastRunResult(resultAt("run-2", Vec3(-1), Vec3(1)));
    settings.setReframeRequestID(QUuid::createUuid());
    turn();
    EXPECT_EQ(renderer.camera.azimuth, 0.785398126F);
    EXPECT_TRUE(settings.viewPresetIsCurrent()) << "the mark of the preset stays";
    EXPECT_EQ(settings.viewPreset(), ViewPreset::front);
}

TEST_F(ViewportCoordinatorTest, aPresetComesAfterAReframe) {
    loadBox();
    renderer.camera.elevation = -1;
    settings.requestView(ViewPreset::top);
    settings.setReframeRequestID(QUuid::createUuid());
    turn();
    // The reframe jumps to the iso pose, and from there the view moves on to the preset.
    EXPECT_FALSE(view.isPaused());
    EXPECT_EQ(renderer.camera.elevation, 0.5654867F);
    finishTweens();
    EXPECT_EQ(renderer.camera.elevation, 1.57079625F);
}

TEST_F(ViewportCoordinatorTest, aStaleRequestDoesNothing) {
    loadBox();
    settings.requestView(ViewPreset::top);
    turn();
    finishTweens();
    renderer.camera.azimuth = 1;
    renderer.camera.distance = 3;
    const ArcBallCamera mine = renderer.camera;
    settings.setWireframe(true);
    settings.setReframeRequestID(settings.reframeRequestID());
    turn();
    EXPECT_EQ(renderer.camera, mine);
    EXPECT_TRUE(view.isPaused());
    settings.requestView(ViewPreset::top);
    turn();
    EXPECT_FALSE(view.isPaused()) << "the same preset may be asked for again";
}

TEST_F(ViewportCoordinatorTest, theViewCanOrientWithAModelAtRest) {
    EXPECT_FALSE(view.canOrient);
    loadBox();
    EXPECT_TRUE(view.canOrient);
    parameters.setIsRunning(true);
    turn();
    EXPECT_FALSE(view.canOrient);
    parameters.setIsRunning(false);
    parameters.setLoadingFileName("next.stl");
    turn();
    EXPECT_FALSE(view.canOrient);
    parameters.setLoadingFileName(std::nullopt);
    turn();
    EXPECT_TRUE(view.canOrient);
}

TEST_F(ViewportCoordinatorTest, aRunEndsOrientModeAndADragUnderWay) {
    loadBox();
    enterOrientMode();
    press(pointOn(OrientationAxis::y));
    ASSERT_TRUE(view.ringDrag());
    parameters.setIsRunning(true);
    coordinator.update();
    EXPECT_FALSE(view.ringDrag());
    EXPECT_FALSE(renderer.orientMode);
    EXPECT_EQ(renderer.activeRing, std::nullopt);
    EXPECT_EQ(renderer.hoveredRing, std::nullopt);
    EXPECT_EQ(view.hoverCursor(), ViewportInput::Cursor::arrow);
    EXPECT_TRUE(settings.orientMode()) << "left to the queue";
    turn();
    EXPECT_FALSE(settings.orientMode());
    parameters.setIsRunning(false);
    turn();
    EXPECT_FALSE(renderer.orientMode);
}

TEST_F(ViewportCoordinatorTest, orientModeTurnedOffElsewhereEndsADragUnderWay) {
    loadBox();
    enterOrientMode();
    press(pointOn(OrientationAxis::y));
    ASSERT_TRUE(view.ringDrag());
    settings.setOrientMode(false);
    turn();
    EXPECT_FALSE(view.ringDrag());
    drag(besideBox);
    EXPECT_EQ(parameters.rotationY(), 0);
}

TEST_F(ViewportCoordinatorTest, orientModeBacksTheCameraOffOnce) {
    loadBox();
    const float distance = renderer.camera.distance;
    settings.setOrientMode(true);
    turn();
    EXPECT_FALSE(view.isPaused());
    finishTweens();
    EXPECT_NEAR(renderer.camera.distance, 1.196F * distance, 1e-3);
    renderer.camera.distance = distance;
    settings.setWireframe(true);
    turn();
    EXPECT_TRUE(view.isPaused()) << "it was on already";
}

TEST_F(ViewportCoordinatorTest, aRingTurnsTheParametersAndTheModelAtOnce) {
    loadBox();
    parameters.setLastRunResult(resultAt("run-1", Vec3(-1), Vec3(1)));
    parameters.setRotationZ(90);
    turn();
    view.onRotate(OrientationAxis::x, 30);
    // About the world's x axis: the model's own x axis, which the turn about z had brought to y,
    // goes up to (0, cos 30, sin 30), and its y axis stays at -x.
    EXPECT_NEAR(parameters.rotationX(), 0, 1e-9);
    EXPECT_NEAR(parameters.rotationY(), -30, 1e-9);
    EXPECT_NEAR(parameters.rotationZ(), 90, 1e-9);
    EXPECT_NEAR(renderer.modelRotation().y, -0.52359878F, 1e-6);
    EXPECT_FALSE(parameters.lastRunResult()) << "a result belongs to one orientation";

    parameters.setIsRunning(true);
    view.onRotate(OrientationAxis::x, 30);
    EXPECT_NEAR(parameters.rotationY(), -30, 1e-9) << "not during a run";
}

TEST_F(ViewportCoordinatorTest, whenATurnEndsTheCameraMakesRoomForTheRings) {
    loadBox();
    enterOrientMode();
    renderer.camera.distance *= 0.5F;
    view.onRotateEnded();
    EXPECT_TRUE(renderer.wantsContinuousRedraw());
}

TEST_F(ViewportCoordinatorTest, theFlowRunsWhileItsLinesAreShown) {
    SimulationResult result = resultAt("run-1", Vec3(-1), Vec3(1));
    result.streamlines = diagonalLines(Vec3(-2), Vec3(4));
    parameters.setLastRunResult(result);
    turn();
    EXPECT_TRUE(view.isPaused());
    settings.setStreamlinesEnabled(true);
    turn();
    EXPECT_FALSE(view.isPaused());
    redraws = 0;
    settings.setFlowAnimation(false);
    turn();
    EXPECT_TRUE(view.isPaused());
    EXPECT_EQ(redraws, 1);
}

} // namespace
} // namespace ostrella::test
