#include "Solver/Surface/TriangleTree.h"

#include "Solver/Surface/SurfaceBodies.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <random>
#include <thread>
#include <vector>

namespace ostrella::test {

namespace {

DVec3 anywhere(std::mt19937& random, double reach) {
    std::uniform_real_distribution<double> place(-reach, reach);
    return {place(random), place(random), place(random)};
}

/// Triangles of all sizes and shapes, some of them lines and points.
IndexedSurface scattered(std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    IndexedSurface surface;
    for (std::uint32_t i = 0; i < count; ++i) {
        const DVec3 middle = anywhere(random, 1);
        const double size = std::pow(10.0, -static_cast<double>(i % 5));
        for (int corner = 0; corner < 3; ++corner)
            surface.vertices.push_back(middle + anywhere(random, size));
        if (i % 50 == 0)
            surface.vertices.back() = surface.vertices[surface.vertices.size() - 2];
        surface.triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    return surface;
}

std::array<DVec3, 3> corners(const IndexedSurface& surface, std::size_t triangle) {
    const Triangle& t = surface.triangles[triangle];
    return {surface.vertices[t[0]], surface.vertices[t[1]], surface.vertices[t[2]]};
}

TriangleTree::Nearest nearestByHand(const IndexedSurface& surface, const DVec3& point) {
    TriangleTree::Nearest best{0, DVec3(0), 1e300};
    for (std::uint32_t i = 0; i < surface.triangles.size(); ++i) {
        const DVec3 found = nearestOnTriangle(point, corners(surface, i));
        const double distance = glm::length(found - point);
        if (distance < best.distance)
            best = {i, found, distance};
    }
    return best;
}

void expectSame(const IndexedSurface& surface, const TriangleTree& tree, const DVec3& point) {
    const auto expected = nearestByHand(surface, point);
    const auto found = tree.nearest(point);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->distance, expected.distance);
    EXPECT_EQ(found->triangle, expected.triangle);
    EXPECT_EQ(found->point, expected.point);
}

} // namespace

TEST(TriangleTree, nearestPointOfATriangle) {
    const std::array<DVec3, 3> t{{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}};
    EXPECT_EQ(nearestOnTriangle({1, 1, 5}, t), DVec3(1, 1, 0)) << "above the face";
    EXPECT_EQ(nearestOnTriangle({2, -3, 1}, t), DVec3(2, 0, 0)) << "beside an edge";
    EXPECT_EQ(nearestOnTriangle({4, 4, 0}, t), DVec3(2, 2, 0)) << "beside the long edge";
    EXPECT_EQ(nearestOnTriangle({9, -1, 0}, t), DVec3(4, 0, 0)) << "beside a corner";
    const std::array<DVec3, 3> segment{{{0, 0, 0}, {2, 0, 0}, {1, 0, 0}}};
    EXPECT_EQ(nearestOnTriangle({1.5, 1, 0}, segment), DVec3(1.5, 0, 0));
    const std::array<DVec3, 3> point{{{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}};
    EXPECT_EQ(nearestOnTriangle({0, 0, 0}, point), DVec3(1, 2, 3));
}

TEST(TriangleTree, theNearestPointOfATriangleSeesEachCornerBehindIt) {
    std::mt19937 random(3);
    for (int round = 0; round < 20'000; ++round) {
        const double size = std::pow(10.0, -static_cast<double>(round % 7));
        std::array<DVec3, 3> t{anywhere(random, 1), anywhere(random, 1), anywhere(random, 1)};
        t[2] = t[0] + (t[1] - t[0]) * 0.3 + (t[2] - t[0]) * size; // down to needles
        const DVec3 point = anywhere(random, 2);
        const DVec3 found = nearestOnTriangle(point, t);
        for (const DVec3& corner : t)
            EXPECT_LE(glm::dot(point - found, corner - found), 1e-8) << "round " << round;
    }
}

TEST(TriangleTree, findsWhatALookAtAllFinds) {
    for (const std::size_t count : {1U, 2U, 8U, 9U, 65U, 1000U}) {
        const IndexedSurface surface = scattered(count, static_cast<std::uint32_t>(count));
        const TriangleTree tree(surface);
        ASSERT_EQ(tree.triangleCount(), count);
        std::mt19937 random(11);
        for (int i = 0; i < 300; ++i)
            expectSame(surface, tree, anywhere(random, i % 3 == 0 ? 100 : 2));
        for (std::size_t i = 0; i < std::min<std::size_t>(count, 50); ++i)
            expectSame(surface, tree, corners(surface, i)[1]);
    }
}

TEST(TriangleTree, farFromTheOriginTinyAndHuge) {
    for (const auto& [scale, by] :
        {std::pair{1.0, 1e6}, {1e-9, 0.0}, {1e9, 1e12}, {1e-30, 0.0}, {1e30, 0.0}}) {
        IndexedSurface surface = scattered(400, 5);
        for (DVec3& vertex : surface.vertices)
            vertex = vertex * scale + DVec3(by);
        const TriangleTree tree(surface);
        std::mt19937 random(12);
        for (int i = 0; i < 200; ++i)
            expectSame(surface, tree, anywhere(random, 2) * scale + DVec3(by));
    }
}

TEST(TriangleTree, aSmallBodyBesideADistantFacet) {
    IndexedSurface surface = scattered(3000, 6);
    surface.vertices.insert(surface.vertices.end(), {{1e7, 0, 0}, {1e7, 1, 0}, {1e7, 0, 1}});
    surface.triangles.push_back({9000, 9001, 9002});
    const TriangleTree tree(surface);
    std::mt19937 random(13);
    for (int i = 0; i < 200; ++i)
        expectSame(surface, tree, anywhere(random, 1));
    expectSame(surface, tree, {9e6, 0, 0});
}

TEST(TriangleTree, givesNothingBeyondTheReach) {
    IndexedSurface surface;
    surface.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    surface.triangles = {{0, 1, 2}};
    const TriangleTree tree(surface);
    EXPECT_FALSE(tree.nearest({0, 0, 2}, 2));
    EXPECT_FALSE(tree.nearest({0, 0, 2}, 0));
    const auto found = tree.nearest({0.25, 0.25, 2}, 2.001);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->point, DVec3(0.25, 0.25, 0));
    EXPECT_EQ(found->distance, 2.0);
}

TEST(TriangleTree, ofTrianglesEquallyNearTheFirst) {
    IndexedSurface surface;
    surface.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    surface.triangles.assign(1000, {0, 1, 2});
    const auto found = TriangleTree(surface).nearest({0.2, 0.2, 1});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->triangle, 0U);
}

