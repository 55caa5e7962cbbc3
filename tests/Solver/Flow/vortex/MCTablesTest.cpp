#include "Solver/Flow/MCTables.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <set>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

using Row = std::array<std::int8_t, 16>;
using DirectedEdges = std::set<std::pair<int, int>>;

/// The corners' places in the unit cube.
constexpr std::array<std::array<int, 3>, 8> places = {
    {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}};

std::size_t triangleCount(std::size_t row) {
    std::size_t entries = 0;
    while (entries < 16 && MCTables::triTable[row][entries] >= 0)
        ++entries;
    return entries / 3;
}

/// Sides of triangles, as pairs of cube edges, that no other triangle of the case uses back.
DirectedEdges boundary(std::size_t row) {
    DirectedEdges sides;
    for (std::size_t t = 0; t < triangleCount(row); ++t) {
        const auto* triangle = MCTables::triTable[row].data() + 3 * t;
        for (int c = 0; c < 3; ++c) {
            const auto side = std::pair<int, int>(triangle[c], triangle[(c + 1) % 3]);
            if (sides.erase({side.second, side.first}) == 0)
                sides.insert(side);
        }
    }
    return sides;
}

bool liesOn(int edge, int axis, int side) {
    for (const auto corner : MCTables::edgeToCorners[static_cast<std::size_t>(edge)]) {
        if (places[corner][static_cast<std::size_t>(axis)] != side)
            return false;
    }
    return true;
}

DirectedEdges onFace(const DirectedEdges& sides, int axis, int face) {
    DirectedEdges found;
    for (const auto& side : sides) {
        if (liesOn(side.first, axis, face) && liesOn(side.second, axis, face))
            found.insert(side);
    }
    return found;
}

std::size_t cornerAt(std::array<int, 3> place) {
    std::size_t n = 0;
    while (places[n] != place)
        ++n;
    return n;
}

/// The number of the same corner, or edge, seen from the next cube along `axis`.
std::size_t cornerAcross(std::size_t corner, int axis) {
    auto place = places[corner];
    place[static_cast<std::size_t>(axis)] = 0;
    return cornerAt(place);
}

int edgeAcross(int edge, int axis) {
    const auto [a, b] = MCTables::edgeToCorners[static_cast<std::size_t>(edge)];
    const std::set<std::size_t> wanted = {cornerAcross(a, axis), cornerAcross(b, axis)};
    for (int other = 0; other < 12; ++other) {
        const auto [c, d] = MCTables::edgeToCorners[static_cast<std::size_t>(other)];
        if (std::set<std::size_t>{c, d} == wanted)
            return other;
    }
    return -1;
}

