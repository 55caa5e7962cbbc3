#include "Rendering/OrientationMath.h"

#include "Solver/Geometry/MatrixMath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string_view>

namespace ostrella::OrientationMath {
namespace {

using Angles = glm::dvec3;

void expectNear(const glm::dvec3& actual, const glm::dvec3& expected, double tolerance = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

TEST(OrientationAxes, areInOrder) {
    EXPECT_EQ(allOrientationAxes.size(), 3U);
    EXPECT_LT(OrientationAxis::x, OrientationAxis::y);
    EXPECT_LT(OrientationAxis::y, OrientationAxis::z);
}

TEST(FacingAxes, haveTheirNamesAsRawValues) {
    constexpr std::array<std::string_view, 6> names{
        "plusX", "minusX", "plusY", "minusY", "plusZ", "minusZ"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(rawValue(allFacingAxes[i]), names[i]);
        EXPECT_EQ(facingAxisFromRawValue(names[i]), allFacingAxes[i]);
    }
    EXPECT_EQ(facingAxisFromRawValue("plusW"), std::nullopt);
    EXPECT_EQ(facingAxisFromRawValue(""), std::nullopt);
}

TEST(OrientationMatrix, turnsRightHandedAboutEachAxis) {
    expectNear(matrix({90, 0, 0}) * glm::dvec3(0, 1, 0), {0, 0, 1});
    expectNear(matrix({0, 90, 0}) * glm::dvec3(0, 0, 1), {1, 0, 0});
    expectNear(matrix({0, 0, 90}) * glm::dvec3(1, 0, 0), {0, 1, 0});
}

TEST(OrientationMatrix, turnsAboutXFirstAndZLast) {
    // y to z about x, and z stays about z; the other order would take y to −x.
    expectNear(matrix({90, 0, 90}) * glm::dvec3(0, 1, 0), {0, 0, 1});
    // Computed with quaternions.
    const glm::dmat3 turned = matrix({10, 20, 30});
    expectNear(turned[0], {0.813797681, 0.469846310, -0.342020143});
    expectNear(turned[1], {-0.440969611, 0.882564119, 0.163175911});
    expectNear(turned[2], {0.378522306, 0.018028311, 0.925416578});
}

TEST(OrientationMatrix, isTheSolversConvention) {
    constexpr double radians = 0.017453292519943295;
    const Angles angles(-70, 40, 155);
    const glm::dmat3 here = matrix(angles);
    const Mat4 there = eulerXYZ(Vec3(angles * radians));
    for (int column = 0; column < 3; ++column)
        for (int row = 0; row < 3; ++row)
            EXPECT_NEAR(here[column][row], static_cast<double>(there[column][row]), 1e-6);
}

TEST(OrientationDegrees, areThoseOfTheMatrix) {
    EXPECT_EQ(degrees(matrix({0, 0, 0})), Angles(0, 0, 0));
    EXPECT_EQ(degrees(matrix({10, 20, 30})), Angles(10, 20, 30));
    EXPECT_EQ(degrees(matrix({-170, -89, 179.5})), Angles(-170, -89, 179.5));
    EXPECT_EQ(degrees(matrix({90, 0, 0})), Angles(90, 0, 0));
    EXPECT_EQ(degrees(matrix({0.000001, 0, -0.000001})), Angles(0.000001, 0, -0.000001));
}

TEST(OrientationDegrees, putTheWholeTurnIntoZWhereYIsARightAngle) {
    EXPECT_EQ(degrees(matrix({0, 90, 0})), Angles(0, 90, 0));
    EXPECT_EQ(degrees(matrix({30, 90, 0})), Angles(0, 90, -30));
    EXPECT_EQ(degrees(matrix({30, 90, 50})), Angles(0, 90, 20));
    EXPECT_EQ(degrees(matrix({30, -90, 0})), Angles(0, -90, 30));
    EXPECT_EQ(degrees(matrix({30, -90, 50})), Angles(0, -90, 80));
}

TEST(OrientationDegrees, keepXUpToThreeThousandthsOfADegreeFromARightAngle) {
    // The sine of 89.9974° is a billionth below 1.
    expectNear(degrees(matrix({10, 89.995, 20})), {10, 89.995, 20}, 2e-6);
    expectNear(degrees(matrix({10, -89.995, 20})), {10, -89.995, 20}, 2e-6);
    expectNear(degrees(matrix({10, 89.998, 20})), {0, 89.998, 10}, 2e-6);
}

TEST(OrientationDegrees, haveHalfATurnAsPlus180) {
    EXPECT_EQ(degrees(matrix({-180, 0, 0})), Angles(180, 0, 0));
    EXPECT_EQ(degrees(matrix({0, 0, -180})), Angles(0, 0, 180));
    EXPECT_EQ(degrees(matrix({0, 0, 180})), Angles(0, 0, 180));
    EXPECT_EQ(degrees(matrix({0, 0, -179.9999999})), Angles(0, 0, 180));
    EXPECT_EQ(degrees(matrix({0, 0, 540})), Angles(0, 0, 180));
}

TEST(OrientationDegrees, areRoundedToSixDecimalsWithoutAMinusZero) {
    EXPECT_EQ(degrees(matrix({0, 0, 12.3456784})), Angles(0, 0, 12.345678));
    EXPECT_EQ(degrees(matrix({0, 0, 12.3456786})), Angles(0, 0, 12.345679));
    const Angles tiny = degrees(matrix({-0.0000001, -0.0000001, -0.0000001}));
    EXPECT_EQ(tiny, Angles(0, 0, 0));
    EXPECT_FALSE(std::signbit(tiny.x));
    EXPECT_FALSE(std::signbit(tiny.y));
    EXPECT_FALSE(std::signbit(tiny.z));
}

TEST(OrientationDegrees, stayInRangeForARotationWithRoundingErrors) {
    glm::dmat3 past = matrix({0, 90, 0});
    past[0][2] = -1.0000001;
    EXPECT_EQ(degrees(past), Angles(0, 90, 0));
    past[0][2] = 1.0000001;
    EXPECT_EQ(degrees(past).y, -90.0);
}

TEST(OrientationRotated, turnsAboutTheWorldsAxisWhateverTheAngles) {
    // Computed with quaternions.
    const Angles start(10, 20, 30);
    expectNear(rotated(start, OrientationAxis::y, 40), {41.258963, 51.730085, 49.340165}, 2e-6);
    expectNear(
        rotated(start, OrientationAxis::x, -200), {170.240126, -28.822039, -21.741556}, 2e-6);
    // Since z comes last, a turn about z only adds to it.
    expectNear(rotated(start, OrientationAxis::z, 170), {10, 20, -160}, 2e-6);
}

TEST(OrientationRotated, byAWholeTurnLeavesTheAngles) {
    for (const OrientationAxis axis : allOrientationAxes) {
        expectNear(rotated({10, 20, 30}, axis, 360), {10, 20, 30}, 1.5e-6);
        expectNear(rotated({-120, 45, 179}, axis, -720), {-120, 45, 179}, 1.5e-6);
    }
}

TEST(OrientationRotated, thereAndBackLeavesNoNoise) {
    Angles angles(0, 0, 0);
    for (int i = 0; i < 50; ++i) {
        angles = rotated(angles, OrientationAxis::x, 15);
        angles = rotated(angles, OrientationAxis::x, -15);
    }
    EXPECT_EQ(angles, Angles(0, 0, 0));
}

TEST(OrientationRotated, keepsAnglesOfAnySizeInRange) {
    for (const double huge : {1e9, -1e9}) {
        const Angles angles = rotated({huge, huge, huge}, OrientationAxis::y, huge);
        for (int i = 0; i < 3; ++i) {
            EXPECT_GT(angles[i], -180.0);
            EXPECT_LE(angles[i], 180.0);
        }
    }
    // 10⁹ degrees are 2 777 777 turns and 280°.
    expectNear(degrees(matrix({0, 0, 1e9})), {0, 0, -80}, 2e-6);
}

} // namespace
} // namespace ostrella::OrientationMath
