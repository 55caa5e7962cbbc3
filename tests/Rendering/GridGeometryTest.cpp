#include "Rendering/GridGeometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrella::GridGeometry {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Plan plan(Vec2 centre, float y, float spacing, int majorEvery, int halfCount) {
    return {centre, y, spacing, majorEvery, halfCount};
}

TEST(NiceSpacing, isTheNearestOneTwoOrFive) {
    EXPECT_FLOAT_EQ(niceSpacing(0.0015F), 0.002F);
    EXPECT_FLOAT_EQ(niceSpacing(3.2F), 5.0F);
    EXPECT_FLOAT_EQ(niceSpacing(8.0F), 10.0F);
    EXPECT_FLOAT_EQ(niceSpacing(1.0F), 1.0F);
    EXPECT_FLOAT_EQ(niceSpacing(1000.0F), 1000.0F);
    EXPECT_FLOAT_EQ(niceSpacing(0.01F), 0.01F);
    EXPECT_FLOAT_EQ(niceSpacing(4.4e-7F), 5e-7F);
    EXPECT_FLOAT_EQ(niceSpacing(1.5e6F), 2e6F);
}

TEST(NiceSpacing, changesAtTheGeometricMeans) {
    EXPECT_FLOAT_EQ(niceSpacing(1.4141F), 1.0F);
    EXPECT_FLOAT_EQ(niceSpacing(1.4143F), 2.0F);
    EXPECT_FLOAT_EQ(niceSpacing(3.1622F), 2.0F);
    EXPECT_FLOAT_EQ(niceSpacing(3.1624F), 5.0F);
    EXPECT_FLOAT_EQ(niceSpacing(7.0710F), 5.0F);
    EXPECT_FLOAT_EQ(niceSpacing(7.0712F), 10.0F);
}

TEST(NiceSpacing, isOneForWhatHasNoSize) {
    for (const float x : {0.0F, -0.0F, -3.0F, nan, infinity, -infinity})
        EXPECT_EQ(niceSpacing(x), 1.0F) << x;
}

TEST(GridPlan, ofAnEmptySceneHasHalfMetres) {
    const Plan made = planFor({{-1.5F, 0, -1.5F}, {1.5F, 0, 1.5F}});
    EXPECT_EQ(made.centre, Vec2(0, 0));
    EXPECT_FLOAT_EQ(made.y, -0.06F);
    EXPECT_FLOAT_EQ(made.spacing, 0.5F);
    EXPECT_EQ(made.halfCount, 21);
    EXPECT_EQ(made.majorEvery, 2);
}

TEST(GridPlan, isSpacedByTheWiderOfWidthAndDepth) {
    // Width 1, depth 4: 28 m in 36 parts are 0.78, so 1; 14 lines on each side.
    const Plan made = planFor({{0, 0, -2}, {1, 10, 2}});
    EXPECT_FLOAT_EQ(made.spacing, 1.0F);
    EXPECT_EQ(made.halfCount, 14);
    EXPECT_EQ(made.majorEvery, 5);
    // Yet the gap below the body is a share of its greatest extent, which is its height.
    EXPECT_FLOAT_EQ(made.y, -0.2F);
}

TEST(GridPlan, centreIsRoundedToTheSpacingHalvesAwayFromZero) {
    // Spacing 0.5 as of every body 3 m wide; the middle is at 0.25 and −0.25.
    const Plan made = planFor({{-1.25F, 0, -1.75F}, {1.75F, 1, 1.25F}});
    EXPECT_FLOAT_EQ(made.spacing, 0.5F);
    EXPECT_EQ(made.centre, Vec2(0.5F, -0.5F));
}

TEST(GridPlan, liesBelowAFlatSurface) {
    const Plan made = planFor({{0, 2, 0}, {5, 2, 1}});
    EXPECT_FLOAT_EQ(made.y, 2 - 0.1F);
}

TEST(GridPlan, ofAStandingLineTakesItsHeight) {
    // 7 × 4 m in 36 parts are 0.78.
    const Plan made = planFor({{1, -2, 1}, {1, 2, 1}});
    EXPECT_FLOAT_EQ(made.spacing, 1.0F);
    EXPECT_EQ(made.halfCount, 14);
    EXPECT_EQ(made.centre, Vec2(1, 1));
    EXPECT_FLOAT_EQ(made.y, -2.08F);
}

TEST(GridPlan, ofAPointIsThatOfAMetre) {
    // 7 m in 36 parts are 0.194.
    const Plan made = planFor({{3, 3, 3}, {3, 3, 3}});
    EXPECT_FLOAT_EQ(made.spacing, 0.2F);
    EXPECT_EQ(made.halfCount, 18);
    EXPECT_FLOAT_EQ(made.y, 2.98F);
}

