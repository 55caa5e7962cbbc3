// The blocks that a frame hands to the shaders, float by float.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace ostrella {
namespace {

using namespace scenes;
using Floats = std::vector<float>;

// 0B0E14 and F5A524.
const Vec3 background{11 / 255.0F, 14 / 255.0F, 20 / 255.0F};
const Vec3 accent{245 / 255.0F, 165 / 255.0F, 36 / 255.0F};

void expectNear(const Floats& actual, const Floats& expected, float tolerance = 1e-6F) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "float " << i;
}

/// Looks along −z from 5 m.
void lookAlongZ(ArcBallCamera& camera) {
    camera.target = {0, 0, 0};
    camera.distance = 5;
    camera.azimuth = 0;
    camera.elevation = 0;
}

TEST(SceneUniforms, clearToTheBackground) {
    Scene scene;
    EXPECT_EQ(scene.frame().clearColor, background);
}

TEST(SceneUniforms, areTheMatricesTheLightTheColourAndTheRange) {
    Scene scene;
    lookAlongZ(scene.renderer.camera);
    const FrameEncoding frame = scene.renderer.encodeScene({800, 400}, 0, false);
    ASSERT_EQ(frame.uniforms.size(), 3U);
    // cot(π / 8) is 2.4142136, and half of that for a view twice as wide as high. The depth row is
    // f / (n − f) and n f / (n − f) with 0.01 and 10 000.
    expectNear(floats(frame.uniforms[0]),
        {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0,
            -5, 1, 1.2071068F, 0, 0, 0, 0, 2.4142136F, 0, 0, 0, 0, -1.000001F, -1, 0, 0,
            -0.01000001F, 0, 0.25916053F, 0.43193421F, 0.86386843F, 0, 0.62F, 0.72F, 0.85F, 1, -1,
            1, 0, 0});
}

TEST(SceneUniforms, fallBackOnTheWidthWhereAViewHasNoHeight) {
    Scene scene;
    const auto widthScale = [&](Vec2 size) {
        return scene.renderer.encodeScene(size, 0, true).uniforms[0].projectionMatrix[0][0];
    };
    EXPECT_NEAR(widthScale({1, 1}), 2.4142136F, 1e-5F);
    EXPECT_NEAR(widthScale({2, 1}), 1.2071068F, 1e-5F);
    EXPECT_NEAR(widthScale({0, 0}), 2414.2136F, 1e-2F);
    EXPECT_NEAR(widthScale({8000, 5000}), 2.4142136F / 1.6F, 1e-5F);
    EXPECT_NEAR(widthScale({1, 5000}), 2414.2136F, 1e-2F);
}

