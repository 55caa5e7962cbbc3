// The orientation rings in a frame, under the pointer and in a drag.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace ostrella {
namespace {

using namespace scenes;
using Floats = std::vector<float>;

/// A cube of √3 half a diagonal, seen along −z from 10 m in orient mode.
struct Rings : Scene {
    Rings() {
        renderer.upload(cube());
        renderer.camera.azimuth = 0;
        renderer.camera.elevation = 0;
        renderer.camera.distance = 10;
        renderer.orientMode = true;
    }
    std::vector<DrawCommand> rings() {
        std::vector<DrawCommand> found;
        for (const DrawCommand& draw : frame().draws) {
            if (draw.pipeline == Pipeline::ring)
                found.push_back(draw);
        }
        return found;
    }
    std::vector<SceneBuffer> order() {
        std::vector<SceneBuffer> buffers;
        for (const DrawCommand& draw : rings())
            buffers.push_back(draw.vertices);
        return buffers;
    }
    RingStyle style(SceneBuffer buffer) {
        for (const DrawCommand& draw : rings()) {
            if (draw.vertices == buffer)
                return std::get<RingStyle>(draw.extra);
        }
        throw std::logic_error("no such ring");
    }
};

constexpr float radius = 1.15F * 1.7320508F;

TEST(SceneRings, areCirclesAroundTheModelALittleOutsideOfIt) {
    Scene scene;
    scene.renderer.upload(box({4, -1, -1}, {6, 1, 1}));
    scene.renderer.orientMode = true;
    scene.frame();
    const auto point = [&](SceneBuffer buffer, std::size_t i) {
        const Floats all = floats(scene.renderer.buffers(), buffer);
        EXPECT_EQ(all.size(), 128U * 4U);
        return Vec4(all[4 * i], all[4 * i + 1], all[4 * i + 2], all[4 * i + 3]);
    };
    const auto expectPoint = [&](SceneBuffer buffer, std::size_t i, const Vec4& expected) {
        const Vec4 actual = point(buffer, i);
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(actual[k], expected[k], 1e-5F) << name(buffer) << " " << i;
    };
    // A quarter of the way round after 32 points.
    expectPoint(SceneBuffer::ringX, 0, {5, radius, 0, 1});
    expectPoint(SceneBuffer::ringX, 32, {5, 0, radius, 1});
    expectPoint(SceneBuffer::ringY, 0, {5, 0, radius, 1});
    expectPoint(SceneBuffer::ringY, 32, {5 + radius, 0, 0, 1});
    expectPoint(SceneBuffer::ringZ, 0, {5 + radius, 0, 0, 1});
    expectPoint(SceneBuffer::ringZ, 32, {5, radius, 0, 1});
    expectPoint(SceneBuffer::ringZ, 127,
        {5 + radius * std::cos(0.04908739F), -radius * std::sin(0.04908739F), 0, 1});
}

TEST(SceneRings, areMadeAnewOnlyForAnotherModel) {
    Rings scene;
    scene.frame();
    const auto version = [&] { return scene.renderer.buffers()[SceneBuffer::ringY].version; };
    const auto first = version();
    scene.renderer.setModelRotation({1, 2, 3});
    scene.renderer.camera.azimuth = 1;
    scene.frame();
    EXPECT_EQ(version(), first);
    scene.renderer.upload(box(Vec3(-1.0F), Vec3(1.5F)));
    scene.frame();
    EXPECT_NE(version(), first);
}

TEST(SceneRings, needOrientModeAndAModel) {
    Scene scene;
    scene.renderer.uploadVortex(vortex());
    scene.renderer.orientMode = true;
    EXPECT_EQ(scene.frame().draws.back().pipeline, Pipeline::gizmo);
    EXPECT_EQ(scene.frame().draws.size(), 3U);
    EXPECT_TRUE(scene.renderer.buffers()[SceneBuffer::ringX].bytes.empty());
}

TEST(SceneRings, wearTheAxesColoursUntilOneIsHovered) {
    Rings scene;
    EXPECT_EQ(scene.style(SceneBuffer::ringX).color, Vec4(0.84F, 0.48F, 0.47F, 0.8F));
    EXPECT_EQ(scene.style(SceneBuffer::ringY).color, Vec4(0.52F, 0.76F, 0.52F, 0.8F));
    EXPECT_EQ(scene.style(SceneBuffer::ringZ).color, Vec4(0.50F, 0.62F, 0.88F, 0.8F));
    scene.renderer.hoveredRing = OrientationAxis::y;
    EXPECT_EQ(
        scene.style(SceneBuffer::ringY).color, Vec4(245 / 255.0F, 165 / 255.0F, 36 / 255.0F, 0.8F));
    EXPECT_EQ(scene.style(SceneBuffer::ringX).color, Vec4(0.84F, 0.48F, 0.47F, 0.8F));
    EXPECT_EQ(scene.style(SceneBuffer::ringY).view.z, 1.25F);
    EXPECT_EQ(scene.style(SceneBuffer::ringX).view.z, 0.75F);
}

TEST(SceneRings, stepBackBehindTheActiveOne) {
    Rings scene;
    scene.renderer.hoveredRing = OrientationAxis::y;
    scene.renderer.activeRing = OrientationAxis::x;
    EXPECT_EQ(
        scene.style(SceneBuffer::ringX).color, Vec4(245 / 255.0F, 165 / 255.0F, 36 / 255.0F, 0.8F));
    EXPECT_EQ(scene.style(SceneBuffer::ringY).color, Vec4(0.52F, 0.76F, 0.52F, 0.2F));
    EXPECT_EQ(scene.style(SceneBuffer::ringZ).color, Vec4(0.50F, 0.62F, 0.88F, 0.2F));
    EXPECT_EQ(scene.style(SceneBuffer::ringY).view.z, 0.75F);
}

TEST(SceneRings, comeInAxisOrderWithTheEmphasisedOneLast) {
    Rings scene;
    using enum SceneBuffer;
    EXPECT_EQ(scene.order(), (std::vector{ringX, ringY, ringZ}));
    scene.renderer.hoveredRing = OrientationAxis::x;
    EXPECT_EQ(scene.order(), (std::vector{ringY, ringZ, ringX}));
    scene.renderer.activeRing = OrientationAxis::y;
    EXPECT_EQ(scene.order(), (std::vector{ringX, ringZ, ringY}));
}

TEST(SceneRings, tellTheShadersWhereTheyAre) {
    Rings scene;
    scene.renderer.drawableSizeWillChange({1600, 800}, {800, 400});
    scene.renderer.upload(box({4, -1, -1}, {6, 1, 1}));
    scene.renderer.camera.azimuth = 0;
    scene.renderer.camera.elevation = 0;
    scene.renderer.camera.distance = 10;
    const FrameEncoding frame = scene.renderer.encodeScene({1600, 800}, 0, true);
    const auto style = std::get<RingStyle>(frame.draws.at(frame.draws.size() - 2).extra);
    EXPECT_EQ(floats(style), (Floats{0.50F, 0.62F, 0.88F, 0.8F, 1600, 800, 1.5F, 1, 5, 0, 0, 128, 5,
                                 0, 10, 0, 0.35F, 0.15F, 0, 0}));
}

// In a view 400 points high, a metre at the distance of the cube's middle is 400 / 2 × cot(π / 8) /
// 10 points, 48.284271; so the ring about z, which faces the viewer, is a circle of 96.18 points.
constexpr float pointsPerMetre = 48.284271F;
constexpr float ringOnScreen = radius * pointsPerMetre;

TEST(RingHit, isWithinSixPoints) {
    Rings scene;
    const float diagonal = 0.70710678F;
    const auto at = [&](float fromCentre) {
        return scene.renderer.ringHit({400 + diagonal * fromCentre, 200 + diagonal * fromCentre});
    };
    EXPECT_EQ(at(ringOnScreen), OrientationAxis::z);
    EXPECT_EQ(at(ringOnScreen + 5.9F), OrientationAxis::z);
    EXPECT_EQ(at(ringOnScreen - 5.9F), OrientationAxis::z);
    EXPECT_EQ(at(ringOnScreen + 6.1F), std::nullopt);
    EXPECT_EQ(at(ringOnScreen - 6.1F), std::nullopt);
    // The rings seen on edge are the vertical and the horizontal line through the middle.
    EXPECT_EQ(scene.renderer.ringHit({401, 250}), OrientationAxis::x);
    EXPECT_EQ(scene.renderer.ringHit({450, 201}), OrientationAxis::y);
    EXPECT_EQ(scene.renderer.ringHit({400, 200}), OrientationAxis::x);
}

TEST(RingHit, followsTheLensShift) {
    Rings scene;
    scene.renderer.setInsets({.leading = 160});
    // The picture moves by 0.1 × 800 points to the right in the end; half the time is 7 / 8 of it.
    scene.now += 0.125;
    const float shifted = 400 + 70;
    EXPECT_EQ(scene.renderer.ringHit({shifted + 1, 250}), OrientationAxis::x);
    EXPECT_EQ(scene.renderer.ringHit({401, 250}), std::nullopt);
    scene.now += 1;
    EXPECT_EQ(scene.renderer.ringHit({481, 250}), OrientationAxis::x);
}

TEST(RingHit, needsOrientModeAModelAndAView) {
    Rings scene;
    EXPECT_TRUE(scene.renderer.ringHit({401, 250}));
    scene.renderer.orientMode = false;
    EXPECT_FALSE(scene.renderer.ringHit({401, 250}));
    scene.renderer.orientMode = true;
    scene.renderer.drawableSizeWillChange({1, 1}, {1, 1});
    EXPECT_FALSE(scene.renderer.ringHit({0.5F, 0.5F}));
    scene.renderer.drawableSizeWillChange({800, 400}, {800, 400});
    scene.renderer.clear();
    EXPECT_FALSE(scene.renderer.ringHit({400, 200}));
}

TEST(RingDrag, circlesAFacingRingAndFollowsAnEdgeOnOne) {
    Rings scene;
    const auto facing = scene.renderer.beginRingDrag(OrientationAxis::z, {500, 200});
    ASSERT_TRUE(facing);
    EXPECT_EQ(facing->axis, OrientationAxis::z);
    EXPECT_EQ(facing->last, Vec2(500, 200));
    EXPECT_EQ(facing->rawDegrees, 0);
    EXPECT_EQ(facing->appliedDegrees, 0);
    const auto& around = std::get<OrientationRings::Drag::Around>(facing->mode);
    EXPECT_NEAR(around.centre.x, 400, 1e-3F);
    EXPECT_NEAR(around.centre.y, 200, 1e-3F);
    EXPECT_EQ(around.sign, 1);

    const auto edgeOn = scene.renderer.beginRingDrag(OrientationAxis::y, {450, 200});
    ASSERT_TRUE(edgeOn);
    const auto& along = std::get<OrientationRings::Drag::Along>(edgeOn->mode);
    EXPECT_NEAR(along.direction.x, 1, 1e-3F);
    EXPECT_NEAR(along.direction.y, 0, 1e-3F);
    // The nearest point lies on the model's own sphere, √3 nearer than the middle; a radian there
    // is √3 m long.
    const float expected = 1.7320508F * pointsPerMetre * 10 / (10 - 1.7320508F);
    EXPECT_NEAR(along.pointsPerRadian, expected, 0.1F);
}

TEST(RingDrag, seesTheLensShift) {
    Rings scene;
    scene.renderer.reduceMotion = true;
    scene.renderer.setInsets({.leading = 160});
    const auto drag = scene.renderer.beginRingDrag(OrientationAxis::z, {500, 200});
    ASSERT_TRUE(drag);
    EXPECT_NEAR(std::get<OrientationRings::Drag::Around>(drag->mode).centre.x, 480, 1e-3F);
}

TEST(RingDrag, needsOrientModeAndAModel) {
    Rings scene;
    scene.renderer.orientMode = false;
    EXPECT_FALSE(scene.renderer.beginRingDrag(OrientationAxis::z, {500, 200}));
    scene.renderer.orientMode = true;
    scene.renderer.clear();
    EXPECT_FALSE(scene.renderer.beginRingDrag(OrientationAxis::z, {500, 200}));
}

TEST(ModelHit, isTrueOnTheModelOnly) {
    Rings scene;
    scene.renderer.orientMode = false;
    // The front face, at 9 m, is 2 × 400 / 2 × cot(π / 8) / 9 points wide.
    const float halfFace = 48.284271F * 10 / 9;
    EXPECT_TRUE(scene.renderer.modelHit({400, 200}));
    EXPECT_TRUE(scene.renderer.modelHit({400 + halfFace - 0.5F, 200}));
    EXPECT_FALSE(scene.renderer.modelHit({400 + halfFace + 0.5F, 200}));
    EXPECT_TRUE(scene.renderer.modelHit({400, 200 - halfFace + 0.5F}));
    EXPECT_FALSE(scene.renderer.modelHit({400, 200 - halfFace - 0.5F}));
    EXPECT_FALSE(scene.renderer.modelHit({10, 10}));
}

TEST(ModelHit, asksTheTreeOfAPreparedModel) {
    Rings scene;
    scene.renderer.upload(PreparedModel::of(cube()));
    EXPECT_TRUE(scene.renderer.modelHit({400, 200}));
    EXPECT_FALSE(scene.renderer.modelHit({10, 10}));
    scene.renderer.clear();
    EXPECT_FALSE(scene.renderer.modelHit({400, 200}));
}

TEST(ModelHit, turnsWithTheModel) {
    Rings scene;
    scene.renderer.upload(box({-3, -0.1F, -0.1F}, {3, 0.1F, 0.1F}));
    scene.renderer.camera.azimuth = 0;
    scene.renderer.camera.elevation = 0;
    scene.renderer.camera.distance = 10;
    EXPECT_TRUE(scene.renderer.modelHit({500, 200}));
    EXPECT_FALSE(scene.renderer.modelHit({400, 300}));
    scene.renderer.setModelRotation({0, 0, 1.5707964F});
    EXPECT_FALSE(scene.renderer.modelHit({500, 200}));
    EXPECT_TRUE(scene.renderer.modelHit({400, 300}));
}

TEST(ModelHit, followsTheLensShift) {
    Rings scene;
    scene.renderer.setInsets({.leading = 320});
    EXPECT_TRUE(scene.renderer.modelHit({400, 200}));
    scene.now += 1;
    EXPECT_FALSE(scene.renderer.modelHit({400, 200}));
    EXPECT_TRUE(scene.renderer.modelHit({560, 200}));
}

TEST(ModelHit, needsAModelAndAView) {
    Rings scene;
    scene.renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    scene.renderer.drawableSizeWillChange({1, 1}, {1, 1});
    EXPECT_FALSE(scene.renderer.modelHit({0.5F, 0.5F}));
    scene.renderer.drawableSizeWillChange({800, 400}, {800, 400});
    EXPECT_TRUE(scene.renderer.modelHit({400, 200}));
    scene.renderer.clear();
    EXPECT_FALSE(scene.renderer.modelHit({400, 200}));
}

} // namespace
} // namespace ostrella