TEST(GridPlan, followsTheSizeOfTheBodyDownAndUp) {
    for (const float size : {1e-6F, 1e6F}) {
        const Plan made = planFor({Vec3(0), Vec3(size)});
        EXPECT_NEAR(made.spacing / size, 0.2F, 1e-5F);
        EXPECT_EQ(made.halfCount, 18);
        EXPECT_EQ(made.majorEvery, 5);
        EXPECT_NEAR(made.y / size, -0.02F, 1e-6F);
    }
}

TEST(GridPlan, staysDrawableForBoxesPastAnyUse) {
    for (const BoundingBox& box :
        {BoundingBox{Vec3(-3e38F), Vec3(3e38F)}, BoundingBox{Vec3(nan), Vec3(nan)},
            BoundingBox{Vec3(-infinity), Vec3(infinity)}, BoundingBox{Vec3(0), Vec3(1e-45F)},
            BoundingBox{Vec3(1e30F), Vec3(1e30F)}, BoundingBox{Vec3(1), Vec3(-1)}}) {
        const Plan made = planFor(box);
        EXPECT_GT(made.spacing, 0.0F);
        EXPECT_GE(made.halfCount, 1);
        const Layers layers = makeLayers(made);
        EXPECT_EQ(layers.minor.size() + layers.major.size(),
            4 * (2 * static_cast<std::size_t>(made.halfCount) + 1));
    }
}

TEST(GridLayers, threeLinesOnEachSideAreSevenEachWay) {
    const Layers layers = makeLayers(plan({0, 0}, 0, 1, 5, 3));
    EXPECT_EQ(layers.major.size(), 2U * 2);
    EXPECT_EQ(layers.minor.size(), 12U * 2);
}

TEST(GridLayers, linesAlongZComeBeforeThoseAlongX) {
    const Layers layers = makeLayers(plan({10, 20}, -1, 2, 5, 1));
    // Indices 4, 5, 6 across and 9, 10, 11 along; extent 2.
    ASSERT_EQ(layers.minor.size(), 8U);
    EXPECT_EQ(layers.minor[0], Vec3(8, -1, 18));
    EXPECT_EQ(layers.minor[1], Vec3(8, -1, 22));
    EXPECT_EQ(layers.minor[2], Vec3(8, -1, 18));
    EXPECT_EQ(layers.minor[3], Vec3(12, -1, 18));
    EXPECT_EQ(layers.minor[4], Vec3(12, -1, 18));
    EXPECT_EQ(layers.minor[5], Vec3(12, -1, 22));
    EXPECT_EQ(layers.minor[6], Vec3(8, -1, 22));
    EXPECT_EQ(layers.minor[7], Vec3(12, -1, 22));
    ASSERT_EQ(layers.major.size(), 4U);
    EXPECT_EQ(layers.major[0], Vec3(10, -1, 18));
    EXPECT_EQ(layers.major[1], Vec3(10, -1, 22));
    EXPECT_EQ(layers.major[2], Vec3(8, -1, 20));
    EXPECT_EQ(layers.major[3], Vec3(12, -1, 20));
}

TEST(GridLayers, negativeIndicesCountAsWell) {
    const Layers layers = makeLayers(plan({-5, -4}, 0, 1, 5, 0));
    EXPECT_EQ(layers.major.size(), 2U); // the line across at −5
    EXPECT_EQ(layers.minor.size(), 2U); // the line along at −4
    EXPECT_EQ(layers.major[0].x, -5.0F);
}

TEST(GridLayers, withoutAnIntervalAllLinesAreMinor) {
    for (const int every : {0, -2}) {
        const Layers layers = makeLayers(plan({0, 0}, 0, 1, every, 2));
        EXPECT_TRUE(layers.major.empty());
        EXPECT_EQ(layers.minor.size(), 20U);
    }
}

TEST(GridLayers, majorLinesKeepTheirPlacesAsTheGridMoves) {
    // The x of all major lines along z, spaced by half a metre, around this middle.
    const auto majorsAt = [](float middle) {
        std::vector<float> places;
        const Layers layers = makeLayers(plan({middle, 0}, 0, 0.5F, 2, 3));
        for (std::size_t i = 0; i + 1 < layers.major.size(); i += 2) {
            if (layers.major[i].x == layers.major[i + 1].x)
                places.push_back(layers.major[i].x);
        }
        return places;
    };
    EXPECT_EQ(majorsAt(0.0F), (std::vector<float>{-1, 0, 1}));
    EXPECT_EQ(majorsAt(0.5F), (std::vector<float>{-1, 0, 1, 2}));
    EXPECT_EQ(majorsAt(1.0F), (std::vector<float>{0, 1, 2}));
    EXPECT_EQ(majorsAt(-2.5F), (std::vector<float>{-4, -3, -2, -1}));
}

} // namespace
} // namespace ostrella::GridGeometry
