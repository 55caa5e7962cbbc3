#include "Rendering/OrientationGizmo.h"

#include "Brand/ViewportStyle.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrella::OrientationGizmo {
namespace {

constexpr std::size_t axesAndLetters = 11;
const Mat4 identity(1.0F);
const Vec4 accent(ViewportStyle::accent, 0.95F);

void expectSegment(const Segment& actual, const Vec4& ends, const Vec4& color, Vec2 params) {
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual.ends[i], ends[i], 1e-4F) << "end " << i;
    EXPECT_EQ(actual.color, color);
    EXPECT_NEAR(actual.params.x, params.x, 1e-6F);
    EXPECT_NEAR(actual.params.y, params.y, 1e-6F);
    EXPECT_EQ(actual.params.z, 0.0F);
    EXPECT_EQ(actual.params.w, 0.0F);
}

/// The arrow's lines, behind those of the axes.
std::vector<Segment> arrow(const Vec3& freeStream, const Mat4& view = identity, float scale = 1) {
    const std::vector<Segment> all = build(view, freeStream, scale);
    return {all.begin() + axesAndLetters, all.end()};
}

TEST(Gizmo, seenStraightOnHasXToTheRightAndYUp) {
    const std::vector<Segment> lines = build(identity, std::nullopt, 1);
    ASSERT_EQ(lines.size(), axesAndLetters);
    const Vec4& x = ViewportStyle::gizmoAxisX;
    expectSegment(lines[0], {32, 32, 52, 32}, x, {0.625F, 0.75F});
    // The letter is 6.5 points high, around (59, 32).
    expectSegment(lines[1], {56.4F, 28.75F, 61.6F, 35.25F}, x, {0.75F, 0.75F});
    expectSegment(lines[2], {56.4F, 35.25F, 61.6F, 28.75F}, x, {0.75F, 0.75F});
    const Vec4& y = ViewportStyle::gizmoAxisY;
    expectSegment(lines[3], {32, 32, 32, 52}, y, {0.625F, 0.75F});
    expectSegment(lines[4], {29.4F, 62.25F, 32, 59}, y, {0.75F, 0.75F});
    expectSegment(lines[5], {34.6F, 62.25F, 32, 59}, y, {0.75F, 0.75F});
    expectSegment(lines[6], {32, 59, 32, 55.75F}, y, {0.75F, 0.75F});
}

TEST(Gizmo, anAxisTowardsTheViewerHasItsLetterOnTheCentre) {
    const std::vector<Segment> lines = build(identity, std::nullopt, 1);
    const Vec4& z = ViewportStyle::gizmoAxisZ;
    expectSegment(lines[7], {32, 32, 32, 32}, z, {0.625F, 0.75F});
    expectSegment(lines[8], {29.4F, 35.25F, 34.6F, 35.25F}, z, {0.75F, 0.75F});
    expectSegment(lines[9], {34.6F, 35.25F, 29.4F, 28.75F}, z, {0.75F, 0.75F});
    expectSegment(lines[10], {29.4F, 28.75F, 34.6F, 28.75F}, z, {0.75F, 0.75F});
}

TEST(Gizmo, scalesWithThePixelsOfAPoint) {
    const std::vector<Segment> lines = build(identity, Vec3(1, 0, 0), 2);
    expectSegment(lines[0], {64, 64, 104, 64}, ViewportStyle::gizmoAxisX, {1.25F, 1.5F});
    expectSegment(
        lines[1], {112.8F, 57.5F, 123.2F, 70.5F}, ViewportStyle::gizmoAxisX, {1.5F, 1.5F});
    expectSegment(lines[axesAndLetters], {150, 64, 210, 64}, accent, {2, 1.5F});
}

TEST(Gizmo, drawsWhatPointsAwayFirst) {
    // Half a turn about y: z points away from the viewer, x to the left.
    Mat4 view(1.0F);
    view[0][0] = -1;
    view[2][2] = -1;
    const std::vector<Segment> lines = build(view, std::nullopt, 1);
    EXPECT_EQ(lines[0].color, ViewportStyle::gizmoAxisZ);
    EXPECT_EQ(lines[4].color, ViewportStyle::gizmoAxisX); // x before y, both across the view
    EXPECT_EQ(lines[7].color, ViewportStyle::gizmoAxisY);
    expectSegment(lines[4], {32, 32, 12, 32}, ViewportStyle::gizmoAxisX, {0.625F, 0.75F});
}

