#include "Rendering/ViewportPicking.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace ostrella::ViewportPicking {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::numeric_limits<float>::quiet_NaN();

void expectNear(const Vec3& actual, const Vec3& expected, float tolerance = 1e-5F) {
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance);
}

/// From (0, 0, 5) towards −z.
ArcBallCamera fromTheFront() {
    ArcBallCamera camera;
    camera.azimuth = 0;
    camera.elevation = 0;
    return camera;
}

TEST(PickRay, throughTheMiddleLooksAtTheTarget) {
    const std::optional<Ray> made = ray({400, 300}, {800, 600}, fromTheFront(), {0, 0});
    ASSERT_TRUE(made);
    expectNear(made->origin, {0, 0, 5});
    expectNear(made->direction, {0, 0, -1});
}

TEST(PickRay, throughAnEdgeIsAtHalfTheFieldOfView) {
    // 45° in height: 22.5° up at the top; 4/3 of its tangent to the right.
    const std::optional<Ray> top = ray({400, 600}, {800, 600}, fromTheFront(), {0, 0});
    expectNear(top->direction, {0, 0.3826834F, -0.9238795F});
    const std::optional<Ray> right = ray({800, 300}, {800, 600}, fromTheFront(), {0, 0});
    // tan = 0.5522847; 1 / sqrt(1 + tan²) = 0.8753709
    expectNear(right->direction, {0.4834540F, 0, -0.8753709F});
}

TEST(PickRay, isTakenBackByTheLensShift) {
    // The target is seen a quarter of the view further right and an eighth further up.
    const std::optional<Ray> made = ray({600, 375}, {800, 600}, fromTheFront(), {0.5F, 0.25F});
    expectNear(made->direction, {0, 0, -1});
}

TEST(PickRay, leadsToThePointThatIsSeenThere) {
    ArcBallCamera camera;
    camera.target = {2, 1, -3};
    const Vec2 size(640, 400);
    const Vec2 shift(0.2F, -0.3F);
    const Vec3 point(2.5F, 1.5F, -2.0F);
    const Vec4 clip = camera.projection(1.6F, shift) * camera.viewMatrix() * Vec4(point, 1.0F);
    const Vec2 seen = (Vec2(clip) / clip.w + 1.0F) * 0.5F * size;
    const std::optional<Ray> made = ray(seen, size, camera, shift);
    const Vec3 way = point - camera.eye();
    expectNear(made->direction, way / std::sqrt(squaredLength(way)), 1e-5F);
}

TEST(PickRay, needsAView) {
    EXPECT_EQ(ray({0, 0}, {1, 600}, fromTheFront(), {0, 0}), std::nullopt);
    EXPECT_EQ(ray({0, 0}, {800, 1}, fromTheFront(), {0, 0}), std::nullopt);
    EXPECT_EQ(ray({0, 0}, {0, 0}, fromTheFront(), {0, 0}), std::nullopt);
    EXPECT_TRUE(ray({0, 0}, {1.5F, 1.5F}, fromTheFront(), {0, 0}));
}

TEST(PickRay, transformedMovesItsOriginAndTurnsItsDirection) {
    Mat4 matrix(1.0F);
    matrix[0] = Vec4(0, 2, 0, 0); // a quarter turn about z, twice as large
    matrix[1] = Vec4(-2, 0, 0, 0);
    matrix[3] = Vec4(10, 20, 30, 1);
    const Ray moved = Ray{{1, 2, 3}, {1, 0, 0}}.transformed(matrix);
    EXPECT_EQ(moved.origin, Vec3(6, 22, 33));
    EXPECT_EQ(moved.direction, Vec3(0, 2, 0));
}

TEST(HitsSphere, aheadButNotBehind) {
    const Ray ahead{{0, 0, 5}, {0, 0, -1}};
    EXPECT_TRUE(hitsSphere(ahead, {0, 0, 0}, 1));
    EXPECT_FALSE(hitsSphere(ahead, {0, 0, 10}, 1));
    EXPECT_FALSE(hitsSphere(ahead, {2, 0, 0}, 1));
}

TEST(HitsSphere, touchingCounts) {
    const Ray ahead{{0, 0, 5}, {0, 0, -1}};
    EXPECT_TRUE(hitsSphere(ahead, {1, 0, 0}, 1));
    EXPECT_FALSE(hitsSphere(ahead, {1.0001F, 0, 0}, 1));
    // Beside the eye, neither ahead nor behind.
    EXPECT_FALSE(hitsSphere(ahead, {0, 2, 5}, 1));
}

TEST(HitsSphere, fromWithinWhateverTheDirection) {
    const Ray away{{0, 0, 0.5F}, {0, 0, 1}};
    EXPECT_TRUE(hitsSphere(away, {0, 0, 0}, 1));
    EXPECT_TRUE(hitsSphere({{0, 0, 1}, {0, 0, 1}}, {0, 0, 0}, 1)); // on its surface
}

TEST(HitsSphere, tellsASmallBodyFromFarAway) {
    EXPECT_TRUE(hitsSphere({{0, 0, 5000}, {0, 0, -1}}, {0.009F, 0, 0}, 0.01F));
    EXPECT_FALSE(hitsSphere({{0, 0, 5000}, {0, 0, -1}}, {0.011F, 0, 0}, 0.01F));
}

const std::vector<Vec3> corner{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
const std::vector<std::uint32_t> one{0, 1, 2};

std::optional<float> hit(const Vec3& origin, const Vec3& direction,
    const std::vector<Vec3>& positions = corner, const std::vector<std::uint32_t>& indices = one,
    std::size_t stride = 1) {
    return nearestHit({origin, direction}, positions, stride, indices);
}

TEST(NearestHit, isTheDistanceInUnitsOfTheDirection) {
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}), 3.0F);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -2}), 1.5F);
}

