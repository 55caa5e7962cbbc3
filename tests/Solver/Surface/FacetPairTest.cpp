#include "Solver/Surface/FacetPair.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace ostrella::test {

namespace {

using Whole = std::array<std::int64_t, 3>;
using Polygon = std::vector<Whole>;

CorneredFacet facet(const std::array<Vec3, 3>& points, const std::array<std::uint32_t, 3>& vertices,
    std::uint32_t number) {
    return {points, vertices, number};
}

/// Facets of vertices that are numbered by their places; both orders and all rotations say the
/// same.
FacetMeeting meeting(std::array<Vec3, 3> a, std::array<Vec3, 3> b, double tolerance = 1e-6) {
    std::vector<Vec3> known;
    const auto number = [&](const Vec3& point) {
        const auto at = std::find(known.begin(), known.end(), point);
        if (at != known.end())
            return static_cast<std::uint32_t>(at - known.begin());
        known.push_back(point);
        return static_cast<std::uint32_t>(known.size() - 1);
    };
    const auto numbers = [&](const std::array<Vec3, 3>& points) {
        return std::array{number(points[0]), number(points[1]), number(points[2])};
    };
    const FacetMeeting result =
        meetingOf(facet(a, numbers(a), 0), facet(b, numbers(b), 1), tolerance);
    for (int turn = 0; turn < 6; ++turn) {
        std::rotate(a.begin(), a.begin() + 1, a.end());
        if (turn == 3)
            std::swap(a[0], a[1]);
        EXPECT_EQ(meetingOf(facet(a, numbers(a), 0), facet(b, numbers(b), 1), tolerance), result);
        EXPECT_EQ(meetingOf(facet(b, numbers(b), 1), facet(a, numbers(a), 0), tolerance), result);
    }
    return result;
}

Whole minus(const Whole& a, const Whole& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Whole times(const Whole& a, const Whole& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

bool separates(const Whole& axis, const Polygon& a, const Polygon& b) {
    const auto range = [&](const Polygon& polygon) {
        std::vector<std::int64_t> along;
        for (const Whole& p : polygon)
            along.push_back(axis[0] * p[0] + axis[1] * p[1] + axis[2] * p[2]);
        return std::pair(*std::min_element(along.begin(), along.end()),
            *std::max_element(along.begin(), along.end()));
    };
    const auto [aLow, aHigh] = range(a);
    const auto [bLow, bHigh] = range(b);
    return aHigh < bLow || bHigh < aLow;
}

/// Flat convex polygons with an area are apart if and only if one of these axes separates them; in
/// whole numbers, so without rounding.
bool meetByAxes(const Polygon& a, const Polygon& b) {
    const auto edge = [](const Polygon& p, std::size_t i) {
        return minus(p[(i + 1) % p.size()], p[i]);
    };
    const Whole aNormal = times(edge(a, 0), edge(a, 1));
    const Whole bNormal = times(edge(b, 0), edge(b, 1));
    if (separates(aNormal, a, b) || separates(bNormal, a, b))
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (separates(times(aNormal, edge(a, i)), a, b))
            return false;
        for (std::size_t j = 0; j < b.size(); ++j) {
            if (separates(times(edge(a, i), edge(b, j)), a, b) ||
                separates(times(bNormal, edge(b, j)), a, b)) {
                return false;
            }
        }
    }
    return true;
}

/// A triangle without the surroundings of its first corner.
Polygon without(const Polygon& t, std::int64_t part) {
    const auto near = [&](const Whole& to) {
        const Whole way = minus(to, t[0]);
        return Whole{t[0][0] + way[0] / part, t[0][1] + way[1] / part, t[0][2] + way[2] / part};
    };
    return {near(t[1]), t[1], t[2], near(t[2])};
}

std::array<Vec3, 3> points(const Polygon& t) {
    std::array<Vec3, 3> result;
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            result[i][static_cast<int>(axis)] = static_cast<float>(t[i][axis] / 1000);
    }
    return result;
}

/// A triangle with an area on a lattice of steps of 1000.
Polygon randomTriangle(std::mt19937& random, std::uint32_t size) {
    for (;;) {
        Polygon t(3);
        for (Whole& corner : t) {
            for (std::int64_t& coordinate : corner)
                coordinate = 1000 * static_cast<std::int64_t>(random() % size);
        }
        if (times(minus(t[1], t[0]), minus(t[2], t[0])) != Whole{0, 0, 0})
            return t;
    }
}

constexpr std::array<Vec3, 3> flat{{{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}};

} // namespace

TEST(FacetPair, atACommonCorner) {
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {-1, -1, 1}, {-1, -1, -1}}}), FacetMeeting::none);
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {0.5F, 0.5F, 1}, {0.5F, 0.5F, -1}}}), FacetMeeting::cut)
        << "its far side goes through the face";
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {3, 3, 1}, {3, 3, -1}}}), FacetMeeting::cut)
        << "the face's far side goes through it";
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {1, 0, 0}, {1, -1, 1}}}), FacetMeeting::cut)
        << "along a part of an edge";
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {1, 0.2F, 1}, {0.2F, 1, 1}}}), FacetMeeting::none)
        << "above the face";
}

