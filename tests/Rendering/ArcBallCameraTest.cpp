#include "Rendering/ArcBallCamera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {
namespace {

constexpr float pi = 3.1415925F;

void expectNear(const Vec3& actual, const Vec3& expected, float tolerance) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

Vec3 transformed(const Mat4& matrix, const Vec3& point) {
    const Vec4 result = matrix * Vec4(point, 1.0F);
    return Vec3(result) / result.w;
}

ArcBallCamera posed(float azimuth, float elevation, float distance = 5) {
    ArcBallCamera camera;
    camera.azimuth = azimuth;
    camera.elevation = elevation;
    camera.distance = distance;
    return camera;
}

/// A point along the camera's own axes: to the right, up, and back towards the eye.
Vec3 seen(const ArcBallCamera& camera, const Vec3& point) {
    return Vec3(camera.viewMatrix() * Vec4(point, 1.0F));
}

TEST(ArcBallCamera, startsAtTheIsoPose) {
    const ArcBallCamera camera;
    EXPECT_EQ(camera.target, Vec3(0, 0, 0));
    EXPECT_EQ(camera.distance, 5.0F);
    EXPECT_EQ(camera.azimuth, pi / 4);
    EXPECT_EQ(camera.elevation, 0.5654867F);
    EXPECT_EQ(camera.fovY, pi / 4);
    EXPECT_EQ(camera.nearZ, 0.01F);
    EXPECT_EQ(camera.farZ, 10000.0F);
    EXPECT_EQ(camera.elevationLimit, pi / 2);
    EXPECT_NEAR(camera.elevation * 180 / pi, 32.4F, 1e-4F);
}

TEST(CameraEye, isOnTheSphereAroundTheTarget) {
    expectNear(posed(0, 0).eye(), {0, 0, 5}, 1e-6F);
    expectNear(posed(-pi / 2, 0).eye(), {-5, 0, 0}, 1e-6F);
    expectNear(posed(0, pi / 2).eye(), {0, 5, 0}, 1e-6F);
    // 5·(cos 32.4° sin 45°, sin 32.4°, cos 32.4° cos 45°)
    expectNear(ArcBallCamera().eye(), {2.985149F, 2.679134F, 2.985149F}, 1e-5F);
}

TEST(CameraEye, followsTheTarget) {
    ArcBallCamera camera = posed(0, 0, 2);
    camera.target = {10, 20, 30};
    expectNear(camera.eye(), {10, 20, 32}, 1e-5F);
}

TEST(CameraView, putsTheTargetAheadAtItsDistance) {
    for (const float azimuth : {0.0F, 1.0F, -2.5F, 40.0F}) {
        for (const float elevation : {0.0F, 0.7F, -1.2F, pi / 2, -pi / 2}) {
            ArcBallCamera camera = posed(azimuth, elevation, 3);
            camera.target = {1, -2, 0.5F};
            expectNear(seen(camera, camera.target), {0, 0, -3}, 1e-5F);
            expectNear(seen(camera, camera.eye()), {0, 0, 0}, 1e-5F);
        }
    }
}

TEST(CameraView, isARotationAndATranslation) {
    const Mat4 view = posed(0.8F, -0.4F).viewMatrix();
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_NEAR(dot(Vec3(view[i]), Vec3(view[j])), i == j ? 1.0F : 0.0F, 1e-6F);
        }
    }
    expectNear(cross(Vec3(view[0]), Vec3(view[1])), Vec3(view[2]), 1e-6F);
    EXPECT_EQ(view[0].w, 0.0F);
    EXPECT_EQ(view[1].w, 0.0F);
    EXPECT_EQ(view[2].w, 0.0F);
    EXPECT_EQ(view[3].w, 1.0F);
}

TEST(CameraView, fromTheSideHasTheStreamToTheRight) {
    const ArcBallCamera side = posed(0, 0, 4);
    expectNear(seen(side, {1, 2, 0}), {1, 2, -4}, 1e-6F);
    expectNear(seen(side, {0, 0, 1}), {0, 0, -3}, 1e-6F);
}

TEST(CameraView, fromTheFrontLooksDownstream) {
    const ArcBallCamera front = posed(-pi / 2, 0, 4);
    // +x, downstream, is away from the eye; +z is to the right.
    expectNear(seen(front, {1, 0, 0}), {0, 0, -5}, 1e-5F);
    expectNear(seen(front, {0, 1, 1}), {1, 1, -4}, 1e-5F);
}

