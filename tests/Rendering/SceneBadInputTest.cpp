// Contents that no proper file or run gives: the frame stays one of numbers, with the body in it.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace ostrella {
namespace {

using namespace scenes;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

bool allFinite(const std::vector<float>& values) {
    return std::all_of(values.begin(), values.end(), [](float v) { return std::isfinite(v); });
}

void expectNumbers(MetalRenderer& renderer, const FrameEncoding& frame) {
    for (const Uniforms& block : frame.uniforms)
        EXPECT_TRUE(allFinite(floats(block)));
    for (const DrawCommand& draw : frame.draws) {
        SCOPED_TRACE(describe(draw));
        std::visit(
            [](const auto& block) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(block)>, std::monostate>) {
                    EXPECT_TRUE(allFinite(floats(block)));
                }
            },
            draw.extra);
    }
    for (const SceneBuffer buffer :
        {SceneBuffer::modelVertices, SceneBuffer::featureEdges, SceneBuffer::gridMinor,
            SceneBuffer::gridMajor, SceneBuffer::ringX, SceneBuffer::gizmoSegments})
        EXPECT_TRUE(allFinite(floats(renderer.buffers(), buffer))) << name(buffer);
}

/// Where a point of the world lies in the picture: x and y from −1 to 1, depth from 0 to 1.
Vec3 seenAt(const FrameEncoding& frame, const Vec3& point) {
    const Uniforms& block = frame.uniforms.at(1);
    const Vec4 clip = block.projectionMatrix * block.viewMatrix * Vec4(point, 1);
    return Vec3(clip) / clip.w;
}

/// The middle of the body is in the middle of the picture, and between the planes.
void expectSeen(const FrameEncoding& frame, const Vec3& middle) {
    const Vec3 seen = seenAt(frame, middle);
    EXPECT_NEAR(seen.x, 0, 1e-3F);
    EXPECT_NEAR(seen.y, 0, 1e-3F);
    EXPECT_GT(seen.z, 0);
    EXPECT_LT(seen.z, 1);
}

TEST(BadModel, isSeenWithNoExtentInAnyAxes) {
    for (unsigned axes = 0; axes < 8; ++axes) {
        SCOPED_TRACE(axes);
        const Vec3 size(
            (axes & 1U) != 0 ? 2 : 0, (axes & 2U) != 0 ? 2 : 0, (axes & 4U) != 0 ? 2 : 0);
        Scene scene;
        scene.renderer.orientMode = true;
        scene.renderer.upload(box(Vec3(1.0F), Vec3(1.0F) + size));
        const FrameEncoding frame = scene.frame();
        expectNumbers(scene.renderer, frame);
        expectSeen(frame, Vec3(1.0F) + size * 0.5F);
        scene.renderer.modelHit({400, 200});
        scene.renderer.ringHit({400, 200});
    }
}

TEST(BadModel, isSeenFromAMicrometreToAThousandKilometres) {
    for (float size = 1e-6F; size <= 1.1e6F; size *= 10) {
        SCOPED_TRACE(size);
        Scene scene;
        scene.renderer.orientMode = true;
        scene.renderer.upload(box(Vec3(-size / 2), Vec3(size / 2)));
        const FrameEncoding frame = scene.frame();
        expectNumbers(scene.renderer, frame);
        expectSeen(frame, Vec3(0.0F));
        EXPECT_TRUE(scene.renderer.modelHit({400, 200}));
        // Its nearest and farthest corner have depths of their own, and lie between the planes.
        const float nearer = seenAt(frame, Vec3(size / 2)).z;
        const float farther = seenAt(frame, Vec3(-size / 2)).z;
        EXPECT_GT(nearer, 0);
        EXPECT_LT(farther, 1);
        if (size > 1e-4F) {
            EXPECT_LT(nearer, farther);
        }
    }
}

TEST(BadModel, isSeenFarFromTheOrigin) {
    for (const float place : {1e3F, 1e6F, 1e9F, 1e12F}) {
        SCOPED_TRACE(place);
        Scene scene;
        scene.renderer.upload(box(Vec3(place), Vec3(place * 1.000001F + 1)));
        const FrameEncoding frame = scene.frame();
        expectNumbers(scene.renderer, frame);
        EXPECT_TRUE(scene.renderer.hasModel());
    }
}

