#include "Brand/ColorMap.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace ostrella::ColorMap {
namespace {

void expectNear(const Vec3& actual, const Vec3& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-6F);
    EXPECT_NEAR(actual.y, expected.y, 1e-6F);
    EXPECT_NEAR(actual.z, expected.z, 1e-6F);
}

TEST(ColorMap, passesThroughTheLegendsStopsFromTheTopDown) {
    expectNear(colorAt(0.0F), {0.480F, 0.016F, 0.012F});
    expectNear(colorAt(0.2F), {0.870F, 0.247F, 0.027F});
    expectNear(colorAt(0.35F), {0.978F, 0.621F, 0.082F});
    expectNear(colorAt(0.5F), {0.871F, 0.875F, 0.094F});
    expectNear(colorAt(0.65F), {0.345F, 0.882F, 0.388F});
    expectNear(colorAt(0.8F), {0.149F, 0.541F, 0.929F});
    expectNear(colorAt(1.0F), {0.190F, 0.071F, 0.235F});
}

TEST(ColorMap, runsStraightBetweenTwoStops) {
    // Half way from the first to the second, and a third of the way from the last but one.
    expectNear(colorAt(0.1F), {0.675F, 0.1315F, 0.0195F});
    expectNear(colorAt(0.7F), {0.2796667F, 0.7683333F, 0.5683333F});
}

TEST(ColorMap, theGreatestValueIsAtTheTop) {
    EXPECT_EQ(color(1.0F), colorAt(0.0F));
    EXPECT_EQ(color(0.0F), colorAt(1.0F));
    expectNear(color(0.5F), {0.871F, 0.875F, 0.094F});
    expectNear(color(0.8F), {0.870F, 0.247F, 0.027F});
}

TEST(ColorMap, goesOnWithTheColoursOfItsEnds) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float above : {1.001F, 7.0F, infinity})
        EXPECT_EQ(color(above), color(1.0F)) << above;
    for (const float below : {-0.001F, -7.0F, -infinity})
        EXPECT_EQ(color(below), color(0.0F)) << below;
}

TEST(ColorMap, whatIsNoNumberHasTheLeastValuesColour) {
    EXPECT_EQ(color(std::numeric_limits<float>::quiet_NaN()), color(0.0F));
}

} // namespace
} // namespace ostrella::ColorMap
