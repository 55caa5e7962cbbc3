#include "Rendering/ModelPlacement.h"

#include "Solver/Geometry/MatrixMath.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {
namespace {

constexpr float quarter = 1.5707963F;

void expectNear(const Vec3& actual, const Vec3& expected, float tolerance = 1e-5F) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

Vec3 placed(const Mat4& matrix, const Vec3& point) {
    return Vec3(matrix * Vec4(point, 1.0F));
}

TEST(ModelPlacement, ofAModelAsLoadedLeavesItWhereItIs) {
    const ModelPlacement placement({1, 0, 0}, {3, 2, 2}, {0, 0, 0});
    EXPECT_EQ(placement.centre, Vec3(2, 1, 1));
    EXPECT_EQ(placement.modelMatrix(), Mat4(1.0F));
    EXPECT_EQ(placement.inverseModelMatrix(), Mat4(1.0F));
    EXPECT_EQ(placement.resultOffset(), Vec3(0, 0, 0));
}

TEST(ModelPlacement, turnsTheModelAboutTheMiddleOfItsBox) {
    const ModelPlacement placement({1, 0, 0}, {3, 2, 2}, {0, 0, quarter});
    expectNear(placed(placement.modelMatrix(), {2, 1, 1}), {2, 1, 1});
    expectNear(placed(placement.modelMatrix(), {3, 1, 1}), {2, 2, 1});
    expectNear(placed(placement.modelMatrix(), {2, 2, 1}), {1, 1, 1});
    expectNear(placed(placement.modelMatrix(), {2, 1, 2}), {2, 1, 2});
}

TEST(ModelPlacement, turnsAboutXThenYThenZ) {
    // About x, z goes to −y: (0, 0, 1) → (0, −1, 0); about z: → (1, 0, 0).
    const ModelPlacement placement(Vec3(-1), Vec3(1), {quarter, 0, quarter});
    expectNear(placed(placement.modelMatrix(), {0, 0, 1}), {1, 0, 0});
}

TEST(ModelPlacement, inverseBringsAPointOfTheWorldBackToTheModel) {
    const ModelPlacement placement({1, 0, 0}, {3, 2, 2}, {0.3F, -1.2F, 2.5F});
    for (const Vec3& point : {Vec3(0, 0, 0), Vec3(3, -4, 5), Vec3(2, 1, 1)}) {
        const Vec3 there = placed(placement.modelMatrix(), point);
        expectNear(placed(placement.inverseModelMatrix(), there), point);
    }
}

TEST(ModelPlacement, resultsAreMovedByWhatTheOriginAsPivotCost) {
    // A quarter turn about z takes the centre (2, 1, 1) to (−1, 2, 1).
    const ModelPlacement placement({1, 0, 0}, {3, 2, 2}, {0, 0, quarter});
    expectNear(placement.resultOffset(), {3, -1, 0});
    const BoundingBox box = placement.placeResult({-2, 1, 0}, {0, 3, 2});
    expectNear(box.min, {1, 0, 0});
    expectNear(box.max, {3, 2, 2});
}

TEST(ModelPlacement, aPointOfTheResultsLandsOnThePointOfTheModel) {
    const Vec3 angles(0.4F, 1.1F, -2.0F);
    const ModelPlacement placement({-1, 4, 2}, {5, 6, 9}, angles);
    const Vec3 point(4.5F, 5.0F, 3.0F);
    const Vec3 solved = transformed(eulerXYZ(angles), point, 0.0F);
    expectNear(solved + placement.resultOffset(), placed(placement.modelMatrix(), point));
}

TEST(ModelPlacement, staysARotationForAnglesOfAnySize) {
    for (const float angle : {1e9F, -1e9F}) {
        const ModelPlacement placement(Vec3(0), Vec3(0), {angle, angle, angle});
        const Vec3 turned = placed(placement.modelMatrix(), {1, 0, 0});
        EXPECT_NEAR(std::sqrt(squaredLength(turned)), 1.0F, 1e-5F);
        expectNear(placed(placement.inverseModelMatrix(), turned), {1, 0, 0});
    }
}

TEST(ModelPlacement, isAtTheOriginWithoutAModel) {
    EXPECT_EQ(ModelPlacement().modelMatrix(), Mat4(1.0F));
    EXPECT_EQ(ModelPlacement(), ModelPlacement(Vec3(0), Vec3(0), Vec3(0)));
}

} // namespace
} // namespace ostrella
