#include "Rendering/OrientationRings.h"

#include "Rendering/ArcBallCamera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella::OrientationRings {
namespace {

using Axis = OrientationAxis;
using Ring = std::vector<std::optional<Vec2>>;

void expectNear(const Vec3& actual, const Vec3& expected) {
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-6F);
}

TEST(RingPoints, runRightHandedAboutTheirAxis) {
    const Vec3 centre(10, 20, 30);
    const std::vector<Vec3> x = points(Axis::x, centre, 2, 4);
    ASSERT_EQ(x.size(), 4U);
    expectNear(x[0], {10, 22, 30});
    expectNear(x[1], {10, 20, 32});
    expectNear(x[2], {10, 18, 30});
    expectNear(x[3], {10, 20, 28});
    const std::vector<Vec3> y = points(Axis::y, centre, 2, 4);
    expectNear(y[0], {10, 20, 32});
    expectNear(y[1], {12, 20, 30});
    const std::vector<Vec3> z = points(Axis::z, centre, 2, 4);
    expectNear(z[0], {12, 20, 30});
    expectNear(z[1], {10, 22, 30});
}

TEST(RingPoints, lieOnTheCircleWithoutRepeatingTheFirst) {
    const std::vector<Vec3> ring = points(Axis::z, Vec3(0), 3, 128);
    ASSERT_EQ(ring.size(), 128U);
    for (const Vec3& point : ring) {
        EXPECT_NEAR(std::sqrt(squaredLength(point)), 3.0F, 1e-5F);
        EXPECT_EQ(point.z, 0.0F);
    }
    // 360°/128 = 2.8125° short of the first.
    expectNear(ring.back(), {2.9963864F, -0.1472029F, 0});
}

TEST(RingPoints, noneForNoSegments) {
    EXPECT_TRUE(points(Axis::x, Vec3(0), 1, 0).empty());
    EXPECT_TRUE(points(Axis::x, Vec3(0), 1, -3).empty());
}

TEST(ScreenProjector, mapsTheDeviceSquareToTheViewWithYUp) {
    const ScreenProjector projector{Mat4(1.0F), {800, 600}};
    EXPECT_EQ(projector.project({0, 0, 0}), Vec2(400, 300));
    EXPECT_EQ(projector.project({1, 1, 0}), Vec2(800, 600));
    EXPECT_EQ(projector.project({-1, -0.5F, 0.7F}), Vec2(0, 150));
}

TEST(ScreenProjector, seesACamerasTargetInTheMiddle) {
    ArcBallCamera camera;
    camera.target = {3, -2, 7};
    const ScreenProjector projector{camera.projection(2) * camera.viewMatrix(), {1000, 500}};
    const std::optional<Vec2> seen = projector.project(camera.target);
    ASSERT_TRUE(seen);
    EXPECT_NEAR(seen->x, 500, 1e-2F);
    EXPECT_NEAR(seen->y, 250, 1e-2F);
}

TEST(ScreenProjector, seesNothingThatIsNotInFrontOfTheEye) {
    Mat4 depthAsW(1.0F);
    depthAsW[2][3] = 1;
    depthAsW[3][3] = 0;
    const ScreenProjector projector{depthAsW, {2, 2}};
    EXPECT_EQ(projector.project({0, 0, 1e-6F}), std::nullopt);
    EXPECT_EQ(projector.project({0, 0, 0}), std::nullopt);
    EXPECT_EQ(projector.project({0, 0, -1}), std::nullopt);
    EXPECT_EQ(projector.project({0, 0, 2e-6F}), Vec2(1, 1));
    EXPECT_EQ(projector.project({0, 0, std::nanf("")}), std::nullopt);
}

Ring square(Vec2 centre, float half) {
    return {centre + Vec2(-half, -half), centre + Vec2(half, -half), centre + Vec2(half, half),
        centre + Vec2(-half, half)};
}