TEST(MCTables, beginAsPublished) {
    EXPECT_EQ(MCTables::edgeTable[0], 0x0);
    EXPECT_EQ(MCTables::edgeTable[1], 0x109);
    EXPECT_EQ(MCTables::edgeTable[2], 0x203);
    EXPECT_EQ(MCTables::edgeTable[3], 0x30a);
    EXPECT_EQ(MCTables::edgeTable[255], 0x0);
    EXPECT_EQ(
        MCTables::triTable[1], (Row{0, 8, 3, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
    EXPECT_EQ(
        MCTables::triTable[3], (Row{1, 8, 3, 9, 8, 1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
    const Row nothing = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    EXPECT_EQ(MCTables::triTable[0], nothing);
    EXPECT_EQ(MCTables::triTable[255], nothing);
}

TEST(MCTables, edgesJoinCornersOneStepApart) {
    std::set<std::pair<int, int>> seen;
    for (const auto [a, b] : MCTables::edgeToCorners) {
        int steps = 0;
        for (std::size_t axis = 0; axis < 3; ++axis)
            steps += std::abs(places[a][axis] - places[b][axis]);
        EXPECT_EQ(steps, 1);
        seen.insert(std::minmax<int>(a, b));
    }
    EXPECT_EQ(seen.size(), 12U);
}

TEST(MCTables, hold820Triangles) {
    std::size_t triangles = 0;
    for (std::size_t row = 0; row < 256; ++row)
        triangles += triangleCount(row);
    EXPECT_EQ(triangles, 820U);
}

TEST(MCTables, rowsAreTriplesFilledUpWithMinusOne) {
    for (std::size_t row = 0; row < 256; ++row) {
        const std::size_t used = 3 * triangleCount(row);
        for (std::size_t i = 0; i < 16; ++i) {
            const int edge = MCTables::triTable[row][i];
            EXPECT_TRUE(i < used ? edge >= 0 && edge < 12 : edge == -1) << row;
        }
    }
}

TEST(MCTables, trianglesUseExactlyTheCutEdges) {
    for (std::size_t row = 0; row < 256; ++row) {
        unsigned cut = 0;
        for (std::size_t edge = 0; edge < 12; ++edge) {
            const auto [a, b] = MCTables::edgeToCorners[edge];
            if ((row >> a & 1U) != (row >> b & 1U))
                cut |= 1U << edge;
        }
        unsigned used = 0;
        for (std::size_t i = 0; i < 3 * triangleCount(row); ++i)
            used |= 1U << MCTables::triTable[row][i];
        EXPECT_EQ(MCTables::edgeTable[row], cut) << row;
        EXPECT_EQ(used, cut) << row;
    }
}

TEST(MCTables, complementaryCasesCutTheSameEdges) {
    for (std::size_t row = 0; row < 256; ++row)
        EXPECT_EQ(MCTables::edgeTable[row], MCTables::edgeTable[255 - row]);
}

TEST(MCTables, trianglesOfACaseFormPatchesThatEndOnTheFaces) {
    for (std::size_t row = 0; row < 256; ++row) {
        std::set<std::pair<int, int>> directed;
        for (std::size_t t = 0; t < triangleCount(row); ++t) {
            const auto* triangle = MCTables::triTable[row].data() + 3 * t;
            for (int c = 0; c < 3; ++c)
                EXPECT_TRUE(directed.emplace(triangle[c], triangle[(c + 1) % 3]).second)
                    << "two triangles of row " << row << " turn opposite ways";
        }
        const auto sides = boundary(row);
        std::set<std::pair<int, int>> found;
        for (int axis = 0; axis < 3; ++axis) {
            for (int face = 0; face < 2; ++face)
                found.merge(onFace(sides, axis, face));
        }
        EXPECT_EQ(found, sides) << row;
    }
}

TEST(MCTables, patchesOfNeighboursMeetWithoutAGap) {
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<DirectedEdges> nextCube(256);
        for (std::size_t row = 0; row < 256; ++row)
            nextCube[row] = onFace(boundary(row), axis, 0);
        for (std::size_t row = 0; row < 256; ++row) {
            DirectedEdges expected;
            for (const auto& [from, to] : onFace(boundary(row), axis, 1))
                expected.emplace(edgeAcross(to, axis), edgeAcross(from, axis));
            for (std::size_t next = 0; next < 256; ++next) {
                bool meets = true;
                for (std::size_t n = 0; n < 8; ++n) {
                    if (places[n][static_cast<std::size_t>(axis)] == 1)
                        meets = meets && (row >> n & 1U) == (next >> cornerAcross(n, axis) & 1U);
                }
                if (meets) {
                    EXPECT_EQ(nextCube[next], expected) << row << " beside " << next;
                }
            }
        }
    }
}

TEST(MCTables, aCornerBelowIsFacedByItsTriangle) {
    for (std::size_t n = 0; n < 8; ++n) {
        const std::size_t row = std::size_t{1} << n;
        ASSERT_EQ(triangleCount(row), 1U);
        std::array<std::array<double, 3>, 3> p{};
        for (std::size_t c = 0; c < 3; ++c) {
            const auto [a, b] =
                MCTables::edgeToCorners[static_cast<std::size_t>(MCTables::triTable[row][c])];
            for (std::size_t axis = 0; axis < 3; ++axis)
                p[c][axis] = (places[a][axis] + places[b][axis]) / 2.0;
        }
        double side = 0;
        for (std::size_t x = 0; x < 3; ++x) {
            const std::size_t y = (x + 1) % 3;
            const std::size_t z = (x + 2) % 3;
            const double normal = (p[1][y] - p[0][y]) * (p[2][z] - p[0][z]) -
                                  (p[1][z] - p[0][z]) * (p[2][y] - p[0][y]);
            side += normal * (places[n][x] - p[0][x]);
        }
        EXPECT_GT(side, 0) << n;
    }
}

} // namespace

} // namespace ostrella
