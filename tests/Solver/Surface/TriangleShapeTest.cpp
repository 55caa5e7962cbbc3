#include "Solver/Surface/TriangleShape.h"

#include "Solver/Surface/Quadric.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {

namespace {

using TriangleShape::quality;
using TriangleShape::squaredDistance;

TEST(TriangleShape, QualityIsOneForEquilateralAndNoneForFlatTriangles) {
    EXPECT_NEAR(quality({0, 0, 0}, {1, 0, 0}, {0.5, std::sqrt(0.75), 0}), 1, 1e-12);
    // A right triangle of legs 1: area 1/2, squares 1 + 1 + 2.
    EXPECT_NEAR(quality({0, 0, 0}, {1, 0, 0}, {0, 1, 0}), std::sqrt(3.0) / 2, 1e-12);
    EXPECT_EQ(quality({0, 0, 0}, {1, 0, 0}, {2, 0, 0}), 0);
    EXPECT_EQ(quality({1, 1, 1}, {1, 1, 1}, {1, 1, 1}), 0);
}

TEST(TriangleShape, DistanceToCornersSidesAndInside) {
    const DVec3 a(0, 0, 0);
    const DVec3 b(4, 0, 0);
    const DVec3 c(0, 4, 0);
    EXPECT_DOUBLE_EQ(squaredDistance({1, 1, 3}, a, b, c), 9); // above the inside
    EXPECT_DOUBLE_EQ(squaredDistance({-3, -4, 0}, a, b, c), 25);
    EXPECT_DOUBLE_EQ(squaredDistance({6, -1, 2}, a, b, c), 9); // corner b
    EXPECT_DOUBLE_EQ(squaredDistance({-1, 5, 1}, a, b, c), 3); // corner c
    EXPECT_DOUBLE_EQ(squaredDistance({2, -2, 1}, a, b, c), 5); // side ab
    EXPECT_DOUBLE_EQ(squaredDistance({-2, 1, 2}, a, b, c), 8); // side ca
    EXPECT_DOUBLE_EQ(squaredDistance({4, 4, 1}, a, b, c), 9);  // side bc, from (2, 2, 0)
}

TEST(Quadric, MeasuresTheSquaredDistancesToItsPlanes) {
    Quadric quadric;
    quadric.addPlane({0, 0, 1}, {0, 0, 1}, 2);
    quadric.addPlane({3, 0, 0}, {1, 0, 0}, 0.5);
    // 2 · (4 − 1)² + 0.5 · (5 − 3)²
    EXPECT_DOUBLE_EQ(quadric.at({5, 7, 4}), 20);
    EXPECT_DOUBLE_EQ(quadric.weight, 2.5);
    Quadric twice = quadric;
    twice += quadric;
    EXPECT_DOUBLE_EQ(twice.at({5, 7, 4}), 40);
}

TEST(Quadric, IsLeastWherePlanesMeetAndFreeAlongTheirEdge) {
    Quadric quadric;
    quadric.addPlane({0, 0, 1}, {0, 0, 1}, 1);
    quadric.addPlane({3, 0, 0}, {1, 0, 0}, 1);
    const DVec3 least = quadric.leastNear({2, 5, 2}, 1e-9);
    EXPECT_NEAR(least.x, 3, 1e-6);
    EXPECT_NEAR(least.y, 5, 1e-6); // nothing holds it along y
    EXPECT_NEAR(least.z, 1, 1e-6);
}

} // namespace

} // namespace ostrella