TEST(Gizmo, putsTheAxisNearestToTheViewerLast) {
    // A quarter turn about y that brings x towards the viewer and z to the left.
    const Mat4 view(Vec4(0, 0, 1, 0), Vec4(0, 1, 0, 0), Vec4(-1, 0, 0, 0), Vec4(0, 0, 0, 1));
    const std::vector<Segment> lines = build(view, std::nullopt, 1);
    EXPECT_EQ(lines[0].color, ViewportStyle::gizmoAxisY);
    EXPECT_EQ(lines[4].color, ViewportStyle::gizmoAxisZ);
    EXPECT_EQ(lines[8].color, ViewportStyle::gizmoAxisX);
}

TEST(GizmoArrow, isAbsentWithoutAFreeStream) {
    EXPECT_EQ(build(identity, std::nullopt, 1).size(), axesAndLetters);
    EXPECT_EQ(build(identity, Vec3(0, 0, 0), 1).size(), axesAndLetters);
    EXPECT_EQ(
        build(identity, Vec3(std::numeric_limits<float>::quiet_NaN()), 1).size(), axesAndLetters);
}

TEST(GizmoArrow, isThirtyPointsLongInTheScreensPlane) {
    const std::vector<Segment> lines = arrow({3, 0, 0});
    ASSERT_EQ(lines.size(), 3U);
    expectSegment(lines[0], {75, 32, 105, 32}, accent, {1, 0.75F});
    // 6 cos 28° = 5.297686 back, 6 sin 28° = 2.816829 to either side.
    expectSegment(lines[1], {105, 32, 99.702314F, 29.183171F}, accent, {1, 0.75F});
    expectSegment(lines[2], {105, 32, 99.702314F, 34.816829F}, accent, {1, 0.75F});
}

TEST(GizmoArrow, isForeshortenedWithAHeadOfTheSameSize) {
    const std::vector<Segment> lines = arrow({0, 0.6F, 0.8F});
    ASSERT_EQ(lines.size(), 3U);
    expectSegment(lines[0], {90, 23, 90, 41}, accent, {1, 0.75F});
    expectSegment(lines[1], {90, 41, 92.816829F, 35.702314F}, accent, {1, 0.75F});
    expectSegment(lines[2], {90, 41, 87.183171F, 35.702314F}, accent, {1, 0.75F});
}

TEST(GizmoArrow, towardsTheViewerIsACircleWithADot) {
    const std::vector<Segment> lines = arrow({0, 0, 2});
    ASSERT_EQ(lines.size(), 17U);
    // cos 22.5° = 0.9238795, sin 22.5° = 0.3826834
    expectSegment(lines[0], {96, 32, 95.543277F, 34.2961F}, accent, {1, 0.75F});
    expectSegment(lines[4], {90, 38, 87.7039F, 37.543277F}, accent, {1, 0.75F});
    expectSegment(lines[15], {95.543277F, 29.7039F, 96, 32}, accent, {1, 0.75F});
    expectSegment(lines[16], {90, 32, 90, 32}, accent, {1.8F, 0.75F});
}

TEST(GizmoArrow, awayFromTheViewerIsACircleWithACross) {
    const std::vector<Segment> lines = arrow({0, 0, -2});
    ASSERT_EQ(lines.size(), 18U);
    expectSegment(lines[16], {86.7F, 28.7F, 93.3F, 35.3F}, accent, {1, 0.75F});
    expectSegment(lines[17], {86.7F, 35.3F, 93.3F, 28.7F}, accent, {1, 0.75F});
}

TEST(GizmoArrow, turnsIntoACircleBelowAFifthOfItsLength) {
    // The first column of this matrix is all that the free stream along x meets.
    const auto lengthened = [](float share) {
        Mat4 view(1.0F);
        view[0] = Vec4(share, 0, 0.97F, 0);
        return arrow({1, 0, 0}, view).size();
    };
    EXPECT_EQ(lengthened(0.2F), 3U);
    EXPECT_EQ(lengthened(0.1999F), 17U);
}

TEST(FreeStreamDirection, pitchesUpwardsAndSlipsAgainstZ) {
    const auto expectNear = [](const Vec3& actual, const Vec3& expected) {
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(actual[i], expected[i], 1e-6F);
    };
    constexpr float degree = 0.017453293F;
    expectNear(freeStreamDirection(0, 0), {1, 0, 0});
    expectNear(freeStreamDirection(90 * degree, 0), {0, 1, 0});
    expectNear(freeStreamDirection(0, 90 * degree), {0, 0, -1});
    // cos 30° cos 20°, sin 30° cos 20°, −sin 20°
    expectNear(
        freeStreamDirection(30 * degree, 20 * degree), {0.8137977F, 0.4698463F, -0.3420201F});
    expectNear(
        freeStreamDirection(-30 * degree, -20 * degree), {0.8137977F, -0.4698463F, 0.3420201F});
}

} // namespace
} // namespace ostrella::OrientationGizmo
