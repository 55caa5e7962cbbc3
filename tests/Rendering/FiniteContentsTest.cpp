#include "Rendering/FiniteContents.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace ostrella {
namespace {

using namespace FiniteContents;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(PlacedPoints, haveThreeNumbersThatCanBeSquared) {
    EXPECT_TRUE(isPlaced({0, -1e15F, 1e15F}));
    EXPECT_FALSE(isPlaced({0, 1.1e15F, 0}));
    EXPECT_FALSE(isPlaced({nan, 0, 0}));
    EXPECT_FALSE(isPlaced({0, nan, 0}));
    EXPECT_FALSE(isPlaced({0, 0, -infinity}));
}

TEST(FiniteBounds, areTheBoxAsItIs) {
    const std::array points{Vec3(7, 7, 7)};
    EXPECT_EQ(boundsOf({{1, 2, 3}, {4, 5, 6}}, points), (BoundingBox{{1, 2, 3}, {4, 5, 6}}));
}

TEST(FiniteBounds, areThoseOfThePlacedPointsOfABrokenBox) {
    const std::array points{Vec3(nan, 9, 9), Vec3(1, 5, 3), Vec3(2, 4, infinity), Vec3(-1, 6, 2)};
    EXPECT_EQ(boundsOf({{nan, 2, 3}, {4, 5, 6}}, points), (BoundingBox{{-1, 5, 2}, {1, 6, 3}}));
    EXPECT_EQ(boundsOf({{1, 2, 3}, {4, infinity, 6}}, {}), BoundingBox{});
}

TEST(FiniteRange, isTheRangeAsItIs) {
    const std::array values{9.0F};
    EXPECT_EQ(rangeOf(1, 2, values), Vec2(1, 2));
}

TEST(FiniteRange, isThatOfTheFiniteValuesOfABrokenOne) {
    const std::array values{nan, 3.0F, infinity, -2.0F};
    EXPECT_EQ(rangeOf(nan, 2, values), Vec2(-2, 3));
    EXPECT_EQ(rangeOf(1, infinity, values, 2), Vec2(0, 1));
    EXPECT_EQ(rangeOf(nan, nan, {}), Vec2(0, 1));
}

TEST(ReachedValues, stayOrGoToAnEnd) {
    EXPECT_EQ(withinReach(5, {0, 1}), 5);
    EXPECT_EQ(withinReach(infinity, {0, 1}), 1);
    EXPECT_EQ(withinReach(-infinity, {0, 1}), 0);
    EXPECT_EQ(withinReach(nan, {0, 1}), 0);
}

TEST(PresentPrimitives, areTheSameArrayWhereAllArePresent) {
    const SharedArray<std::uint32_t> indices{0, 1, 2, 2, 1, 0};
    EXPECT_TRUE(presentPrimitives(indices, 3, 3).sharesBufferWith(indices));
}

TEST(PresentPrimitives, areWholeAndOfVerticesThatAreThere) {
    const SharedArray<std::uint32_t> indices{0, 1, 2, 0, 1, 3, 2, 1, 0, 0, 1};
    EXPECT_EQ(presentPrimitives(indices, 3, 3), (SharedArray<std::uint32_t>{0, 1, 2, 2, 1, 0}));
    EXPECT_EQ(presentPrimitives(indices, 2, 1), (SharedArray<std::uint32_t>{0, 0}));
    EXPECT_EQ(presentPrimitives({}, 3, 0), SharedArray<std::uint32_t>{});
}

} // namespace
} // namespace ostrella
