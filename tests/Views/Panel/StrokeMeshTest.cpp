#include "Views/Panel/StrokeMesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrella {
namespace {

using Point = StrokeMesh::Point;

constexpr StrokeMesh::Color red{255, 0, 0, 255};

/// How opaque the mesh is at a point, from 0 to 1: the most of its triangles there.
double opacity(const StrokeMesh& mesh, Point at) {
    double most = 0;
    const auto& v = mesh.vertices();
    for (std::size_t i = 0; i < mesh.indices().size(); i += 3) {
        const auto& a = v[mesh.indices()[i]];
        const auto& b = v[mesh.indices()[i + 1]];
        const auto& c = v[mesh.indices()[i + 2]];
        const double whole =
            (b.at.x - a.at.x) * (c.at.y - a.at.y) - (c.at.x - a.at.x) * (b.at.y - a.at.y);
        if (std::abs(whole) < 1e-9) {
            continue;
        }
        const double wb =
            ((at.x - a.at.x) * (c.at.y - a.at.y) - (c.at.x - a.at.x) * (at.y - a.at.y)) / whole;
        const double wc =
            ((b.at.x - a.at.x) * (at.y - a.at.y) - (at.x - a.at.x) * (b.at.y - a.at.y)) / whole;
        if (wb < -1e-5 || wc < -1e-5 || wb + wc > 1 + 1e-5) {
            continue;
        }
        most = std::max(most, ((1 - wb - wc) * a.color.a + wb * b.color.a + wc * c.color.a) / 255);
    }
    return most;
}

TEST(StrokeMesh, fadesAcrossOnePixelAtALinesEdges) {
    StrokeMesh mesh(1);
    const std::vector<Point> points{{0, 10}, {100, 10}};
    mesh.line(points, 3, red);
    EXPECT_NEAR(opacity(mesh, {50, 10}), 1, 1e-4);
    EXPECT_NEAR(opacity(mesh, {50, 11}), 1, 1e-4);
    EXPECT_NEAR(opacity(mesh, {50, 11.5F}), 0.5, 1e-4);
    EXPECT_NEAR(opacity(mesh, {50, 8.5F}), 0.5, 1e-4);
    EXPECT_EQ(opacity(mesh, {50, 12.1F}), 0);
}

TEST(StrokeMesh, hasItsWidthAroundEveryCorner) {
    for (const float turn : {0.1F, 0.5F, 1.5F, 2.5F, 3.1F, -0.1F, -1.5F, -3.1F}) {
        StrokeMesh mesh(1);
        const Point corner{50, 50};
        const Point end{50 + 40 * std::cos(turn), 50 + 40 * std::sin(turn)};
        const std::vector<Point> points{{10, 50}, corner, end};
        mesh.line(points, 3, red);
        // Everything within a point of the corner is covered; nothing well away from it is.
        for (float angle = 0; angle < 6.28F; angle += 0.05F) {
            const Point near{50 + 0.95F * std::cos(angle), 50 + 0.95F * std::sin(angle)};
            ASSERT_GT(opacity(mesh, near), 0.9) << turn << " " << angle;
        }
        const float outside = turn / 2 + (turn > 0 ? -1.5708F : 1.5708F);
        const Point far{50 + 2.3F * std::cos(outside), 50 + 2.3F * std::sin(outside)};
        EXPECT_EQ(opacity(mesh, far), 0) << turn << ": round, not pointed";
    }
}

TEST(StrokeMesh, roundsItsEnds) {
    StrokeMesh mesh(1);
    const std::vector<Point> points{{10, 10}, {50, 10}};
    mesh.line(points, 3, red);
    EXPECT_NEAR(opacity(mesh, {9.05F, 10}), 1, 0.05);
    EXPECT_NEAR(opacity(mesh, {51.5F, 10}), 0.5, 0.1);
    EXPECT_EQ(opacity(mesh, {7.9F, 10}), 0);
}

TEST(StrokeMesh, drawsADotForPointsThatCoincide) {
    StrokeMesh mesh(1);
    const std::vector<Point> points{{10, 10}, {10, 10}, {10, 10}};
    mesh.line(points, 3, red);
    EXPECT_NEAR(opacity(mesh, {10, 10}), 1, 1e-4);
    EXPECT_NEAR(opacity(mesh, {10.9F, 10}), 1, 1e-4);
    EXPECT_EQ(opacity(mesh, {12.1F, 10}), 0);
    for (const StrokeMesh::Vertex& vertex : mesh.vertices()) {
        EXPECT_TRUE(std::isfinite(vertex.at.x) && std::isfinite(vertex.at.y));
    }
}

TEST(StrokeMesh, drawsNothingOfNothing) {
    StrokeMesh mesh(1);
    mesh.line({}, 3, red);
    EXPECT_TRUE(mesh.vertices().empty());
    EXPECT_TRUE(mesh.indices().empty());
}

TEST(StrokeMesh, fadesAcrossHalfAPointOnADenseScreen) {
    StrokeMesh mesh(0.5F);
    const std::vector<Point> points{{0, 10}, {100, 10}};
    mesh.line(points, 1.5F, red);
    EXPECT_NEAR(opacity(mesh, {50, 10.5F}), 1, 1e-4);
    EXPECT_NEAR(opacity(mesh, {50, 10.75F}), 0.5, 1e-4);
    EXPECT_EQ(opacity(mesh, {50, 11.01F}), 0);
}

} // namespace
} // namespace ostrella
