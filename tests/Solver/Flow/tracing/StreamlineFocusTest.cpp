#include "Solver/Flow/StreamlineFocus.h"

#include <gtest/gtest.h>

using namespace ostrella;

namespace {

StreamlineFocus focus(const Vec3& size, float upstream = 0.5F, float downstream = 2.0F) {
    return StreamlineFocus::around(Vec3(0.0F), size, upstream, downstream);
}

TEST(StreamlineFocus, liesAboutTheMiddleOfTheBox) {
    const auto around =
        StreamlineFocus::around({-1.0F, 2.0F, 0.5F}, {3.0F, 4.0F, 1.5F}, 0.25F, 3.0F);
    EXPECT_EQ(around.center, Vec3(1.0F, 3.0F, 1.0F));
    EXPECT_EQ(around.size, Vec3(4.0F, 2.0F, 1.0F));
    EXPECT_EQ(around.upstreamFactor, 0.25F);
    EXPECT_EQ(around.downstreamFactor, 3.0F);
}

TEST(StreamlineFocus, isVolumetricFromATenthOfTheLargestExtentInZ) {
    EXPECT_TRUE(focus({4.0F, 2.0F, 0.5F}).isVolumetric);
    EXPECT_FALSE(focus({4.0F, 2.0F, 0.25F}).isVolumetric);
    EXPECT_FALSE(focus({4.0F, 2.0F, 0.1F * 4.0F}).isVolumetric);
    EXPECT_FALSE(focus({4.0F, 2.0F, 0.0F}).isVolumetric);
    EXPECT_TRUE(focus({1.0F, 1.0F, 8.0F}).isVolumetric);
}

TEST(StreamlineFocus, hasTheLengthOfItsBodyAlongX) {
    EXPECT_EQ(focus({2.0F, 4.0F, 1.0F}).bodyLength(), 2.0F);
    EXPECT_EQ(focus({0.5F, 1.0F, 8.0F}).bodyLength(), 2.0F);
    EXPECT_EQ(focus({0.0F, 4.0F, 0.0F}).bodyLength(), 1.0F);
}

TEST(StreamlineFocus, hasAPathOfTheBodyAndBothWays) {
    EXPECT_EQ(focus({2.0F, 1.0F, 1.0F}).pathLength(), 7.0F);
    EXPECT_EQ(focus({2.0F, 1.0F, 1.0F}, 0.0F, 0.0F).pathLength(), 2.0F);
}

TEST(StreamlineFocus, cropsAsWideAsThePathOrTheBodyAsk) {
    EXPECT_EQ(focus({2.0F, 1.0F, 1.0F}).cropHalfWidth(), 0.7F * 7.0F);
    EXPECT_EQ(focus({2.0F, 1.0F, 1.0F}, 0.0F, 0.0F).cropHalfWidth(), 4.0F);
    EXPECT_EQ(focus({1.0F, 1.0F, 8.0F}, 0.0F, 0.0F).cropHalfWidth(), 16.0F);
}

} // namespace
