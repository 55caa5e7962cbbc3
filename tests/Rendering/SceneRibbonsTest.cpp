// The ribbons' block: widths, distances, and the clock of the pulses.
#include "Scenes.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using namespace scenes;

/// A scene whose clock starts at 100 s, with one line through a box of 4 × 2 × 2 around the origin.
struct Flow : Scene {
    Flow() {
        renderer.uploadStreamlines(lines({-2, -1, -1}, {2, 1, 1}));
        renderer.streamlinesEnabled = true;
        renderer.camera.target = {0, 0, 0};
        renderer.camera.distance = 10;
    }
    RibbonUniforms block(Vec2 pixelSize = {800, 400}) {
        const FrameEncoding frame = renderer.encodeScene(pixelSize, now, false);
        return std::get<RibbonUniforms>(theDraw(frame, Pipeline::ribbon).extra);
    }
};

TEST(SceneRibbons, tellTheShadersRowByRow) {
    Flow scene;
    scene.renderer.uploadSurface(surface({-1, -2, -1}, {1, 3, 1}));
    scene.now = 101.5;
    const RibbonUniforms block = scene.block();
    EXPECT_EQ(block.view, Vec4(800, 400, 0.875F, 1));
    // Half the diagonal of 4 × 2 × 2 is √6.
    EXPECT_NEAR(block.depth.x, 7.5505103F, 1e-5F);
    EXPECT_NEAR(block.depth.y, 12.4494897F, 1e-5F);
    EXPECT_EQ(block.depth.z, 0.62F);
    EXPECT_EQ(block.depth.w, 0.9F);
    // The surface is 5 m high: 8 m/s, and 2 m between pulses.
    EXPECT_EQ(block.pulse, Vec4(1.5F, 2, 8, 0.07F));
    EXPECT_EQ(block.look, Vec4(0.55F, 1, 0.002F, 0.85F));
    EXPECT_EQ(block.floorColor, Vec4(0.55F, 0.55F, 0.70F, 1));
}

TEST(SceneRibbons, areAsWideInPointsWhateverTheScreen) {
    Flow scene;
    scene.renderer.drawableSizeWillChange({1600, 800}, {800, 400});
    EXPECT_EQ(scene.block({1600, 800}).view, Vec4(1600, 800, 1.75F, 1));
    // A picture of another size is drawn at the view's scale.
    EXPECT_EQ(scene.block({320, 200}).view, Vec4(320, 200, 1.75F, 1));
}

TEST(SceneRibbons, takeTheirPaceFromTheSurfaceThenTheModelThenTheLines) {
    Flow scene;
    // A quarter of the lines' 4 m.
    EXPECT_FLOAT_EQ(scene.block().pulse.z, 1.6F);
    scene.renderer.upload(box({0, 0, 0}, {0.5F, 3, 1}));
    EXPECT_FLOAT_EQ(scene.block().pulse.z, 4.8F);
    scene.renderer.uploadSurface(surface({0, 0, 0}, {10, 1, 1}));
    EXPECT_FLOAT_EQ(scene.block().pulse.z, 16);
    EXPECT_FLOAT_EQ(scene.block().pulse.y, 4);
}

TEST(SceneRibbons, keepAPaceForABodyOfNoSize) {
    Flow scene;
    scene.renderer.uploadSurface(surface({1, 1, 1}, {1, 1, 1}));
    EXPECT_FLOAT_EQ(scene.block().pulse.z, 0.0016F);
    EXPECT_FLOAT_EQ(scene.block().pulse.y, 0.0004F);
}

TEST(SceneRibbons, beginAnewEveryFourSeconds) {
    Flow scene;
    const auto phaseAfter = [&](double seconds) {
        scene.now = 100 + seconds;
        return scene.block().pulse.x;
    };
    EXPECT_FLOAT_EQ(phaseAfter(0), 0);
    EXPECT_FLOAT_EQ(phaseAfter(3.5), 3.5F);
    EXPECT_NEAR(phaseAfter(4.25), 0.25F, 1e-6F);
    // After a year, to a hundredth of a frame.
    EXPECT_NEAR(phaseAfter(4.0 * 8e6 + 1.25), 1.25F, 1e-4F);
}

TEST(SceneRibbons, standStillWithoutTheAnimationAndUnderReducedMotion) {
    Flow scene;
    EXPECT_EQ(scene.block().look.y, 1.0F);
    scene.renderer.flowAnimation = false;
    EXPECT_EQ(scene.block().look.y, 0.0F);
    scene.renderer.flowAnimation = true;
    scene.renderer.reduceMotion = true;
    EXPECT_EQ(scene.block().look.y, 0.0F);
}

TEST(SceneRibbons, haveNoNegativeDistanceFromWithin) {
    Flow scene;
    scene.renderer.camera.distance = 1;
    EXPECT_EQ(scene.block().depth.x, 0.0F);
    EXPECT_NEAR(scene.block().depth.y, 1 + 2.4494897F, 1e-5F);
}

TEST(SceneRibbons, measureDistancesToWhereTheResultStands) {
    Flow scene;
    // Turned by half a turn about y at (6, 0, 0), results move by (12, 0, 0).
    scene.renderer.upload(box({5, -1, -1}, {7, 1, 1}));
    scene.renderer.setModelRotation({0, 3.1415927F, 0});
    scene.renderer.camera.target = {12, 0, 0};
    scene.renderer.camera.distance = 10;
    EXPECT_NEAR(scene.block().depth.x, 7.5505103F, 1e-4F);
}

TEST(SceneRibbons, keepFramesComingWhileTheFlowMoves) {
    Flow scene;
    MetalRenderer& renderer = scene.renderer;
    EXPECT_TRUE(renderer.wantsContinuousRedraw());
    renderer.flowAnimation = false;
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
    renderer.flowAnimation = true;
    renderer.streamlinesEnabled = false;
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
    renderer.streamlinesEnabled = true;
    renderer.reduceMotion = true;
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
    renderer.reduceMotion = false;
    EXPECT_TRUE(renderer.wantsContinuousRedraw());
    renderer.uploadStreamlines({});
    EXPECT_FALSE(renderer.wantsContinuousRedraw());
}

} // namespace
} // namespace ostrella
