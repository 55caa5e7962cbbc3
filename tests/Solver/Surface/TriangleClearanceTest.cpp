#include "Solver/Surface/TriangleClearance.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {

namespace {

using TriangleClearance::apart;
using TriangleClearance::apartBeyondCorner;
using TriangleClearance::apartBeyondEdge;

constexpr Corners flat{DVec3(0, 0, 0), DVec3(1, 0, 0), DVec3(0, 1, 0)};

Corners moved(Corners corners, const DVec3& by) {
    for (DVec3& corner : corners) {
        corner += by;
    }
    return corners;
}

TEST(TriangleClearance, ParallelTrianglesAreApartByMoreThanTheClearance) {
    EXPECT_TRUE(apart(flat, moved(flat, {0, 0, 0.2}), 0.1));
    EXPECT_FALSE(apart(flat, moved(flat, {0, 0, 0.2}), 0.3));
    EXPECT_TRUE(apart(flat, moved(flat, {0, 0, -0.2}), 0.1));
}

TEST(TriangleClearance, TrianglesInOnePlaneArePartedByALineInIt) {
    EXPECT_TRUE(apart(flat, moved(flat, {1.5, 0, 0}), 0.1));
    // The slanted sides face each other: x + y = 1 and x + y = 1.2, 0.14 apart.
    const Corners across{DVec3(1.2, 0, 0), DVec3(1.2, 1.2, 0), DVec3(0, 1.2, 0)};
    EXPECT_TRUE(apart(flat, across, 0.14));
    EXPECT_FALSE(apart(flat, across, 0.15));
    EXPECT_FALSE(apart(flat, moved(flat, {0.2, 0.2, 0}), 0));
}

TEST(TriangleClearance, ATriangleThroughAnotherTouchesIt) {
    const Corners through{DVec3(0.2, 0.2, -1), DVec3(0.3, 0.2, 1), DVec3(0.2, 0.3, 1)};
    EXPECT_FALSE(apart(flat, through, 0));
    EXPECT_TRUE(apart(flat, moved(through, {2, 2, 0}), 0.1));
}

TEST(TriangleClearance, CrossedEdgesArePartedByTheirCommonNormal) {
    // Edges along x and along y, one 0.1 above the other; the rest leads away.
    const Corners below{DVec3(-1, 0, 0), DVec3(1, 0, 0), DVec3(0, 0, -1)};
    const Corners above{DVec3(0, -1, 0.1), DVec3(0, 1, 0.1), DVec3(0, 0, 1)};
    EXPECT_TRUE(apart(below, above, 0.09));
    EXPECT_FALSE(apart(below, above, 0.11));
    EXPECT_FALSE(apart(below, moved(above, {0, 0, -0.2}), 0));
}

TEST(TriangleClearance, FarFromTheOriginTheSameHolds) {
    const DVec3 far(1e6, -2e6, 3e6);
    EXPECT_TRUE(apart(moved(flat, far), moved(flat, far + DVec3(0, 0, 0.2)), 0.1));
    EXPECT_FALSE(apart(moved(flat, far), moved(flat, far + DVec3(0, 0, 0.2)), 0.3));
}

TEST(TriangleClearance, TrianglesAtACornerThatLeadApart) {
    const DVec3 o(0);
    // Opposite quarters of one plane, whose sides lie on the same two lines.
    EXPECT_TRUE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(-1, 0, 0), DVec3(0, -1, 0)}));
    // Neighbouring quarters with a gap between.
    EXPECT_TRUE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(1, 1, 0)}, {DVec3(0, 1, 0), DVec3(-1, 1, 0)}));
    // Planes at right angles that meet at the corner only.
    EXPECT_TRUE(
        apartBeyondCorner(o, {DVec3(-1, 0, 0), DVec3(0, -1, 0)}, {DVec3(0, 1, 0), DVec3(0, 0, 1)}));
    EXPECT_TRUE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(1, 0, 1), DVec3(0, 1, 1)}));
}

TEST(TriangleClearance, TrianglesAtACornerThatCutEachOther) {
    const DVec3 o(0);
    // One stands upright in the middle of the other.
    EXPECT_FALSE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(1, 1, -1), DVec3(1, 1, 1)}));
    // In one plane, overlapping.
    EXPECT_FALSE(apartBeyondCorner(
        o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(1, 0.5, 0), DVec3(-1, 1, 0)}));
    // In one plane with a side along the same ray, of other lengths.
    EXPECT_FALSE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(0, 2, 0), DVec3(-1, 1, 0)}));
    // A side of one along the surface of the other.
    EXPECT_FALSE(
        apartBeyondCorner(o, {DVec3(1, 0, 0), DVec3(0, 1, 0)}, {DVec3(1, 1, 0), DVec3(0, 0, 1)}));
}

TEST(TriangleClearance, FoldsAtAnEdgeAreToldByTheirAngle) {
    const DVec3 from(0, 0, 0);
    const DVec3 to(1, 0, 0);
    const DVec3 side(0.5, 1, 0);
    const double threeDegrees = std::cos(3 * 3.14159265 / 180);
    const auto folded = [](double degrees) {
        const double angle = degrees * 3.14159265 / 180;
        return DVec3(0.3, 2 * std::cos(angle), 2 * std::sin(angle));
    };
    EXPECT_TRUE(apartBeyondEdge(from, to, side, folded(180), threeDegrees));
    EXPECT_TRUE(apartBeyondEdge(from, to, side, folded(5), threeDegrees));
    EXPECT_FALSE(apartBeyondEdge(from, to, side, folded(2), threeDegrees));
    EXPECT_FALSE(apartBeyondEdge(from, to, side, folded(0), threeDegrees));
    EXPECT_FALSE(apartBeyondEdge(from, from, side, folded(90), threeDegrees));
}

} // namespace

} // namespace ostrella
