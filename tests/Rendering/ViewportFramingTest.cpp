#include "Rendering/ViewportFraming.h"

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>

namespace ostrella {
namespace {

using ViewportFraming::effectiveInsets;
using ViewportFraming::transformedBounds;

TEST(EffectiveInsets, areTheInsetsWhereThereIsRoom) {
    const ViewportInsets insets{10, 20, 30, 40};
    EXPECT_EQ(effectiveInsets({200, 200}, insets, 0.3F), insets);
}

TEST(EffectiveInsets, takeNegativeOnesAsNone) {
    EXPECT_EQ(
        effectiveInsets({200, 200}, {-10, -20, 30, 40}, 0.3F), (ViewportInsets{0, 0, 30, 40}));
}

TEST(EffectiveInsets, scaleBothSidesByOneFactor) {
    const ViewportInsets insets =
        effectiveInsets({100, 100}, {.leading = 80, .trailing = 40}, 0.5F);
    EXPECT_NEAR(insets.leading, 33.333333, 1e-5);
    EXPECT_NEAR(insets.trailing, 16.666667, 1e-5);
    EXPECT_EQ(insets.top, 0);
    EXPECT_EQ(insets.bottom, 0);
}

TEST(EffectiveInsets, scaleTopAndBottomApartFromTheSides) {
    const ViewportInsets insets = effectiveInsets(
        {1000, 200}, {.top = 300, .leading = 400, .bottom = 100, .trailing = 5}, 0.25F);
    EXPECT_NEAR(insets.top, 112.5, 1e-9);
    EXPECT_NEAR(insets.bottom, 37.5, 1e-9);
    EXPECT_EQ(insets.leading, 400);
    EXPECT_EQ(insets.trailing, 5);
}

TEST(EffectiveInsets, areLeftAtTheLimitItself) {
    const ViewportInsets insets{.leading = 25, .trailing = 25};
    EXPECT_EQ(effectiveInsets({100, 100}, insets, 0.5F), insets);
}

TEST(EffectiveInsets, countNegativeOnesAsNoneAheadOfTheScaling) {
    const ViewportInsets insets =
        effectiveInsets({100, 100}, {.leading = 80, .trailing = -60}, 0.5F);
    EXPECT_EQ(insets.leading, 50);
    EXPECT_EQ(insets.trailing, 0);
}

TEST(EffectiveInsets, areNoneInAViewWithoutSize) {
    EXPECT_EQ(effectiveInsets({0, 0}, {10, 20, 30, 40}, 0.3F), (ViewportInsets{0, 0, 0, 0}));
}

TEST(TransformedBounds, areTheBoxItselfUnderTheIdentity) {
    // Also a box that is no box: nothing is looked at.
    EXPECT_EQ(
        transformedBounds({1, 2, 3}, {-4, 5, 6}, Mat4(1.0F)), (BoundingBox{{1, 2, 3}, {-4, 5, 6}}));
}

TEST(TransformedBounds, moveWithATranslation) {
    const Mat4 moved = glm::translate(Mat4(1.0F), Vec3(10, 20, 30));
    EXPECT_EQ(transformedBounds({-1, -2, -3}, {1, 2, 3}, moved),
        (BoundingBox{{9, 18, 27}, {11, 22, 33}}));
}

TEST(TransformedBounds, areLeastAndGreatestUnderAMirror) {
    const Mat4 mirror = glm::scale(Mat4(1.0F), Vec3(-1, 2, -0.5F));
    EXPECT_EQ(
        transformedBounds({1, 2, 4}, {3, 5, 8}, mirror), (BoundingBox{{-3, 4, -4}, {-1, 10, -2}}));
}

TEST(TransformedBounds, surroundTheTurnedBox) {
    // A quarter turn about z takes (x, y) to (−y, x).
    Mat4 turn(1.0F);
    turn[0] = {0, 1, 0, 0};
    turn[1] = {-1, 0, 0, 0};
    EXPECT_EQ(transformedBounds({0, 0, 0}, {2, 1, 5}, turn), (BoundingBox{{-1, 0, 0}, {0, 2, 5}}));
}

TEST(TransformedBounds, growUnderAnEighthOfATurn) {
    const Mat4 turn = glm::rotate(Mat4(1.0F), 0.78539816F, Vec3(0, 0, 1));
    const BoundingBox box = transformedBounds({-1, -1, -1}, {1, 1, 1}, turn);
    EXPECT_NEAR(box.min.x, -1.4142135F, 1e-6F);
    EXPECT_NEAR(box.max.x, 1.4142135F, 1e-6F);
    EXPECT_NEAR(box.max.y, 1.4142135F, 1e-6F);
    EXPECT_NEAR(box.max.z, 1.0F, 1e-6F);
}

} // namespace
} // namespace ostrella