std::optional<Axis> hit(Vec2 point, const std::vector<ProjectedRing>& rings) {
    return hitTest(point, rings, 6);
}

TEST(RingHit, isWithinTheToleranceOfTheLine) {
    const std::vector<ProjectedRing> rings{{Axis::y, square({100, 100}, 50)}};
    EXPECT_EQ(hit({100, 50}, rings), Axis::y);
    EXPECT_EQ(hit({100, 56}, rings), Axis::y);
    EXPECT_EQ(hit({100, 44}, rings), Axis::y);
    EXPECT_EQ(hit({100, 56.01F}, rings), std::nullopt);
    EXPECT_EQ(hit({100, 100}, rings), std::nullopt); // inside is not on it
    // Off a corner by 4 and 4: 5.66; by 5 and 5: 7.07.
    EXPECT_EQ(hit({46, 46}, rings), Axis::y);
    EXPECT_EQ(hit({45, 45}, rings), std::nullopt);
}

TEST(RingHit, joinsTheLastPointToTheFirst) {
    const std::vector<ProjectedRing> rings{{Axis::z, square({100, 100}, 50)}};
    EXPECT_EQ(hit({50, 100}, rings), Axis::z);
}

TEST(RingHit, takesTheNearerOfTwo) {
    const std::vector<ProjectedRing> rings{
        {Axis::x, square({100, 100}, 50)}, {Axis::y, square({100, 100}, 54)}};
    EXPECT_EQ(hit({100, 49}, rings), Axis::x);
    EXPECT_EQ(hit({100, 47}, rings), Axis::y);
}

TEST(RingHit, takesTheEarlierAxisOfTwoEquallyNear) {
    const Ring ring = square({100, 100}, 50);
    EXPECT_EQ(hit({100, 52}, {{Axis::x, ring}, {Axis::y, ring}, {Axis::z, ring}}), Axis::x);
    EXPECT_EQ(hit({100, 52}, {{Axis::z, ring}, {Axis::y, ring}}), Axis::y);
    // 2 points from either of two.
    EXPECT_EQ(hit({100, 48}, {{Axis::z, ring}, {Axis::x, square({100, 100}, 54)}}), Axis::x);
}

TEST(RingHit, passesOverWhatIsBehindTheEye) {
    Ring ring = square({100, 100}, 50);
    ring[0] = std::nullopt;
    const std::vector<ProjectedRing> rings{{Axis::x, ring}};
    EXPECT_EQ(hit({100, 50}, rings), std::nullopt); // from the first to the second
    EXPECT_EQ(hit({50, 100}, rings), std::nullopt); // from the last to the first
    EXPECT_EQ(hit({150, 100}, rings), Axis::x);
}

TEST(RingHit, findsNothingOfARingThatCannotBeSeen) {
    EXPECT_EQ(hit({0, 0}, {}), std::nullopt);
    EXPECT_EQ(hit({0, 0}, {{Axis::x, Ring{}}}), std::nullopt);
    EXPECT_EQ(hit({0, 0}, {{Axis::x, Ring(4, std::nullopt)}}), std::nullopt);
    // Every other point: no segment has both its ends.
    EXPECT_EQ(hit({0, 0}, {{Axis::x, Ring{Vec2(0, 0), std::nullopt, Vec2(0, 0), std::nullopt}}}),
        std::nullopt);
}

TEST(RingHit, takesASegmentWithoutLengthAsItsPoint) {
    EXPECT_EQ(hit({3, 4}, {{Axis::x, Ring(3, Vec2(0, 0))}}), Axis::x);
    EXPECT_EQ(hit({5, 5}, {{Axis::x, Ring(3, Vec2(0, 0))}}), std::nullopt);
    EXPECT_EQ(hit({3, 4}, {{Axis::z, Ring{Vec2(0, 0)}}}), Axis::z);
}

} // namespace
} // namespace ostrella::OrientationRings
