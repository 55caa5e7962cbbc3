#include "Solver/Flow/SeedRake.h"

#include <gtest/gtest.h>

#include <vector>

using namespace ostrella;

namespace {

/// A body of 4 × 2 × 1 m about (10, 20, 30); its length is 4 m, the seeds stand 2 m ahead of it.
StreamlineFocus body(bool isVolumetric) {
    return {{10.0F, 20.0F, 30.0F}, {4.0F, 2.0F, 1.0F}, isVolumetric, 0.5F, 2.0F};
}

std::vector<Vec3> seeds(int count, const StreamlineFocus& focus) {
    const SeedRake rake(count, focus);
    std::vector<Vec3> result;
    for (std::int64_t i = 0; i < rake.size(); ++i)
        result.push_back(rake[i]);
    return result;
}

TEST(SeedRake, isAColumnAheadOfAFlatBody) {
    EXPECT_EQ(seeds(3, body(false)),
        (std::vector<Vec3>{{6.0F, 18.5F, 30.0F}, {6.0F, 20.0F, 30.0F}, {6.0F, 21.5F, 30.0F}}));
}

TEST(SeedRake, ofOneBeginsAtTheColumnsEnd) {
    EXPECT_EQ(seeds(1, body(false)), (std::vector<Vec3>{{6.0F, 18.5F, 30.0F}}));
}

TEST(SeedRake, ofNoneIsEmpty) {
    EXPECT_TRUE(seeds(0, body(false)).empty());
}

TEST(SeedRake, isASquareOfRowsForAVolume) {
    // Half of it is 1.5 m in y, and in z a quarter of the largest extent, 1 m; y goes first.
    EXPECT_EQ(seeds(9, body(true)),
        (std::vector<Vec3>{{6.0F, 18.5F, 29.0F}, {6.0F, 20.0F, 29.0F}, {6.0F, 21.5F, 29.0F},
            {6.0F, 18.5F, 30.0F}, {6.0F, 20.0F, 30.0F}, {6.0F, 21.5F, 30.0F}, {6.0F, 18.5F, 31.0F},
            {6.0F, 20.0F, 31.0F}, {6.0F, 21.5F, 31.0F}}));
}

TEST(SeedRake, ofFiveInAVolumeIsItsFourCorners) {
    EXPECT_EQ(seeds(5, body(true)), (std::vector<Vec3>{{6.0F, 18.5F, 29.0F}, {6.0F, 21.5F, 29.0F},
                                        {6.0F, 18.5F, 31.0F}, {6.0F, 21.5F, 31.0F}}));
}

TEST(SeedRake, takesTheNearestSquareInAVolume) {
    const auto size = [](int count) { return SeedRake(count, body(true)).size(); };
    EXPECT_EQ(size(0), 4);
    EXPECT_EQ(size(1), 4);
    EXPECT_EQ(size(6), 4);
    EXPECT_EQ(size(7), 9);
    EXPECT_EQ(size(100), 100);
    EXPECT_EQ(size(150), 144);
    EXPECT_EQ(size(196), 196);
    EXPECT_EQ(size(500), 484);
    EXPECT_EQ(size(2147483647), 46341LL * 46341LL);
}

TEST(SeedRake, isAtLeastHalfAsWideAsTheLargestExtent) {
    const StreamlineFocus needle{Vec3(0.0F), {8.0F, 1.0F, 1.0F}, true, 0.0F, 0.0F};
    EXPECT_EQ(seeds(4, needle), (std::vector<Vec3>{{-4.0F, -2.0F, -2.0F}, {-4.0F, 2.0F, -2.0F},
                                    {-4.0F, -2.0F, 2.0F}, {-4.0F, 2.0F, 2.0F}}));
}

TEST(SeedRake, standsAheadOfAThinBodyByAQuarterOfItsExtent) {
    const StreamlineFocus plate{Vec3(0.0F), {0.0F, 8.0F, 8.0F}, true, 1.0F, 1.0F};
    EXPECT_EQ(seeds(4, plate)[0], Vec3(-2.0F, -6.0F, -6.0F));
}

TEST(SeedRakeDeathTest, endsTheProcessAtANegativeCount) {
    EXPECT_DEATH(SeedRake(-1, body(false)), "negative number of seeds");
    EXPECT_DEATH(SeedRake(-1, body(true)), "negative number of seeds");
}

} // namespace
