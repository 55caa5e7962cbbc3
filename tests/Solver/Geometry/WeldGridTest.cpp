#include "Solver/Geometry/WeldGrid.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace ostrella {

namespace {

WeldKey keyOf(const Vec3& point, float epsilon) {
    WeldKey key;
    WeldGrid({}, epsilon).keys({&point, 1}, &key);
    return key;
}

TEST(WeldGrid, TheStepIsAHundredThousandthOfTheLargestExtent) {
    EXPECT_EQ(WeldGrid({Vec3(0), Vec3(1, 8, 2)}).scale(), 1.0F / (8.0F * 1e-5F));
    EXPECT_EQ(WeldGrid({Vec3(-3, 0, 0), Vec3(1, 1, 1)}).scale(), 1.0F / (4.0F * 1e-5F));
}

TEST(WeldGrid, TheDefaultStepIsAtLeastABillionth) {
    EXPECT_EQ(WeldGrid({Vec3(5), Vec3(5)}).scale(), 1.0F / 1e-9F);
    EXPECT_EQ(WeldGrid({Vec3(0), Vec3(1e-6F)}).scale(), 1.0F / 1e-9F);
}

TEST(WeldGrid, AGivenStepIsUsedAsItStands) {
    EXPECT_EQ(WeldGrid({Vec3(0), Vec3(1)}, 1e-12F).scale(), 1.0F / 1e-12F);
    EXPECT_EQ(WeldGrid({Vec3(0), Vec3(1)}, 0.5F).scale(), 2.0F);
}

TEST(WeldGrid, HalvesAreRoundedAwayFromZero) {
    EXPECT_EQ(keyOf({0.5F, 1.5F, 2.5F}, 1.0F), (WeldKey{1, 2, 3}));
    EXPECT_EQ(keyOf({-0.5F, -1.5F, -2.5F}, 1.0F), (WeldKey{-1, -2, -3}));
    EXPECT_EQ(keyOf({0.49999997F, -0.49999997F, 8388609.0F}, 1.0F), (WeldKey{0, 0, 8388609}));
}

TEST(WeldGrid, TheEndsOfTheRangeHaveKeys) {
    EXPECT_EQ(keyOf({2147483520.0F, -2147483648.0F, 0}, 1.0F),
        (WeldKey{2147483520, std::numeric_limits<std::int32_t>::min(), 0}));
}

TEST(WeldGrid, RoundsAsTheStandardLibraryDoesOverAllFloats) {
    // Every 61st pattern of bits, and all of them about the first halves.
    const WeldGrid grid({}, 1.0F);
    std::vector<Vec3> points;
    const auto add = [&points](std::uint32_t bits) {
        const auto value = std::bit_cast<float>(bits);
        if (value >= -2147483648.0F && value < 2147483648.0F)
            points.emplace_back(value, -value < 2147483648.0F ? -value : 0.0F, 0.0F);
    };
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFFU; bits += 61)
        add(static_cast<std::uint32_t>(bits));
    for (const float half : {0.5F, 1.5F, 2.5F, 1023.5F, 4194303.5F, 8388607.5F})
        for (std::uint32_t i = 0; i < 2000; ++i)
            add(std::bit_cast<std::uint32_t>(half) - 1000 + i);
    std::vector<WeldKey> keys(points.size());
    grid.keys(points, keys.data());
    for (std::size_t i = 0; i < points.size(); ++i) {
        ASSERT_EQ(keys[i].x, static_cast<std::int64_t>(std::round(points[i].x))) << points[i].x;
        ASSERT_EQ(keys[i].y, static_cast<std::int64_t>(std::round(points[i].y))) << points[i].y;
    }
}

TEST(WeldGrid, CoversABoxWhoseCornersHaveKeys) {
    const WeldGrid grid({}, 1.0F);
    EXPECT_TRUE(grid.covers({Vec3(-2147483648.0F), Vec3(2147483520.0F)}));
    EXPECT_FALSE(grid.covers({Vec3(0), Vec3(0, 2147483648.0F, 0)}));
    EXPECT_FALSE(grid.covers({Vec3(0, 0, -2147483904.0F), Vec3(0)}));
    EXPECT_FALSE(grid.covers({Vec3(std::numeric_limits<float>::quiet_NaN()), Vec3(0)}));
}

TEST(WeldGridDeathTest, WhatHasNoKeyEndsTheProcess) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float bad : {nan, infinity, -infinity, 2147483648.0F, -2147483904.0F})
        EXPECT_DEATH(keyOf({0, bad, 0}, 1.0F), "too far from the origin, or not finite");
}

} // namespace

} // namespace ostrella
