#include "Rendering/OrientationRings.h"

#include "Rendering/ArcBallCamera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella::OrientationRings {
namespace {

using Axis = OrientationAxis;

constexpr float pi = 3.1415925F;

Vec2 onCircle(double degrees, double radius = 100) {
    const double angle = degrees * 0.017453292519943295;
    return Vec2(100 + radius * std::cos(angle), 100 + radius * std::sin(angle));
}

Drag around(Vec2 last, float sign = 1) {
    return {Axis::z, Drag::Around{{100, 100}, sign}, last, 0, 0};
}

Drag along(Vec2 direction, float pointsPerRadian) {
    return {Axis::z, Drag::Along{direction, pointsPerRadian}, {50, 50}, 0, 0};
}

TEST(RingDragAround, turnsWithThePointerAndAgainstItFromBehind) {
    Drag front = around(onCircle(0));
    EXPECT_NEAR(front.move(onCircle(90), false), 90, 1e-4);
    EXPECT_NEAR(front.move(onCircle(60), false), -30, 1e-4);
    EXPECT_NEAR(front.rawDegrees, 60, 1e-4);
    EXPECT_EQ(front.appliedDegrees, front.rawDegrees);
    EXPECT_EQ(front.last, onCircle(60));
    Drag behind = around(onCircle(0), -1);
    EXPECT_NEAR(behind.move(onCircle(90), false), -90, 1e-4);
}

TEST(RingDragAround, takesTheShortWayAndCountsWholeTurns) {
    Drag drag = around(onCircle(170));
    EXPECT_NEAR(drag.move(onCircle(-170), false), 20, 1e-4);
    EXPECT_NEAR(drag.move(onCircle(170), false), -20, 1e-4);
    for (int degrees = 180; degrees <= 170 + 720; degrees += 10)
        drag.move(onCircle(degrees), false);
    EXPECT_NEAR(drag.rawDegrees, 720, 1e-3);
}

TEST(RingDragAround, haltsNearTheCentreAndGoesOnFromTheOldPosition) {
    Drag drag = around(onCircle(0));
    EXPECT_EQ(drag.move({100, 100}, false), 0);
    EXPECT_EQ(drag.move({100, 104}, false), 0); // on the circle of 4 points still
    EXPECT_EQ(drag.last, onCircle(0));
    EXPECT_EQ(drag.rawDegrees, 0);
    EXPECT_NEAR(drag.move({100, 104.1F}, false), 90, 1e-4);
    EXPECT_EQ(drag.last, Vec2(100, 104.1F));
}

TEST(RingDragAround, startingAtTheCentreTurnsOnlyOnceOutside) {
    Drag drag = around({100, 100});
    EXPECT_EQ(drag.move(onCircle(45), false), 0);
    EXPECT_EQ(drag.last, onCircle(45));
    EXPECT_NEAR(drag.move(onCircle(60), false), 15, 1e-4);
}

TEST(RingDragAround, snapsAtTheCentreToo) {
    Drag drag = around(onCircle(0));
    drag.move(onCircle(20), false);
    EXPECT_NEAR(drag.move({100, 100}, true), -5, 1e-4);
    EXPECT_EQ(drag.appliedDegrees, 15);
}

TEST(RingDragAlong, turnsByTheWayInItsDirection) {
    Drag drag = along({0, 1}, 100);
    EXPECT_NEAR(drag.move({50, 100}, false), 28.647890, 1e-5); // half a radian
    EXPECT_NEAR(drag.move({90, 100}, false), 0, 1e-9);         // across it
    EXPECT_NEAR(drag.move({90, 50}, false), -28.647890, 1e-5);
    EXPECT_NEAR(drag.rawDegrees, 0, 1e-9);
    Drag slanted = along({0.6F, 0.8F}, 50);
    EXPECT_NEAR(slanted.move({56, 58}, false), 11.459156, 1e-5); // 10 points
}

TEST(RingDragSnap, roundsTheWholeDragToFifteenDegrees) {
    Drag drag = along({1, 0}, 1);
    const auto snapped = [&](double raw) {
        drag.rawDegrees = raw;
        drag.appliedDegrees = 0;
        return drag.resnap(true);
    };
    EXPECT_EQ(snapped(7.4), 0);
    EXPECT_EQ(snapped(7.5), 15);
    EXPECT_EQ(snapped(-7.4), 0);
    EXPECT_EQ(snapped(-7.5), -15);
    EXPECT_EQ(snapped(22.4), 15);
    EXPECT_EQ(snapped(400), 405);
}

TEST(RingDragSnap, appliesTheDifferenceAsTheModifierChanges) {
    Drag drag = along({1, 0}, 1);
    drag.rawDegrees = 20;
    drag.appliedDegrees = 20;
    EXPECT_EQ(drag.resnap(true), -5);
    EXPECT_EQ(drag.appliedDegrees, 15);
    EXPECT_EQ(drag.resnap(true), 0);
    EXPECT_EQ(drag.resnap(false), 5);
    EXPECT_EQ(drag.appliedDegrees, 20);
    EXPECT_EQ(drag.rawDegrees, 20);
}

TEST(RingDragSnap, keepsWhatWasDraggedBetweenTheSteps) {
    Drag drag = around(onCircle(0));
    double applied = 0;
    for (int degrees = 1; degrees <= 40; ++degrees)
        applied += drag.move(onCircle(degrees), true);
    EXPECT_EQ(applied, 45); // 37.5 and more
    EXPECT_NEAR(drag.rawDegrees, 40, 1e-3);
}

/// From `eye` on a sphere of radius 5 around the origin, 800 × 600 points.
std::optional<Drag::Mode> modeFrom(float azimuth, float elevation, Axis axis, float radius = 1) {
    ArcBallCamera camera;
    camera.azimuth = azimuth;
    camera.elevation = elevation;
    const ScreenProjector projector{
        camera.projection(800.0F / 600.0F) * camera.viewMatrix(), {800, 600}};
    return Drag::modeFor(axis, {0, 0, 0}, radius, camera.eye(), projector);
}

void expectAround(const std::optional<Drag::Mode>& mode, float sign) {
    ASSERT_TRUE(mode);
    ASSERT_TRUE(std::holds_alternative<Drag::Around>(*mode));
    const auto& ring = std::get<Drag::Around>(*mode);
    EXPECT_NEAR(ring.centre.x, 400, 1e-3F);
    EXPECT_NEAR(ring.centre.y, 300, 1e-3F);
    EXPECT_EQ(ring.sign, sign);
}

void expectAlong(
    const std::optional<Drag::Mode>& mode, Vec2 direction, float pointsPerRadian, float tolerance) {
    ASSERT_TRUE(mode);
    ASSERT_TRUE(std::holds_alternative<Drag::Along>(*mode));
    const auto& line = std::get<Drag::Along>(*mode);
    EXPECT_NEAR(line.direction.x, direction.x, 1e-3F);
    EXPECT_NEAR(line.direction.y, direction.y, 1e-3F);
    EXPECT_NEAR(line.pointsPerRadian, pointsPerRadian, tolerance);
}

TEST(RingDragMode, circlesARingThatFacesTheViewer) {
    expectAround(modeFrom(0, 0, Axis::z), 1);
    expectAround(modeFrom(pi, 0, Axis::z), -1);
    expectAround(modeFrom(-pi / 2, 0, Axis::x), -1);
    expectAround(modeFrom(0, pi / 2, Axis::y), 1);
}

TEST(RingDragMode, pullsARingSeenOnEdgeAlongItsTangent) {
    // From +z the ring about x is a vertical line, its nearest point 4 m off, and turning it moves
    // that point down: 300 / (4 tan 22.5°) = 181.066 points a metre, and the radius is one.
    expectAlong(modeFrom(0, 0, Axis::x), {0, -1}, 181.066F, 0.5F);
    // The ring about y is a horizontal line and moves to the right.
    expectAlong(modeFrom(0, 0, Axis::y), {1, 0}, 181.066F, 0.5F);
    // With half the radius the nearest point is 4.5 m off and moves half as far.
    expectAlong(modeFrom(0, 0, Axis::x, 0.5F), {0, -1}, 80.474F, 0.3F);
}

TEST(RingDragMode, changesWhereTheAxisIsAFifthOfTheWayTowardsTheViewer) {
    // The eye's height is 5 sin e: asin 0.2 is 0.201358 rad.
    EXPECT_TRUE(std::holds_alternative<Drag::Around>(*modeFrom(0, 0.2020F, Axis::y)));
    EXPECT_TRUE(std::holds_alternative<Drag::Along>(*modeFrom(0, 0.2007F, Axis::y)));
    EXPECT_TRUE(std::holds_alternative<Drag::Around>(*modeFrom(0, -0.2020F, Axis::y)));
    EXPECT_TRUE(std::holds_alternative<Drag::Along>(*modeFrom(0, -0.2007F, Axis::y)));
}

TEST(RingDragMode, isAbsentWhereNothingMoves) {
    const ScreenProjector projector{Mat4(1.0F), {800, 600}};
    EXPECT_EQ(Drag::modeFor(Axis::x, {1, 2, 3}, 1, {1, 2, 3}, projector), std::nullopt);
    EXPECT_EQ(modeFrom(0, 0, Axis::x, 0), std::nullopt); // a ring of no radius
    EXPECT_EQ(Drag::modeFor(Axis::x, Vec3(0), 1, Vec3(std::nanf("")), projector), std::nullopt);
}

TEST(RingDragMode, isAbsentBehindTheEye) {
    ArcBallCamera camera;
    camera.azimuth = 0;
    camera.elevation = 0;
    const ScreenProjector projector{camera.projection(1) * camera.viewMatrix(), {100, 100}};
    EXPECT_EQ(Drag::modeFor(Axis::x, {0, 0, 9}, 1, camera.eye(), projector), std::nullopt);
}

TEST(RingDragMode, hasAFixedPointOfTheRingSeenAlongItsAxisWithoutACentre) {
    // A picture that shows where the fixed direction goes: its depth is the coordinate along it, so
    // that the ring's centre is behind the eye, and the tangent runs across.
    for (const Axis axis : allOrientationAxes) {
        const int along = static_cast<int>(axis);
        const int fixed = (along + 1) % 3;
        const int tangent = (along + 2) % 3;
        Mat4 matrix(0.0F);
        matrix[fixed][3] = 1;
        matrix[tangent][0] = 1;
        Vec3 eye(0.0F);
        eye[along] = 5;
        const auto mode = Drag::modeFor(axis, Vec3(0), 1, eye, ScreenProjector{matrix, {200, 200}});
        expectAlong(mode, {1, 0}, 100, 0.1F);
    }
}

} // namespace
} // namespace ostrella::OrientationRings
