// The order of a frame's draws and the states each of them is drawn with.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ostrella {
namespace {

using namespace scenes;

const Words gridDraws{"grid gridMinor overlay lines", "grid gridMajor overlay lines"};
const std::string surfaceDraw = "surface surfaceVertices surfaceIndices less triangles";
const std::string bodyDraw = "mesh modelVertices modelIndices less triangles";
const std::string edgeDraw = "featureLine featureEdges lessEqualReadOnly lines";
const std::string wireDraw = "preRunWire modelVertices modelIndices readOnly triangles as lines";
const Words glassDraws{"preRunDepth modelVertices modelIndices less triangles",
    "preRunFill modelVertices modelIndices lessEqualReadOnly triangles"};
const std::string ribbonDraw = "ribbon ribbonPoints ribbonIndices lessEqualReadOnly triangles";
const Words vortexDraws{"vortexDepth vortexVertices vortexIndices less triangles",
    "vortex vortexVertices vortexIndices lessEqualReadOnly triangles"};
const Words ringDraws{
    "ring ringX overlay strip", "ring ringY overlay strip", "ring ringZ overlay strip"};
const std::string gizmoDraw = "gizmo gizmoSegments overlay strip";

Words operator+(Words a, const Words& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
Words operator+(Words a, const std::string& b) {
    a.push_back(b);
    return a;
}

/// A scene without a grid, so that its draws are the body's and what follows.
struct Bare : Scene {
    Bare() { renderer.showGrid = false; }
};

void uploadResult(MetalRenderer& renderer) {
    renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
    renderer.uploadVortex(vortex());
}

TEST(ScenePasses, showTheGridAloneInAnEmptyScene) {
    Scene scene;
    EXPECT_EQ(describe(scene.frame()), gridDraws);
    scene.renderer.showGrid = false;
    EXPECT_EQ(describe(scene.frame()), Words{});
}

TEST(ScenePasses, showALoadedBodyAsGlassWithItsDepthsFirst) {
    Scene scene;
    scene.renderer.upload(cube());
    EXPECT_EQ(describe(scene.frame()), gridDraws + glassDraws + edgeDraw + gizmoDraw);
}

TEST(ScenePasses, showALoadedBodysWireframeOnceAndItsEdges) {
    Bare scene;
    scene.renderer.upload(cube());
    scene.renderer.wireframe = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + wireDraw + edgeDraw + gizmoDraw);
}

TEST(ScenePasses, keepTheGlassWhateverLayersAreAskedForWithoutAResult) {
    Bare scene;
    scene.renderer.upload(cube());
    scene.renderer.colormapEnabled = true;
    scene.renderer.streamlinesEnabled = true;
    scene.renderer.vortexEnabled = true;
    EXPECT_EQ(describe(scene.frame()), glassDraws + edgeDraw + gizmoDraw);
}

TEST(ScenePasses, giveWayToTheOpaqueBodyWithAnyLayerOfAResult) {
    for (const int layer : {0, 1, 2}) {
        Bare scene;
        scene.renderer.upload(cube());
        if (layer == 0)
            scene.renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
        else if (layer == 1)
            scene.renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
        else
            scene.renderer.uploadVortex(vortex());
        EXPECT_EQ(describe(scene.frame()), Words{} + bodyDraw + gizmoDraw) << layer;
        scene.renderer.wireframe = true;
        EXPECT_EQ(describe(scene.frame()), Words{} + (bodyDraw + " as lines") + gizmoDraw) << layer;
    }
}

TEST(ScenePasses, showTheColouredSurfaceInPlaceOfTheBody) {
    Bare scene;
    scene.renderer.upload(cube());
    uploadResult(scene.renderer);
    scene.renderer.colormapEnabled = true;
    scene.renderer.wireframe = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + surfaceDraw + gizmoDraw);
}

TEST(ScenePasses, showTheOpaqueBodyWhereAResultHasNoSurface) {
    Bare scene;
    scene.renderer.upload(cube());
    scene.renderer.uploadVortex(vortex());
    scene.renderer.colormapEnabled = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + bodyDraw + gizmoDraw);
}

TEST(ScenePasses, drawASurfaceOfSegmentsAsLines) {
    Bare scene;
    SurfaceField segments = surface(Vec3(-1.0F), Vec3(1.0F));
    segments.primitive = SurfaceField::Primitive::line;
    segments.indices = {0, 1, 1, 2};
    scene.renderer.uploadSurface(segments);
    scene.renderer.colormapEnabled = true;
    const FrameEncoding frame = scene.frame();
    EXPECT_EQ(describe(frame.draws.at(0)), "surface surfaceVertices surfaceIndices less lines");
    EXPECT_EQ(frame.draws[0].count, 4U);
}

