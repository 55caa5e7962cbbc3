#include "Solver/Surface/Deviation.h"

#include "Solver/Surface/SurfaceBodies.h"
#include "Solver/Surface/SurfaceChecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ostrella {

namespace {

IndexedSurface cube(float half) {
    return test::shared(test::Facets().box(Vec3(-half), Vec3(half)).mesh());
}

} // namespace

TEST(Deviation, IsMeasuredFromOneSide) {
    const IndexedSurface large = cube(1);
    const IndexedSurface small = cube(0.5F);
    // Out at the large cube's corners, and everywhere half from the small one.
    EXPECT_NEAR(greatestDistance(large, TriangleTree(small), 0.1), std::sqrt(0.75), 1e-12);
    EXPECT_NEAR(greatestDistance(small, TriangleTree(large), 0.1), 0.5, 1e-12);
    EXPECT_NEAR(greatestDistance(large, TriangleTree(large), 0.1), 0, 1e-12);
}

TEST(Deviation, IsFoundWithinATriangle) {
    // Sides of 3, 4 and 5: the inscribed circle has the radius 1.
    const IndexedSurface triangle{{{0, 0, 0}, {4, 0, 0}, {0, 3, 0}}, {{0, 1, 2}}};
    const IndexedSurface sides{triangle.vertices, {{0, 1, 1}, {1, 2, 2}, {2, 0, 0}}};
    const double distance = greatestDistance(triangle, TriangleTree(sides), 0.02);
    EXPECT_LE(distance, 1 + 1e-12);
    EXPECT_GE(distance, 1 - 0.02);
    // At the corners alone nothing is seen.
    EXPECT_EQ(greatestDistance(triangle, TriangleTree(sides), 10), 0);
}

TEST(Deviation, IsFoundAlongAnEdge) {
    // An edge of length 2 from corner to corner of a bent line whose bend is 0.5 off its middle.
    const IndexedSurface edge{{{-1, 0, 0}, {1, 0, 0}}, {{0, 1, 1}}};
    const IndexedSurface bent{{{-1, 0, 0}, {0, 0.5, 0}, {1, 0, 0}}, {{0, 1, 1}, {1, 2, 2}}};
    // The middle's distance to the line from (−1, 0) to (0, 0.5).
    EXPECT_NEAR(greatestDistance(edge, TriangleTree(bent), 0.1), 1 / std::sqrt(5.0), 1e-12);
}

TEST(Deviation, IsTheSameOnTwoThreads) {
    const IndexedSurface fine = test::shared(test::ball(5));
    const TriangleTree coarse(test::shared(test::ball(2)));
    const double distance = greatestDistance(fine, coarse, 0.01);
    // A few hundred triangles at a time go to one.
    double inParts = 0;
    for (std::size_t first = 0; first < fine.triangles.size(); first += 320) {
        const IndexedSurface part{
            fine.vertices, {fine.triangles.begin() + static_cast<std::ptrdiff_t>(first),
                               fine.triangles.begin() + static_cast<std::ptrdiff_t>(first + 320)}};
        inParts = std::max(inParts, greatestDistance(part, coarse, 0.01));
    }
    EXPECT_NEAR(distance, inParts, 1e-12);
    // Nor can it fall short of what the corners alone tell.
    double atCorners = 0;
    for (const DVec3& vertex : fine.vertices)
        atCorners = std::max(atCorners, coarse.nearest(vertex)->distance);
    EXPECT_GT(atCorners, 0.01);
    EXPECT_GE(distance, atCorners - 1e-12);
    EXPECT_LE(distance, atCorners + 0.01);
}

TEST(Deviation, BoundsItsPoints) {
    const IndexedSurface large = cube(1);
    // A step that asks for 10¹⁹ points.
    EXPECT_NEAR(greatestDistance(large, TriangleTree(cube(0.5F)), 1e-9), std::sqrt(0.75), 1e-12);
}

TEST(Deviation, IsNothingWithoutTriangles) {
    EXPECT_EQ(greatestDistance({}, TriangleTree(cube(1)), 0.1), 0);
    EXPECT_EQ(greatestDistance(cube(1), TriangleTree(IndexedSurface{}), 0.1), 0);
}

TEST(Deviation, StopsOnDemand) {
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(greatestDistance(cube(1), TriangleTree(cube(0.5F)), 0.1, source.token()),
        CancellationError);
}

TEST(SignedVolume, HasTheSignOfTheOrientation) {
    EXPECT_NEAR(signedVolume(test::shared(test::unitBox())), 1, 1e-15);
    EXPECT_NEAR(signedVolume(test::shared(test::flipped(test::unitBox()))), -1, 1e-15);
    EXPECT_EQ(signedVolume({}), 0);
    const IndexedSurface tetrahedron{
        {{0, 0, 0}, {3, 0, 0}, {0, 2, 0}, {0, 0, 1}}, {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}}};
    EXPECT_NEAR(signedVolume(tetrahedron), 1, 1e-15);
}

TEST(SignedVolume, HoldsFarFromTheOrigin) {
    const TriangleMesh far = test::Facets().box(Vec3(1e6F), Vec3(1e6F + 1)).mesh();
    EXPECT_NEAR(signedVolume(test::shared(far)), 1, 1e-12);
}

} // namespace ostrella