TEST(SceneUniforms, standTheModelTurnedTheWorldAsItIsAndResultsMoved) {
    Scene scene;
    MetalRenderer& renderer = scene.renderer;
    renderer.upload(box({1, -1, -1}, {5, 1, 1}));
    renderer.uploadSurface(surface({-1, 1, -1}, {1, 5, 1}));
    renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
    renderer.uploadVortex(vortex());
    renderer.setModelRotation({0, 0, 1.5707964F});
    renderer.orientMode = true;
    renderer.vortexEnabled = true;
    renderer.streamlinesEnabled = true;
    const FrameEncoding frame = scene.frame();
    // A quarter turn about z at (3, 0, 0): (3, 0, 0) + (y-axis for x, −x-axis for y). The solver's
    // body stands at (0, 3, 0), so that results move by (3, −3, 0).
    const Floats turned{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 3, -3, 0, 1};
    const Floats world{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const Floats moved{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 3, -3, 0, 1};
    for (const DrawCommand& draw : frame.draws) {
        SCOPED_TRACE(describe(draw));
        const Floats matrix = floats(frame.uniforms.at(draw.uniforms).modelMatrix);
        switch (draw.pipeline) {
        case Pipeline::mesh:
        case Pipeline::featureLine:
            expectNear(matrix, turned);
            break;
        case Pipeline::ribbon:
        case Pipeline::vortexDepth:
        case Pipeline::vortex:
            expectNear(matrix, moved);
            break;
        case Pipeline::grid:
        case Pipeline::ring:
            expectNear(matrix, world);
            break;
        default:
            break;
        }
    }
    renderer.colormapEnabled = true;
    const FrameEncoding colored = scene.frame();
    const DrawCommand draw = theDraw(colored, Pipeline::surface);
    expectNear(floats(colored.uniforms.at(draw.uniforms).modelMatrix), moved);
}

TEST(SceneUniforms, giveTheSurfaceItsScalarsRangeAndTheRibbonsTheirSpeeds) {
    Scene scene;
    MetalRenderer& renderer = scene.renderer;
    renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
    renderer.colormapEnabled = true;
    renderer.streamlinesEnabled = true;
    const FrameEncoding frame = scene.frame();
    EXPECT_EQ(frame.uniforms[theDraw(frame, Pipeline::surface).uniforms].scalarRange,
        Vec4(-0.5F, 1.5F, 0, 0));
    EXPECT_EQ(
        frame.uniforms[theDraw(frame, Pipeline::ribbon).uniforms].scalarRange, Vec4(10, 30, 0, 0));
}

TEST(SceneUniforms, fadeTheGridsLinesIntoTheBackground) {
    Scene scene;
    const FrameEncoding frame = scene.frame();
    ASSERT_EQ(frame.draws.size(), 2U);
    // An empty scene's grid: 21 lines of 0.5 m on each side of the origin.
    const auto rows = [](float share) {
        const Vec3 line = background + share * (Vec3(1.0F) - background);
        return Floats{line.x, line.y, line.z, 1, background.x, background.y, background.z, 1, 0, 0,
            10.5F, 0.25F};
    };
    expectNear(floats(std::get<GridUniforms>(frame.draws[0].extra)), rows(0.045F));
    expectNear(floats(std::get<GridUniforms>(frame.draws[1].extra)), rows(0.08F));
}

TEST(SceneUniforms, centreTheFadeWhereTheGridIs) {
    Scene scene;
    scene.renderer.upload(box({9, 0, -21}, {11, 2, -19}));
    const auto grid = std::get<GridUniforms>(scene.frame().draws[0].extra);
    expectNear(floats(grid.fade), {10, -20, 7, 0.25F});
}

Floats fillRows(float rimAlpha) {
    const Vec3 fill = background + 0.1F * (accent - background);
    return {
        fill.x, fill.y, fill.z, 0.88F, accent.x, accent.y, accent.z, rimAlpha, 0.6F, 0.8F, 3, 0};
}

Floats lineRows(float alpha) {
    return {accent.x, accent.y, accent.z, alpha, 0, 0, 0, 0, 0, 0, 1, 0.002F};
}

TEST(SceneUniforms, giveTheGlassItsFillItsRimAndItsShading) {
    Scene scene;
    scene.renderer.upload(cube());
    const auto expectGlass = [&](float rimAlpha, float edgeAlpha) {
        const FrameEncoding frame = scene.frame();
        for (const Pipeline pipeline : {Pipeline::preRunDepth, Pipeline::preRunFill})
            expectNear(floats(std::get<PreRunUniforms>(theDraw(frame, pipeline).extra)),
                fillRows(rimAlpha));
        expectNear(floats(std::get<PreRunUniforms>(theDraw(frame, Pipeline::featureLine).extra)),
            lineRows(edgeAlpha));
    };
    expectGlass(0.35F, 0.85F);
    scene.renderer.orientMode = true;
    expectGlass(0.55F, 1.0F);
}

TEST(SceneUniforms, drawTheWireframeInTheAccent) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.wireframe = true;
    for (const bool orienting : {false, true}) {
        scene.renderer.orientMode = orienting;
        const FrameEncoding frame = scene.frame();
        expectNear(floats(std::get<PreRunUniforms>(theDraw(frame, Pipeline::preRunWire).extra)),
            lineRows(0.55F));
        expectNear(floats(std::get<PreRunUniforms>(theDraw(frame, Pipeline::featureLine).extra)),
            lineRows(orienting ? 1.0F : 0.85F));
    }
}

TEST(SceneUniforms, leaveTheOpaqueBodyAndTheSurfaceWithoutAnExtraBlock) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    EXPECT_TRUE(
        std::holds_alternative<std::monostate>(theDraw(scene.frame(), Pipeline::mesh).extra));
    scene.renderer.colormapEnabled = true;
    EXPECT_TRUE(
        std::holds_alternative<std::monostate>(theDraw(scene.frame(), Pipeline::surface).extra));
}

TEST(SceneUniforms, tintTheVortexAlikeInBothOfItsDraws) {
    Scene scene;
    scene.renderer.uploadVortex(vortex());
    scene.renderer.vortexEnabled = true;
    const FrameEncoding frame = scene.frame();
    for (const Pipeline pipeline : {Pipeline::vortexDepth, Pipeline::vortex})
        expectNear(floats(std::get<VortexUniforms>(theDraw(frame, pipeline).extra)),
            {0.80F, 0.85F, 0.90F, 0.08F, 0.93F, 0.95F, 0.98F, 0.34F, 0.55F, 0.35F, 2.2F, 0});
}

} // namespace
} // namespace ostrella