TEST(NearestHit, countsBothSides) {
    EXPECT_EQ(hit({0.25F, 0.25F, -3}, {0, 0, 1}), 3.0F);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {0, 2, 1}), 3.0F);
}

TEST(NearestHit, includesEdgesAndCorners) {
    for (const Vec2 on :
        {Vec2(0, 0), Vec2(1, 0), Vec2(0, 1), Vec2(0.5F, 0), Vec2(0, 0.5F), Vec2(0.5F, 0.5F)})
        EXPECT_EQ(hit({on.x, on.y, 2}, {0, 0, -1}), 2.0F) << on.x << ' ' << on.y;
    for (const Vec2 off : {Vec2(-1e-6F, 0.5F), Vec2(0.5F, -1e-6F), Vec2(0.500001F, 0.500001F),
             Vec2(1.000001F, 0), Vec2(0, 1.000001F)})
        EXPECT_EQ(hit({off.x, off.y, 2}, {0, 0, -1}), std::nullopt) << off.x << ' ' << off.y;
}

TEST(NearestHit, isAheadOfTheOrigin) {
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, 1}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 0}, {0, 0, -1}), std::nullopt); // on the triangle itself
}

TEST(NearestHit, passesByATriangleSeenOnEdge) {
    EXPECT_EQ(hit({-1, 0.25F, 0}, {1, 0, 0}), std::nullopt);
    // On edge in a slanted plane, and past the triangle: no figure of the arithmetic's own making.
    const std::vector<Vec3> slanted{{0, 0, 0}, {0.1F, 0.3F, 0.7F}, {0.9F, -0.2F, 0.3F}};
    const Vec3 inPlane = slanted[1] - slanted[2];
    EXPECT_EQ(hit(Vec3(5, 5, 5) - 4.0F * inPlane, inPlane, slanted), std::nullopt);
}

TEST(NearestHit, isTheNearestOfAll) {
    std::vector<Vec3> layers;
    std::vector<std::uint32_t> indices;
    for (const float z : {1.0F, 2.0F, -4.0F, 1.5F}) {
        for (const Vec3& point : corner) {
            indices.push_back(static_cast<std::uint32_t>(layers.size()));
            layers.push_back(point + Vec3(0, 0, z));
        }
    }
    EXPECT_EQ(hit({0.2F, 0.2F, 10}, {0, 0, -1}, layers, indices), 8.0F);
    EXPECT_EQ(hit({0.2F, 0.2F, -10}, {0, 0, 1}, layers, indices), 6.0F);
    EXPECT_EQ(hit({0.2F, 0.2F, 1.25F}, {0, 0, 1}, layers, indices), 0.25F);
}

TEST(NearestHit, readsEveryPositionAtItsStride) {
    const Vec3 normal(9, 9, 9);
    const std::vector<Vec3> vertices{corner[0], normal, corner[1], normal, corner[2], normal};
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, vertices, one, 2), 3.0F);
    // The last normal may be missing.
    EXPECT_EQ(
        hit({0.25F, 0.25F, 3}, {0, 0, -1}, {vertices.begin(), vertices.end() - 1}, one, 2), 3.0F);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, {vertices.begin(), vertices.end() - 2}, one, 2),
        std::nullopt);
}

TEST(NearestHit, needsThreeIndices) {
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {0, 1}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, {}, one), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {0, 1, 2, 0, 1}), 3.0F);
}

TEST(NearestHit, passesOverIndicesPastTheEnd) {
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {0, 1, 3}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, -1}, corner, {0, 4294967295U, 2, 0, 1, 2}), 3.0F);
}

TEST(NearestHit, passesOverDegenerateAndBrokenTriangles) {
    for (const Vec3& broken : {Vec3(nan, 0, 0), Vec3(infinity, 0, 0), Vec3(0, -infinity, 0),
             Vec3(0, 0, nan), Vec3(0, 0, 0), Vec3(2, 0, 0)})
        EXPECT_EQ(hit({0.25F, 0.0F, 3}, {0, 0, -1}, {{0, 0, 0}, {1, 0, 0}, broken}), std::nullopt);
    EXPECT_EQ(hit({nan, 0, 3}, {0, 0, -1}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, nan}), std::nullopt);
    EXPECT_EQ(hit({0.25F, 0.25F, 3}, {0, 0, 0}), std::nullopt);
}

TEST(NearestHit, boundsTheDeterminantBothWays) {
    // It is the product of the two legs here: 8.1e-31 and 1.21e-30; 1e36 and 1e40.
    const auto sized = [](float leg) {
        return hit({leg / 4, leg / 4, 3}, {0, 0, -1}, {{0, 0, 0}, {leg, 0, 0}, {0, leg, 0}});
    };
    EXPECT_EQ(sized(0.9e-15F), std::nullopt);
    EXPECT_EQ(sized(1.1e-15F), 3.0F);
    EXPECT_EQ(sized(1e18F), 3.0F);
    EXPECT_EQ(sized(1e20F), std::nullopt);
}

TEST(NearestHit, worksForBodiesOfAnySize) {
    for (const float size : {1e-6F, 1.0F, 1e6F}) {
        const std::vector<Vec3> body{{0, 0, 0}, {size, 0, 0}, {0, size, 0}};
        const std::optional<float> distance = hit({size / 4, size / 4, 3 * size}, {0, 0, -1}, body);
        ASSERT_TRUE(distance) << size;
        EXPECT_FLOAT_EQ(*distance, 3 * size);
    }
}

} // namespace
} // namespace ostrella::ViewportPicking
