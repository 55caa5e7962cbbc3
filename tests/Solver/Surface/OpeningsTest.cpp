#include "Solver/Surface/Openings.h"

#include "Solver/Surface/OpeningBodies.h"
#include "Solver/Surface/SurfaceBodies.h"
#include "Solver/Surface/SurfaceChecks.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr OpeningLimits limits{.widest = 3, .seam = 0.01};

std::int64_t sheetCount(const OpeningLids& lids) {
    return std::count(lids.isSheet.begin(), lids.isSheet.end(), true);
}

double lidArea(const IndexedSurface& surface, const OpeningLids& lids) {
    return test::area({surface.vertices, lids.triangles});
}

/// Open edges of the surface with its lids.
int openEdges(const IndexedSurface& surface, const OpeningLids& lids) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> uses;
    for (const auto* triangles : {&surface.triangles, &lids.triangles}) {
        for (const Triangle& t : *triangles) {
            for (std::size_t i = 0; i < 3; ++i)
                ++uses[std::minmax({t[i], t[(i + 1) % 3]})];
        }
    }
    return static_cast<int>(
        std::count_if(uses.begin(), uses.end(), [](const auto& use) { return use.second == 1; }));
}

double longestEdge(const IndexedSurface& surface, const OpeningLids& lids) {
    double longest = 0;
    for (const Triangle& t : lids.triangles) {
        for (std::size_t i = 0; i < 3; ++i)
            longest = std::max(
                longest, glm::distance(surface.vertices[t[i]], surface.vertices[t[(i + 1) % 3]]));
    }
    return longest;
}

} // namespace

TEST(Openings, FindsNoneInAClosedBody) {
    const IndexedSurface body = test::plateWithHoles(3, 3, [](int, int) { return false; });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_TRUE(lids.triangles.empty());
    EXPECT_EQ(lids.count, 0);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{false});
    EXPECT_EQ(lids.shellOf, std::vector<std::uint32_t>(body.triangles.size(), 0));
}

TEST(Openings, ClosesASquareHole) {
    const IndexedSurface body =
        test::plateWithHoles(3, 3, [](int x, int y) { return x == 1 && y == 1; });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.triangles.size(), 2u);
    EXPECT_EQ(lids.count, 1);
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 1);
    EXPECT_EQ(openEdges(body, lids), 0);
    EXPECT_EQ(sheetCount(lids), 0);
}

TEST(Openings, ClosesASlotFromSideToSide) {
    const IndexedSurface body =
        test::plateWithHoles(30, 3, [](int x, int y) { return x >= 2 && x < 28 && y == 1; });
    const OpeningLids lids = lidsFor(body, {.widest = 1.01, .seam = 0.01});
    EXPECT_EQ(lids.count, 1);
    EXPECT_EQ(lids.triangles.size(), 52u); // 54 vertices around
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 26);
    EXPECT_LE(longestEdge(body, lids), std::sqrt(2.0) + 1e-12);
    EXPECT_EQ(openEdges(body, lids), 0);
}

TEST(Openings, ClosesACrookedSlotThatIsNarrow) {
    // Three sides of a square of 17, one wide.
    const IndexedSurface body = test::plateWithHoles(24, 24, [](int x, int y) {
        return (x == 3 && y >= 3 && y < 20) || (x == 19 && y >= 3 && y < 20) ||
               (y == 3 && x >= 3 && x < 20);
    });
    const OpeningLids lids = lidsFor(body, {.widest = 2.01, .seam = 0.01});
    EXPECT_EQ(lids.count, 1);
    EXPECT_EQ(sheetCount(lids), 0);
    EXPECT_EQ(openEdges(body, lids), 0);
    EXPECT_NEAR(lidArea(body, lids), 17 + 17 + 15, 1);
}

TEST(Openings, ClosesARoundHoleByAnEvenDisc) {
    const int sides = 96;
    const IndexedSurface body = test::pot(sides, 3);
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 1);
    EXPECT_EQ(lids.triangles.size(), 94u);
    EXPECT_NEAR(lidArea(body, lids), 48 * std::sin(2 * std::numbers::pi / 96), 1e-12);
    EXPECT_EQ(openEdges(body, lids), 0);
    // No vertex gathers more than a few of the triangles, as it would in a fan.
    std::vector<int> trianglesAt(body.vertices.size());
    for (const Triangle& t : lids.triangles) {
        for (const std::uint32_t vertex : t)
            ++trianglesAt[vertex];
    }
    EXPECT_LE(*std::max_element(trianglesAt.begin(), trianglesAt.end()), 16);
}

TEST(Openings, LeavesAWideOneOpen) {
    const IndexedSurface body = test::pot(96, 3);
    const OpeningLids lids = lidsFor(body, {.widest = 1.9, .seam = 0.01});
    EXPECT_TRUE(lids.triangles.empty());
    EXPECT_EQ(lids.count, 0);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{true});
    EXPECT_EQ(lidsFor(body, {.widest = 2.01, .seam = 0.01}).count, 1);
}

TEST(Openings, JudgesEachForItself) {
    // A wide one and a narrow one.
    const IndexedSurface body = test::plateWithHoles(12, 9,
        [](int x, int y) { return (x >= 1 && x < 6 && y >= 2 && y < 7) || (x == 9 && y == 4); });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 1);
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 1);
    EXPECT_EQ(openEdges(body, lids), 20);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{true});
}

