#include "Solver/Surface/TriangleIntersection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace ostrella::test {

namespace {

using Corners = std::array<DVec3, 3>;
using Whole = std::array<std::int64_t, 3>;

constexpr Corners flat{{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}};

/// Both orders and all rotations of the corners say the same.
bool meet(const Corners& a, const Corners& b) {
    const bool result = trianglesMeet(a, b);
    for (int turn = 0; turn < 6; ++turn) {
        Corners turned = a;
        std::rotate(turned.begin(), turned.begin() + turn % 3, turned.end());
        if (turn >= 3)
            std::swap(turned[0], turned[1]);
        EXPECT_EQ(trianglesMeet(turned, b), result);
        EXPECT_EQ(trianglesMeet(b, turned), result);
    }
    return result;
}

Whole minus(const Whole& a, const Whole& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Whole times(const Whole& a, const Whole& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

bool isZero(const Whole& a) {
    return a[0] == 0 && a[1] == 0 && a[2] == 0;
}

bool separates(const Whole& axis, const std::array<Whole, 3>& a, const std::array<Whole, 3>& b) {
    const auto along = [&](const Whole& p) {
        return axis[0] * p[0] + axis[1] * p[1] + axis[2] * p[2];
    };
    const auto [aLow, aHigh] = std::minmax({along(a[0]), along(a[1]), along(a[2])});
    const auto [bLow, bHigh] = std::minmax({along(b[0]), along(b[1]), along(b[2])});
    return aHigh < bLow || bHigh < aLow;
}

/// Another way to the answer: convex bodies are apart if and only if one of a few axes separates
/// them; in whole numbers, so without rounding. For triangles with an area.
bool meetByAxes(const std::array<Whole, 3>& a, const std::array<Whole, 3>& b) {
    std::array<Whole, 6> edges;
    for (std::size_t i = 0; i < 3; ++i) {
        edges[i] = minus(a[(i + 1) % 3], a[i]);
        edges[3 + i] = minus(b[(i + 1) % 3], b[i]);
    }
    const Whole aNormal = times(edges[0], edges[1]);
    const Whole bNormal = times(edges[3], edges[4]);
    if (separates(aNormal, a, b) || separates(bNormal, a, b))
        return false;
    for (std::size_t i = 0; i < 3; ++i) {
        if (separates(times(aNormal, edges[i]), a, b) ||
            separates(times(bNormal, edges[3 + i]), a, b))
            return false;
        for (std::size_t j = 3; j < 6; ++j) {
            if (separates(times(edges[i], edges[j]), a, b))
                return false;
        }
    }
    return true;
}

} // namespace

TEST(TriangleIntersection, apartInPlanesAcross) {
    EXPECT_FALSE(meet(flat, {{{1, 1, 1}, {2, 1, 1}, {1, 2, 2}}}));
    EXPECT_FALSE(meet(flat, {{{3, 3, -1}, {3, 3, 1}, {4, 4, 0}}}));
}

TEST(TriangleIntersection, oneGoesThroughTheOther) {
    EXPECT_TRUE(meet(flat, {{{1, 1, -1}, {1, 1, 1}, {9, 9, 0}}}));
    EXPECT_TRUE(meet(flat, {{{-9, 1, -1}, {9, 1, -1}, {0, 1, 1}}}));
}

TEST(TriangleIntersection, touchingCounts) {
    EXPECT_TRUE(meet(flat, {{{1, 1, 0}, {1, 1, 1}, {2, 2, 1}}})) << "a corner on the face";
    EXPECT_TRUE(meet(flat, {{{2, 0, 0}, {2, -1, 1}, {3, -1, 1}}})) << "a corner on an edge";
    EXPECT_TRUE(meet(flat, {{{4, 0, 0}, {5, 0, 1}, {5, 1, 1}}})) << "corner on corner";
    EXPECT_TRUE(meet(flat, {{{1, 0, 1}, {1, 0, -1}, {1, -5, 0}}})) << "edge across edge";
    EXPECT_FALSE(meet(flat, {{{1, -1e-300, 1}, {1, -1e-300, -1}, {1, -5, 0}}}));
}

TEST(TriangleIntersection, inOnePlane) {
    EXPECT_TRUE(meet(flat, {{{1, 1, 0}, {1.5, 1, 0}, {1, 1.5, 0}}})) << "one within the other";
    EXPECT_TRUE(meet(flat, {{{-1, 1, 0}, {5, 1, 0}, {5, 2, 0}}})) << "across, no corner within";
    EXPECT_TRUE(meet(flat, flat));
    EXPECT_TRUE(meet(flat, {{{4, 0, 0}, {0, 4, 0}, {4, 4, 0}}})) << "beside, along an edge";
    EXPECT_FALSE(meet(flat, {{{3, 3, 0}, {4, 3, 0}, {3, 4, 0}}}));
    EXPECT_FALSE(meet(flat, {{{-5, -1, 0}, {5, -1, 0}, {0, -2, 0}}}));
}

TEST(TriangleIntersection, withoutAreaItIsASegmentOrAPoint) {
    const Corners segment{{{1, 1, -1}, {1, 1, 0.5}, {1, 1, 1}}};
    const Corners point{{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}}};
    EXPECT_TRUE(meet(flat, segment));
    EXPECT_TRUE(meet(flat, point));
    EXPECT_TRUE(meet(segment, point));
    EXPECT_TRUE(meet(point, point));
    EXPECT_TRUE(meet(segment, {{{0, 1, 0}, {2, 1, 0}, {1, 1, 0}}}));
    EXPECT_FALSE(meet(flat, {{{3, 3, -1}, {3, 3, 0}, {3, 3, 1}}}));
    EXPECT_FALSE(meet(flat, {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}}));
    EXPECT_FALSE(meet(segment, {{{1, 1, 2}, {1, 1, 3}, {1, 1, 4}}})) << "on one line, apart";
    EXPECT_FALSE(meet(segment, {{{0, 1, 2}, {2, 1, 2}, {1, 1, 2}}}));
    EXPECT_FALSE(meet(segment, {{{1, 2, 0}, {1, 3, 0}, {1, 3, 0}}}));
}