TEST(BadModel, ofOneFacetIsSeen) {
    Scene scene;
    scene.renderer.upload(TriangleMesh(
        {Vec3(0, 0, 0), Vec3(2, 0, 0), Vec3(0, 2, 0)}, std::vector<Vec3>(3, Vec3(0, 0, 1))));
    expectSeen(scene.frame(), {1, 1, 0});
    EXPECT_EQ(scene.renderer.contents().meshIndexCount, 3U);
}

TEST(BadModel, losesTheFacetsThatStandNowhere) {
    std::vector<Vec3> positions{{nan, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {2, 0, 0}, {0, 2, 0},
        {0, 0, 0}, {1, infinity, 0}, {0, 1, 0}, {1e30F, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    Scene scene;
    scene.renderer.upload(
        TriangleMesh(positions, std::vector<Vec3>(positions.size(), Vec3(0, 0, 1))));
    EXPECT_EQ(scene.renderer.contents().meshIndexCount, 3U);
    EXPECT_EQ(scene.renderer.contents().meshBounds, (BoundingBox{{0, 0, 0}, {2, 2, 0}}));
    expectNumbers(scene.renderer, scene.frame());
    expectSeen(scene.frame(), {1, 1, 0});
    positions.resize(3);
    scene.renderer.upload(TriangleMesh(positions, std::vector<Vec3>(3, Vec3(0, 0, 1))));
    EXPECT_FALSE(scene.renderer.hasModel());
    expectNumbers(scene.renderer, scene.frame());
}

TEST(BadAngles, turnTheModelAllTheSame) {
    for (const float degrees : {1e9F, -1e9F, nan, infinity}) {
        Scene scene;
        scene.renderer.orientMode = true;
        scene.renderer.upload(box({0, 0, 0}, {4, 2, 2}));
        scene.renderer.setModelRotation(Vec3(degrees) * 0.017453292F);
        scene.renderer.setModelRotation({0, degrees * 0.017453292F, 0});
        scene.renderer.reframe(false);
        const FrameEncoding frame = scene.frame();
        expectNumbers(scene.renderer, frame);
        expectSeen(frame, {2, 1, 1});
    }
}

TEST(BadAngles, ofTheFreeStreamLeaveNoArrow) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.freeStream = Vec3(nan, 0, 0);
    EXPECT_EQ(theDraw(scene.frame(), Pipeline::gizmo).instances, 11U);
}

TEST(BadAngles, ofTheCameraLeaveThePresetsWithinReach) {
    Scene scene;
    scene.renderer.upload(cube());
    for (const float azimuth : {1e9F, -1e9F}) {
        scene.renderer.camera.azimuth = azimuth;
        scene.renderer.applyPreset(ViewPreset::iso, true);
        scene.now += 1;
        scene.renderer.draw();
        expectNumbers(scene.renderer, scene.frame());
        expectSeen(scene.frame(), {0, 0, 0});
    }
}

TEST(BadSurface, keepsARangeWhateverItsScalars) {
    Scene scene;
    const auto rangeOf = [&](std::vector<float> scalars) {
        SurfaceField field({Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0)}, scalars, "Cp", {0, 1, 2},
            SurfaceField::Primitive::triangle);
        scene.renderer.uploadSurface(field);
        return scene.renderer.contents().surfaceScalarRange;
    };
    EXPECT_EQ(rangeOf({nan, 1, 2}), Vec2(1, 2));
    EXPECT_EQ(rangeOf({1, nan, 2}), Vec2(1, 2));
    EXPECT_EQ(rangeOf({infinity, 1, 2}), Vec2(1, 2));
    EXPECT_EQ(rangeOf({1, -infinity, 2}), Vec2(1, 2));
    EXPECT_EQ(rangeOf({nan, nan, nan}), Vec2(0, 1));
}

TEST(BadSurface, hasNoValueWhereItIsNoNumberAndTheNearestEndOfItsRangeWhereItIsInfinite) {
    Scene scene;
    scene.renderer.uploadSurface(
        SurfaceField({Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(1, 1, 0), Vec3(2, 1, 0)},
            {nan, 3, infinity, -infinity, 5}, "Cp", {0, 1, 2, 2, 3, 4},
            SurfaceField::Primitive::triangle));
    const auto values = floats(scene.renderer.buffers(), SceneBuffer::surfaceVertices);
    EXPECT_TRUE(std::isnan(values[3]));
    EXPECT_EQ((std::vector<float>{values[7], values[11], values[15], values[19]}),
        (std::vector<float>{3, 5, 3, 5}));
}

TEST(BadSurface, isFramedByThePointsThatStandSomewhere) {
    Scene scene;
    scene.renderer.colormapEnabled = true;
    scene.renderer.uploadSurface(
        SurfaceField({Vec3(nan, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1e30F)},
            {1, 2, 3, 4}, "Cp", {0, 1, 2, 1, 2, 3}, SurfaceField::Primitive::triangle));
    EXPECT_EQ(scene.renderer.contents().surfaceBounds, (BoundingBox{{0, 0, 0}, {1, 1, 0}}));
    scene.renderer.reframe(false);
    expectNumbers(scene.renderer, scene.frame());
    expectSeen(scene.frame(), {0.5F, 0.5F, 0});
}

TEST(BadSurface, losesCellsOfVerticesThatAreNotThere) {
    Scene scene;
    SurfaceField field = surface(Vec3(-1.0F), Vec3(1.0F));
    field.indices = {0, 1, 3, 0, 1, 2, 4294967295U, 0, 1, 2, 1};
    scene.renderer.uploadSurface(field);
    EXPECT_EQ(scene.renderer.contents().surfaceIndexCount, 3U);
    field.primitive = SurfaceField::Primitive::line;
    scene.renderer.uploadSurface(field);
    // Pairs: 0 1 | 3 0 | 1 2 | 4294967295 0 | 1 2 | 1.
    EXPECT_EQ(scene.renderer.contents().surfaceIndexCount, 6U);
}

TEST(BadLines, keepARangeAndABox) {
    Scene scene;
    scene.renderer.streamlinesEnabled = true;
    Streamlines bad = lines({0, 0, 0}, {4, 2, 2});
    bad.interleavedVertices = {0, 0, 0, nan, 2, 1, 1, 20, 4, 2, 2, 30};
    bad.magnitudeMin = nan;
    bad.magnitudeMax = nan;
    bad.boundingMin = Vec3(nan);
    scene.renderer.uploadStreamlines(bad);
    EXPECT_EQ(scene.renderer.contents().streamlineMagRange, Vec2(20, 30));
    EXPECT_EQ(scene.renderer.contents().streamlineBounds, (BoundingBox{{0, 0, 0}, {4, 2, 2}}));
    EXPECT_TRUE(allFinite(floats(scene.renderer.buffers(), SceneBuffer::ribbonPoints)));
    scene.renderer.reframe(false);
    expectNumbers(scene.renderer, scene.frame());
    expectSeen(scene.frame(), {2, 1, 1});
}

TEST(BadVortex, losesTrianglesOfVerticesThatAreNotThere) {
    Scene scene;
    IsoSurface bad = vortex();
    bad.indices = {0, 1, 9};
    scene.renderer.uploadVortex(bad);
    EXPECT_FALSE(scene.renderer.hasResult());
    bad = vortex();
    bad.normals = {};
    scene.renderer.uploadVortex(bad);
    EXPECT_FALSE(scene.renderer.hasResult());
}

TEST(BadView, ofAnySizeGivesAFrame) {
    const std::vector<Vec2> sizes{{1, 1}, {8000, 5000}, {0, 0}, {1, 5000}, {8000, 1}, {2, 2}};
    for (const Vec2& size : sizes) {
        SCOPED_TRACE(size.x);
        Scene scene;
        scene.renderer.orientMode = true;
        scene.renderer.streamlinesEnabled = true;
        scene.renderer.upload(cube());
        scene.renderer.uploadStreamlines(lines(Vec3(-2.0F), Vec3(2.0F)));
        scene.renderer.drawableSizeWillChange(size, size);
        scene.renderer.setInsets({1e9, 1e9, 1e9, -1e9});
        scene.renderer.reframe(false);
        scene.now += 1;
        const FrameEncoding frame = scene.renderer.draw();
        expectNumbers(scene.renderer, frame);
        scene.renderer.modelHit(size * 0.5F);
        scene.renderer.ringHit(size * 0.5F);
        scene.renderer.beginRingDrag(OrientationAxis::x, size * 0.5F);
    }
}

TEST(BadView, fromNearlyNowhereStillHasABody) {
    Scene scene;
    scene.renderer.upload(box(Vec3(-1e-6F), Vec3(1e-6F)));
    scene.renderer.camera.distance = 0.001F;
    expectSeen(scene.frame(), {0, 0, 0});
    scene.renderer.camera.distance = 1e6F;
    expectSeen(scene.frame(), {0, 0, 0});
}

} // namespace
} // namespace ostrella