TEST(Openings, ClosesTwoThatShareAVertexEachForItself) {
    const IndexedSurface body = test::plateWithHoles(
        6, 6, [](int x, int y) { return (x == 2 && y == 2) || (x == 3 && y == 3); });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 2);
    EXPECT_EQ(lids.triangles.size(), 4u);
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 2);
    EXPECT_EQ(openEdges(body, lids), 0);
}

TEST(Openings, ClosesARingOfFourAroundACellThatTouchesThem) {
    // Four holes around a square that hangs on its corners only.
    const IndexedSurface body = test::plateWithHoles(
        7, 7, [](int x, int y) { return std::abs(x - 3) + std::abs(y - 3) == 1; });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 4);
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 4);
    EXPECT_EQ(openEdges(body, lids), 0);
}

TEST(Openings, ClosesManyAroundOneVertex) {
    // A lid of 80 sectors, of which each second one is missing.
    IndexedSurface body = test::pot(80, 3);
    const auto middle = static_cast<std::uint32_t>(body.vertices.size());
    body.vertices.emplace_back(0, 0, 3);
    for (std::uint32_t i = 0; i < 80; i += 2)
        body.triangles.push_back({80 + i, 81 + i, middle});
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 40);
    EXPECT_EQ(lids.triangles.size(), 40u);
    EXPECT_EQ(openEdges(body, lids), 0);
}

TEST(Openings, StaysWithinAnAngularHole) {
    // An L, two wide.
    const IndexedSurface body = test::plateWithHoles(9, 9,
        [](int x, int y) { return x >= 1 && y >= 1 && ((x < 6 && y < 3) || (x < 3 && y < 6)); });
    const OpeningLids lids = lidsFor(body, {.widest = 6, .seam = 0.01});
    EXPECT_EQ(lids.count, 1);
    EXPECT_DOUBLE_EQ(lidArea(body, lids), 16);
    EXPECT_EQ(openEdges(body, lids), 0);
}

TEST(Openings, ClosesFifty) {
    const IndexedSurface body =
        test::plateWithHoles(21, 11, [](int x, int y) { return x % 2 == 1 && y % 2 == 1; });
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_EQ(lids.count, 50);
    EXPECT_EQ(lids.triangles.size(), 100u);
    EXPECT_EQ(openEdges(body, lids), 0);
    EXPECT_EQ(sheetCount(lids), 0);
}

TEST(Openings, TakesTheBorderOfASheetForNone) {
    // Narrow enough, but the lid would be the sheet itself.
    const IndexedSurface sheet = test::flatSheet(6, 2);
    const OpeningLids lids = lidsFor(sheet, limits);
    EXPECT_TRUE(lids.triangles.empty());
    EXPECT_EQ(lids.count, 0);
    EXPECT_EQ(lids.isSheet, std::vector<bool>{true});
}

TEST(Openings, TellsSheetsFromBodies) {
    const IndexedSurface body =
        test::plateWithHoles(3, 3, [](int x, int y) { return x == 1 && y == 1; });
    IndexedSurface sheet = test::flatSheet(2, 2);
    for (DVec3& vertex : sheet.vertices)
        vertex.z += 5;
    const OpeningLids lids = lidsFor(test::together(body, sheet), limits);
    EXPECT_EQ(lids.count, 1);
    EXPECT_EQ(lids.isSheet, (std::vector<bool>{false, true}));
    EXPECT_EQ(std::count(lids.shellOf.begin(), lids.shellOf.end(), 0u),
        static_cast<std::ptrdiff_t>(body.triangles.size()));
    EXPECT_EQ(lids.shellOf.back(), 1u);
}

TEST(Openings, TakesAFinOnABodyForASheet) {
    // On the edge of the plate's top from (0, 0, 1) to (3, 0, 1).
    IndexedSurface body = test::plateWithHoles(3, 3, [](int, int) { return false; });
    const std::size_t facets = body.triangles.size();
    const auto first = static_cast<std::uint32_t>(body.vertices.size());
    for (int x = 0; x <= 3; ++x)
        body.vertices.emplace_back(x, -1, 2);
    for (std::uint32_t x = 0; x < 3; ++x) {
        const std::uint32_t foot = 16 + x;
        body.triangles.push_back({foot, foot + 1, first + x + 1});
        body.triangles.push_back({foot, first + x + 1, first + x});
    }
    const OpeningLids lids = lidsFor(body, limits);
    EXPECT_TRUE(lids.triangles.empty());
    EXPECT_EQ(lids.isSheet, (std::vector<bool>{false, true}));
    EXPECT_EQ(lids.shellOf[0], 0u);
    EXPECT_EQ(lids.shellOf[facets], 1u);
}

TEST(Openings, MeasuresLargeLoopsAndClosesThem) {
    const int sides = 200'000;
    const IndexedSurface body = test::pot(sides, 3);
    const OpeningLids lids = lidsFor(body, {.widest = 3, .seam = 1e-9});
    EXPECT_EQ(lids.count, 1);
    EXPECT_NEAR(lidArea(body, lids), std::numbers::pi, 1e-8);
    EXPECT_EQ(sheetCount(lids), 0);
}

TEST(Openings, StopsOnDemand) {
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(lidsFor(test::pot(8, 1), limits, source.token()), CancellationError);
}

} // namespace ostrella