TEST(CameraView, fromTheTopHasMinusZUp) {
    const ArcBallCamera top = posed(0, pi / 2, 4);
    expectNear(seen(top, {0, 0, -1}), {0, 1, -4}, 1e-5F);
    expectNear(seen(top, {1, 0, 0}), {1, 0, -4}, 1e-5F);
    expectNear(seen(top, {0, 1, 0}), {0, 0, -3}, 1e-5F);
}

TEST(CameraView, staysUprightAtEveryElevation) {
    for (const float elevation : {-pi / 2, -1.0F, 0.0F, 1.0F, pi / 2}) {
        const Mat4 view = posed(0.6F, elevation).viewMatrix();
        EXPECT_EQ(view[1].x, 0.0F) << "the right-hand axis has no part along y";
        EXPECT_GE(view[1].y, -1e-6F) << "the world is not upside down";
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row) {
                EXPECT_TRUE(std::isfinite(view[column][row]));
            }
        }
    }
}

TEST(CameraProjection, hasItsColumns) {
    const Mat4 projection = ArcBallCamera().projection(2);
    const float ys = 2.4142137F; // 1 / tan(π/8)
    EXPECT_NEAR(projection[0].x, ys / 2, 1e-6F);
    EXPECT_NEAR(projection[1].y, ys, 1e-6F);
    EXPECT_FLOAT_EQ(projection[2].z, 10000.0F / (0.01F - 10000.0F));
    EXPECT_EQ(projection[2].w, -1.0F);
    EXPECT_FLOAT_EQ(projection[3].z, 0.01F * 10000.0F / (0.01F - 10000.0F));
    Mat4 rest = projection;
    rest[0].x = rest[1].y = rest[2].z = rest[2].w = rest[3].z = 0;
    EXPECT_EQ(rest, Mat4(0.0F));
}

TEST(CameraProjection, mapsTheNearPlaneToZeroAndTheFarToOne) {
    ArcBallCamera camera;
    camera.nearZ = 0.5F;
    camera.farZ = 20;
    const Mat4 projection = camera.projection(1.5F);
    EXPECT_NEAR(transformed(projection, {0, 0, -0.5F}).z, 0.0F, 1e-6F);
    EXPECT_NEAR(transformed(projection, {0, 0, -20}).z, 1.0F, 1e-6F);
}

TEST(CameraProjection, fillsTheViewWithTheFieldOfView) {
    const Mat4 projection = ArcBallCamera().projection(1.5F);
    const float half = std::tan(pi / 8) * 7; // half the height at distance 7
    expectNear(transformed(projection, {1.5F * half, half, -7}), {1, 1, 0.99857F}, 1e-4F);
}

TEST(CameraProjection, shiftsThePictureAsALensDoes) {
    const ArcBallCamera camera;
    const Mat4 plain = camera.projection(1.25F);
    const Mat4 shifted = camera.projection(1.25F, {0.1F, -0.3F});
    for (const Vec3& point : {Vec3(0, 0, -1), Vec3(0.4F, 0.2F, -3), Vec3(-2, 1, -40)}) {
        // 0.1 of a device's two units is 5 % of the view's width, at every depth.
        expectNear(
            transformed(shifted, point), transformed(plain, point) + Vec3(0.1F, -0.3F, 0), 1e-5F);
    }
}

TEST(CameraProjection, isPlainWithoutAShift) {
    const ArcBallCamera camera;
    EXPECT_EQ(camera.projection(1.25F, {0, 0}), camera.projection(1.25F));
}

TEST(CameraPan, keepsThePointUnderThePointer) {
    ArcBallCamera camera = posed(0.7F, 0.4F, 3);
    const float height = 600;
    const Vec3 before = camera.target;
    const Mat4 oldView = camera.viewMatrix();
    camera.pan(50, 20, height);
    // The old target is now 50 points to the right and 20 up on a screen of 600 points.
    const Vec3 onScreen =
        transformed(camera.projection(1) * camera.viewMatrix(), before) * (height / 2);
    EXPECT_NEAR(onScreen.x, 50, 1e-2F);
    EXPECT_NEAR(onScreen.y, 20, 1e-2F);
    EXPECT_NEAR(Vec3(oldView * Vec4(camera.target, 1)).z, -3, 1e-5F) << "moves across the view";
}

TEST(CameraPan, movesTheTargetAlone) {
    ArcBallCamera camera = posed(0, 0, 10);
    ArcBallCamera expected = camera;
    camera.pan(100, 0, 1000);
    expected.target = {-2 * std::tan(pi / 8), 0, 0};
    expectNear(camera.target, expected.target, 1e-6F);
    expected.target = camera.target;
    EXPECT_EQ(camera, expected);
}