TEST(FacetPair, atACommonCornerInOnePlane) {
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {-2, 0, 0}, {0, -2, 0}}}), FacetMeeting::none);
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {-2, 2, 0}, {-2, 0, 0}}}), FacetMeeting::none);
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {1, 0.5F, 0}, {0.5F, 1, 0}}}), FacetMeeting::overlap);
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {3, 1, 0}, {3, 2, 0}}}), FacetMeeting::overlap);
    EXPECT_EQ(
        meeting(flat, {{{0, 0, 0}, {1, 0.5F, 1e-7F}, {0.5F, 1, 1e-7F}}}), FacetMeeting::overlap);
    EXPECT_EQ(meeting(flat, {{{0, 0, 0}, {1, 0, 0}, {0.5F, -1, 0}}}), FacetMeeting::cut)
        << "along a part of an edge";
}

TEST(FacetPair, atACommonEdge) {
    EXPECT_EQ(meeting(flat, {{{2, 0, 0}, {0, 0, 0}, {1, -1, 0}}}), FacetMeeting::none);
    EXPECT_EQ(meeting(flat, {{{2, 0, 0}, {0, 0, 0}, {1, 1, 0}}}), FacetMeeting::overlap);
    EXPECT_EQ(meeting(flat, {{{2, 0, 0}, {0, 0, 0}, {1, 1, 5e-5F}}}), FacetMeeting::overlap)
        << "folded to less than a ten-thousandth of a radian";
    EXPECT_EQ(meeting(flat, {{{2, 0, 0}, {0, 0, 0}, {1, 1, 0.002F}}}), FacetMeeting::none);
    EXPECT_EQ(meeting(flat, {{{2, 0, 0}, {0, 0, 0}, {1, 1, 1}}}), FacetMeeting::none);
}

TEST(FacetPair, facetsWithoutACommonCornerAgreeWithSeparatingAxes) {
    std::mt19937 random(21);
    int meetings = 0;
    for (const std::uint32_t size : {4U, 12U}) {
        for (int round = 0; round < 30'000; ++round) {
            const Polygon a = randomTriangle(random, size);
            const Polygon b = randomTriangle(random, size);
            const auto isOf = [&](const Whole& p) {
                return std::find(b.begin(), b.end(), p) != b.end();
            };
            if (std::any_of(a.begin(), a.end(), isOf))
                continue;
            const bool expected = meetByAxes(a, b);
            meetings += expected ? 1 : 0;
            const auto found =
                meetingOf(facet(points(a), {0, 1, 2}, 0), facet(points(b), {3, 4, 5}, 1), 1e-6);
            ASSERT_EQ(found != FacetMeeting::none, expected) << "round " << round;
        }
    }
    EXPECT_GT(meetings, 5000);
}

TEST(FacetPair, facetsAtACommonCornerAgreeWithSeparatingAxes) {
    std::mt19937 random(22);
    int meetings = 0;
    for (const std::uint32_t size : {4U, 8U}) {
        for (int round = 0; round < 30'000; ++round) {
            const Polygon a = randomTriangle(random, size);
            Polygon b = randomTriangle(random, size);
            b[0] = a[0];
            if (times(minus(b[1], b[0]), minus(b[2], b[0])) == Whole{0, 0, 0} ||
                std::find(a.begin() + 1, a.end(), b[1]) != a.end() ||
                std::find(a.begin() + 1, a.end(), b[2]) != a.end()) {
                continue;
            }
            const bool expected =
                meetByAxes(without(a, 1000), b) && meetByAxes(a, without(b, 1000));
            meetings += expected ? 1 : 0;
            const auto found =
                meetingOf(facet(points(a), {0, 1, 2}, 0), facet(points(b), {0, 4, 5}, 1), 1e-6);
            ASSERT_EQ(found != FacetMeeting::none, expected) << "round " << round;
        }
    }
    EXPECT_GT(meetings, 2000);
}

TEST(FacetPair, theMeetingPoint) {
    const std::array<DVec3, 3> a{{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}};
    EXPECT_EQ(meetingPoint(a, {{{1, 1, -1}, {1, 1, 1}, {9, 9, 0}}}), DVec3(1.5, 1.5, 0));
    EXPECT_EQ(meetingPoint(a, {{{1, 1, 0}, {1, 2, 1}, {2, 1, 1}}}), DVec3(1, 1, 0));
}

} // namespace ostrella::test
