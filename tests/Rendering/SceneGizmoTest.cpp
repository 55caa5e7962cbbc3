// The gizmo in a frame.
#include "Scenes.h"

#include "Rendering/OrientationGizmo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <optional>

namespace ostrella {
namespace {

using namespace scenes;

struct GizmoScene : Scene {
    GizmoScene() { renderer.upload(cube()); }
    std::optional<DrawCommand> gizmo(Vec2 pixelSize) {
        const FrameEncoding frame = renderer.encodeScene(pixelSize, now, true);
        for (const DrawCommand& draw : frame.draws) {
            if (draw.pipeline == Pipeline::gizmo)
                return draw;
        }
        return std::nullopt;
    }
};

TEST(SceneGizmo, standsTwelvePointsFromTheLowerLeftCorner) {
    GizmoScene scene;
    const auto draw = scene.gizmo({800, 400});
    ASSERT_TRUE(draw);
    EXPECT_EQ(draw->box, (PixelRect{12, 12, 112, 64}));
    EXPECT_EQ(draw->count, 4U);
    EXPECT_EQ(std::get<GizmoUniforms>(draw->extra).box, Vec4(112, 64, 0, 0));
}

TEST(SceneGizmo, growsWithTheScreensPixels) {
    GizmoScene scene;
    scene.renderer.drawableSizeWillChange({1600, 800}, {800, 400});
    EXPECT_EQ(scene.gizmo({1600, 800})->box, (PixelRect{24, 24, 224, 128}));
    scene.renderer.drawableSizeWillChange({1000, 500}, {800, 400});
    const auto draw = scene.gizmo({1000, 500});
    EXPECT_EQ(draw->box, (PixelRect{15, 15, 140, 80}));
    EXPECT_EQ(std::get<GizmoUniforms>(draw->extra).box, Vec4(140, 80, 0, 0));
}

TEST(SceneGizmo, isLeftOutWhereItHasNoRoom) {
    GizmoScene scene;
    EXPECT_TRUE(scene.gizmo({124, 76}));
    EXPECT_FALSE(scene.gizmo({123, 76}));
    EXPECT_FALSE(scene.gizmo({124, 75}));
    EXPECT_FALSE(scene.gizmo({1, 1}));
    scene.renderer.drawableSizeWillChange({400, 200}, {200, 100});
    EXPECT_TRUE(scene.gizmo({248, 152}));
    EXPECT_FALSE(scene.gizmo({247, 152}));
}

TEST(SceneGizmo, neverLeavesTheView) {
    GizmoScene scene;
    for (float width = 800; width <= 1700; width += 7) {
        scene.renderer.drawableSizeWillChange({width, width / 2}, {800, 400});
        const float scale = scene.renderer.pointScale();
        const Vec2 tightest(std::ceil(124 * scale), std::ceil(76 * scale));
        const auto draw = scene.gizmo(tightest);
        ASSERT_TRUE(draw) << scale;
        EXPECT_LE(draw->box->x + draw->box->width, static_cast<int>(tightest.x));
        EXPECT_LE(draw->box->y + draw->box->height, static_cast<int>(tightest.y));
    }
}

TEST(SceneGizmo, needsSomethingToShowTheAxesOf) {
    Scene empty;
    EXPECT_EQ(empty.frame().draws.size(), 2U);
    empty.renderer.uploadVortex(vortex());
    EXPECT_EQ(empty.frame().draws.size(), 3U);
}

TEST(SceneGizmo, showsTheViewAndTheFreeStream) {
    GizmoScene scene;
    scene.renderer.camera.azimuth = 0.3F;
    scene.renderer.freeStream = Vec3(0.9F, 0.1F, 0);
    const auto draw = scene.gizmo({800, 400});
    const auto segments =
        OrientationGizmo::build(scene.renderer.camera.viewMatrix(), scene.renderer.freeStream, 1);
    EXPECT_EQ(draw->instances, segments.size());
    const auto bytes = scene.renderer.buffers()[SceneBuffer::gizmoSegments].bytes;
    ASSERT_EQ(bytes.size(), segments.size() * sizeof(OrientationGizmo::Segment));
    EXPECT_EQ(std::memcmp(bytes.data(), segments.data(), bytes.size()), 0);
}

TEST(SceneGizmo, renewsItsBufferOnlyWithTheView) {
    GizmoScene scene;
    scene.frame();
    const auto version = [&] {
        return scene.renderer.buffers()[SceneBuffer::gizmoSegments].version;
    };
    const auto first = version();
    scene.frame();
    EXPECT_EQ(version(), first);
    scene.renderer.camera.azimuth += 0.1F;
    scene.frame();
    EXPECT_NE(version(), first);
}

} // namespace
} // namespace ostrella