TEST(CameraPan, takesAViewWithoutHeightAsOnePointHigh) {
    ArcBallCamera camera = posed(0, 0, 1);
    camera.pan(0, 1, 0);
    EXPECT_NEAR(camera.target.y, -2 * std::tan(pi / 8), 1e-6F);
    ArcBallCamera other = posed(0, 0, 1);
    other.pan(0, 1, -30);
    EXPECT_EQ(other.target, camera.target);
}

TEST(CameraFrame, looksAtTheBoxFromTheIsoPose) {
    ArcBallCamera camera = posed(2, -1, 77);
    camera.frame({1, 2, 3}, {3, 6, 9}, {800, 600}, {});
    EXPECT_EQ(camera.target, Vec3(2, 4, 6));
    EXPECT_EQ(camera.azimuth, pi / 4);
    EXPECT_EQ(camera.elevation, 0.5654867F);
}

TEST(CameraFrame, fitsTheBoxesSphereIntoTheView) {
    ArcBallCamera camera;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {800, 600}, {});
    const double radius = std::sqrt(3.0);
    const double tangent = 0.9 * std::tan(3.14159265 / 8);
    EXPECT_NEAR(camera.distance, radius * std::sqrt(tangent * tangent + 1) / tangent, 1e-5);
    // A sphere touches a cone where the sine of the half-angle is radius over distance.
    EXPECT_NEAR(std::asin(radius / camera.distance), std::atan(tangent), 1e-6);
}

TEST(CameraFrame, fitsIntoTheSmallerSideOfATallView) {
    ArcBallCamera camera;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {300, 600}, {});
    const double tangent = 0.9 * std::tan(3.14159265 / 8) * 300 / 600;
    EXPECT_NEAR(camera.distance, std::sqrt(3.0) * std::sqrt(tangent * tangent + 1) / tangent, 1e-5);
}

TEST(CameraFrame, fitsIntoWhatTheInsetsLeaveFree) {
    ArcBallCamera camera;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {1000, 800},
        {.top = 40, .leading = 300, .bottom = 60, .trailing = 200});
    const double tangent = 0.9 * std::tan(3.14159265 / 8) * 500 / 800;
    EXPECT_NEAR(camera.distance, std::sqrt(3.0) * std::sqrt(tangent * tangent + 1) / tangent, 1e-5);
}

TEST(CameraFrame, keepsThreeTenthsOfTheViewWhateverTheInsets) {
    ArcBallCamera camera;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {1000, 1000}, {.leading = 5000, .trailing = 5000});
    const double tangent = 0.9 * std::tan(3.14159265 / 8) * 0.3;
    EXPECT_NEAR(camera.distance, std::sqrt(3.0) * std::sqrt(tangent * tangent + 1) / tangent, 1e-4);
}

TEST(CameraFrame, leavesTheInsetsOutInAViewOfOnePointOrLess) {
    ArcBallCamera whole;
    whole.frame({-1, -1, -1}, {1, 1, 1}, {800, 600}, {});
    for (const Vec2 size : {Vec2(1, 1), Vec2(0, 0), Vec2(800, 1), Vec2(1, 600)}) {
        ArcBallCamera camera;
        camera.frame({-1, -1, -1}, {1, 1, 1}, size, {.top = 200, .leading = 200});
        EXPECT_EQ(camera.distance, whole.distance);
    }
}

TEST(CameraFrame, takesABoxWithoutSizeAsASmallSphere) {
    ArcBallCamera camera;
    camera.frame({4, 5, 6}, {4, 5, 6}, {800, 600}, {});
    EXPECT_EQ(camera.target, Vec3(4, 5, 6));
    const double tangent = 0.9 * std::tan(3.14159265 / 8);
    EXPECT_NEAR(camera.distance, 0.01 * std::sqrt(tangent * tangent + 1) / tangent, 1e-7);
}

TEST(CameraFrame, keepsAFiniteDistanceInAVanishingFieldOfView) {
    ArcBallCamera camera;
    camera.fovY = 0;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {800, 600}, {});
    EXPECT_NEAR(camera.distance, std::sqrt(3.0) / 1e-4, 0.01);
}

TEST(CameraFrame, leavesTheLensAlone) {
    ArcBallCamera camera;
    camera.fovY = 0.5F;
    camera.nearZ = 0.2F;
    camera.farZ = 7;
    camera.elevationLimit = 1;
    camera.frame({-1, -1, -1}, {1, 1, 1}, {800, 600}, {});
    EXPECT_EQ(camera.fovY, 0.5F);
    EXPECT_EQ(camera.nearZ, 0.2F);
    EXPECT_EQ(camera.farZ, 7.0F);
    EXPECT_EQ(camera.elevationLimit, 1.0F);
}

} // namespace
} // namespace ostrella