TEST(ScenePasses, drawNoBodyOfAResultWithoutAModelButAllElse) {
    Bare scene;
    uploadResult(scene.renderer);
    scene.renderer.streamlinesEnabled = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + ribbonDraw + gizmoDraw);
}

TEST(ScenePasses, runFromTheGridToTheGizmo) {
    Scene scene;
    scene.renderer.upload(cube());
    uploadResult(scene.renderer);
    scene.renderer.colormapEnabled = true;
    scene.renderer.streamlinesEnabled = true;
    scene.renderer.vortexEnabled = true;
    scene.renderer.orientMode = true;
    EXPECT_EQ(describe(scene.frame()),
        gridDraws + surfaceDraw + edgeDraw + ribbonDraw + vortexDraws + ringDraws + gizmoDraw);
}

TEST(ScenePasses, leaveGizmoAndRingsOutOfASnapshot) {
    Scene scene;
    scene.renderer.upload(cube());
    uploadResult(scene.renderer);
    scene.renderer.streamlinesEnabled = true;
    scene.renderer.vortexEnabled = true;
    scene.renderer.orientMode = true;
    EXPECT_EQ(
        describe(scene.snapshot()), gridDraws + bodyDraw + edgeDraw + ribbonDraw + vortexDraws);
}

TEST(ScenePasses, drawTheEdgesOfAnOpaqueBodyInOrientModeOnly) {
    Bare scene;
    scene.renderer.upload(cube());
    uploadResult(scene.renderer);
    EXPECT_EQ(describe(scene.snapshot()), Words{bodyDraw});
    scene.renderer.orientMode = true;
    EXPECT_EQ(describe(scene.snapshot()), Words{} + bodyDraw + edgeDraw);
    const DrawCommand edges = scene.snapshot().draws.at(1);
    EXPECT_FLOAT_EQ(std::get<PreRunUniforms>(edges.extra).color.w, 0.6F);
}

TEST(ScenePasses, drawNoEdgesOfASurfaceWithoutAModel) {
    Bare scene;
    uploadResult(scene.renderer);
    scene.renderer.colormapEnabled = true;
    scene.renderer.orientMode = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + surfaceDraw + gizmoDraw);
}

/// A closed surface that turns by 15 degrees from facet to facet, which is no crease.
TriangleMesh torus() {
    constexpr int parts = 24;
    const auto at = [](int i, int j) {
        const float around = 6.2831853F * static_cast<float>(i % parts) / parts;
        const float across = 6.2831853F * static_cast<float>(j % parts) / parts;
        const float radius = 2.0F + std::cos(across);
        return Vec3(radius * std::cos(around), std::sin(across), radius * std::sin(around));
    };
    std::vector<Vec3> positions;
    for (int i = 0; i < parts; ++i) {
        for (int j = 0; j < parts; ++j) {
            for (const Vec3& corner : {at(i, j), at(i, j + 1), at(i + 1, j), at(i + 1, j),
                     at(i, j + 1), at(i + 1, j + 1)})
                positions.push_back(corner);
        }
    }
    return {positions, std::vector<Vec3>(positions.size(), Vec3(0, 1, 0))};
}

TEST(ScenePasses, drawNoEdgesOfASmoothBody) {
    Bare scene;
    scene.renderer.upload(torus());
    EXPECT_EQ(describe(scene.frame()), glassDraws + gizmoDraw);
    EXPECT_TRUE(scene.renderer.buffers()[SceneBuffer::featureEdges].bytes.empty());
}

TEST(ScenePasses, needBothTheSwitchAndTheLayer) {
    Bare scene;
    scene.renderer.upload(cube());
    scene.renderer.uploadVortex(vortex());
    scene.renderer.streamlinesEnabled = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + bodyDraw + gizmoDraw);
    scene.renderer.vortexEnabled = true;
    EXPECT_EQ(describe(scene.frame()), Words{} + bodyDraw + vortexDraws + gizmoDraw);
}