TEST(TriangleTree, visitsTheTrianglesWhoseBoxMeetsABox) {
    const IndexedSurface surface = scattered(2000, 8);
    const TriangleTree tree(surface);
    std::mt19937 random(14);
    for (int round = 0; round < 100; ++round) {
        const DVec3 a = anywhere(random, 1);
        const DVec3 b = a + glm::abs(anywhere(random, 0.3));
        std::vector<std::uint32_t> found;
        tree.visitBox(a, b, [&](std::uint32_t triangle) { found.push_back(triangle); });
        std::sort(found.begin(), found.end());
        EXPECT_EQ(std::adjacent_find(found.begin(), found.end()), found.end());
        for (std::uint32_t i = 0; i < surface.triangles.size(); ++i) {
            const auto c = corners(surface, i);
            const DVec3 low = glm::min(glm::min(c[0], c[1]), c[2]);
            const DVec3 high = glm::max(glm::max(c[0], c[1]), c[2]);
            const bool isFound = std::binary_search(found.begin(), found.end(), i);
            if (glm::all(glm::lessThanEqual(low, b)) && glm::all(glm::lessThanEqual(a, high))) {
                EXPECT_TRUE(isFound) << i;
            }
            // What rounding adds is a millionth.
            if (glm::any(glm::greaterThan(low, b + 1e-5)) ||
                glm::any(glm::lessThan(high, a - 1e-5))) {
                EXPECT_FALSE(isFound) << i;
            }
        }
    }
}

TEST(TriangleTree, withoutTriangles) {
    const TriangleTree tree(IndexedSurface{});
    EXPECT_EQ(tree.triangleCount(), 0U);
    EXPECT_FALSE(tree.nearest({0, 0, 0}));
    tree.visitBox({-1, -1, -1}, {1, 1, 1}, [](std::uint32_t) { ADD_FAILURE(); });
}

TEST(TriangleTree, answersSeveralThreads) {
    const IndexedSurface surface = unshared(ball(5));
    const TriangleTree tree(surface);
    const auto ask = [&](std::vector<double>& distances) {
        std::mt19937 random(15);
        for (int i = 0; i < 5000; ++i)
            distances.push_back(tree.nearest(anywhere(random, 2))->distance);
    };
    std::vector<double> here;
    std::vector<double> there;
    std::thread other([&] { ask(there); });
    ask(here);
    other.join();
    EXPECT_EQ(here, there);
}

} // namespace ostrella::test