TEST(TriangleIntersection, decidesWhatRoundingWouldBlur) {
    // A point on the plane x + y + z = 1 to the last bit, and its neighbours to either side.
    const Corners slanted{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    const double third = 1.0 / 3.0;
    const double rest = 1.0 - 2 * third; // exact, and so is the sum of the three
    const auto spike = [&](double z) { return Corners{{{third, third, z}, {1, 1, 2}, {1, 2, 1}}}; };
    EXPECT_TRUE(meet(slanted, spike(rest)));
    EXPECT_TRUE(meet(slanted, spike(std::nextafter(rest, 0.0))));
    EXPECT_FALSE(meet(slanted, spike(std::nextafter(rest, 1.0))));
}

TEST(TriangleIntersection, agreesWithSeparatingAxesOnALattice) {
    std::mt19937 random(7);
    int meeting = 0;
    for (const std::int64_t size : {3, 5, 40}) {
        for (int round = 0; round < 40'000; ++round) {
            std::array<std::array<Whole, 3>, 2> whole;
            std::array<Corners, 2> corners;
            for (std::size_t t = 0; t < 2; ++t) {
                for (std::size_t i = 0; i < 3; ++i) {
                    for (std::size_t axis = 0; axis < 3; ++axis) {
                        whole[t][i][axis] =
                            static_cast<std::int64_t>(random() % static_cast<unsigned>(size));
                        corners[t][i][static_cast<int>(axis)] =
                            static_cast<double>(whole[t][i][axis]);
                    }
                }
            }
            const auto isFlat = [](const std::array<Whole, 3>& t) {
                return isZero(times(minus(t[1], t[0]), minus(t[2], t[0])));
            };
            if (isFlat(whole[0]) || isFlat(whole[1]))
                continue;
            const bool expected = meetByAxes(whole[0], whole[1]);
            meeting += expected ? 1 : 0;
            ASSERT_EQ(trianglesMeet(corners[0], corners[1]), expected) << "round " << round;
        }
    }
    EXPECT_GT(meeting, 10'000);
}

} // namespace ostrella::test