TEST(ScenePasses, countWhatLiesInTheBuffers) {
    Scene scene;
    scene.renderer.upload(cube());
    uploadResult(scene.renderer);
    scene.renderer.colormapEnabled = true;
    scene.renderer.streamlinesEnabled = true;
    scene.renderer.vortexEnabled = true;
    scene.renderer.orientMode = true;
    scene.renderer.freeStream = std::nullopt;
    const FrameEncoding frame = scene.frame();
    std::vector<std::uint32_t> counts;
    for (const DrawCommand& draw : frame.draws)
        counts.push_back(draw.count);
    // The grid of a box of 2 × 2 × 2 has a spacing of 0.5, 14 lines on each side of the middle and
    // every second line major: of 29 lines a way, 15 have an even index. A cube has 12 edges; two
    // segments of a streamline are four triangles.
    EXPECT_EQ(counts,
        (std::vector<std::uint32_t>{2 * 14 * 2, 2 * 15 * 2, 3, 24, 12, 3, 3, 258, 258, 258, 4}));
    // Three axes and the strokes of X, Y and Z.
    EXPECT_EQ(frame.draws.back().instances, 3U + 2U + 3U + 3U);
}

/// From what lies below to what lies on top.
int layerOf(Pipeline pipeline) {
    switch (pipeline) {
    case Pipeline::grid:
        return 0;
    case Pipeline::mesh:
    case Pipeline::surface:
    case Pipeline::preRunDepth:
    case Pipeline::preRunWire:
        return 1;
    case Pipeline::preRunFill:
        return 2;
    case Pipeline::featureLine:
        return 3;
    case Pipeline::ribbon:
        return 4;
    case Pipeline::vortexDepth:
        return 5;
    case Pipeline::vortex:
        return 6;
    case Pipeline::ring:
        return 7;
    case Pipeline::gizmo:
        break;
    }
    return 8;
}

/// A scene for each choice of everything that can be on or off.
void checkScene(unsigned choice) {
    const auto on = [&](unsigned bit) { return (choice >> bit & 1U) != 0; };
    Scene scene;
    MetalRenderer& renderer = scene.renderer;
    if (on(0))
        renderer.upload(cube());
    if (on(1))
        renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    if (on(2))
        renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
    if (on(3))
        renderer.uploadVortex(vortex());
    renderer.colormapEnabled = on(4);
    renderer.streamlinesEnabled = on(5);
    renderer.vortexEnabled = on(6);
    renderer.wireframe = on(7);
    renderer.orientMode = on(8);
    renderer.showGrid = on(9);
    const FrameEncoding frame = scene.frame();

    int highest = 0;
    int bodies = 0;
    for (const DrawCommand& draw : frame.draws) {
        EXPECT_GE(layerOf(draw.pipeline), highest) << describe(draw);
        highest = layerOf(draw.pipeline);
        bodies += static_cast<int>(highest == 1);
        EXPECT_GT(draw.count, 0U);
        EXPECT_GT(draw.instances, 0U);
        EXPECT_LT(draw.uniforms, frame.uniforms.size());
        EXPECT_FALSE(renderer.buffers()[draw.vertices].bytes.empty()) << describe(draw);
        if (draw.indices) {
            EXPECT_EQ(renderer.buffers()[*draw.indices].bytes.size(), 4U * draw.count);
        }
    }
    const bool result = on(1) || on(2) || on(3);
    EXPECT_EQ(bodies, on(0) || (on(1) && on(4)) ? 1 : 0);
    const Words words = describe(frame);
    const auto has = [&](const std::string& word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    EXPECT_EQ(has(gridDraws[0]), on(9));
    EXPECT_EQ(has(gridDraws[1]), on(9));
    EXPECT_EQ(has(surfaceDraw), on(1) && on(4));
    EXPECT_EQ(has(glassDraws[0]), on(0) && !result && !on(7));
    EXPECT_EQ(has(glassDraws[1]), on(0) && !result && !on(7));
    EXPECT_EQ(has(wireDraw), on(0) && !result && on(7));
    EXPECT_EQ(has(bodyDraw), on(0) && result && !(on(1) && on(4)) && !on(7));
    EXPECT_EQ(has(bodyDraw + " as lines"), on(0) && result && !(on(1) && on(4)) && on(7));
    EXPECT_EQ(has(edgeDraw), on(0) && (!result || on(8)));
    EXPECT_EQ(has(ribbonDraw), on(2) && on(5));
    EXPECT_EQ(has(vortexDraws[0]), on(3) && on(6));
    EXPECT_EQ(has(vortexDraws[1]), on(3) && on(6));
    EXPECT_EQ(has(ringDraws[0]), on(0) && on(8));
    EXPECT_EQ(has(gizmoDraw), on(0) || result);
}

TEST(ScenePasses, drawInOrderAndOnlyWhatIsThereForEveryChoice) {
    for (unsigned choice = 0; choice < 1024; ++choice) {
        SCOPED_TRACE(choice);
        checkScene(choice);
    }
}

} // namespace
} // namespace ostrella
