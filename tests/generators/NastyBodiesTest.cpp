// That each nasty body has the defects that it is there for.
#include "NastyBodies.h"
#include "TestBodies.h"
#include "generators/SurfaceDefects.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <string>
#include <string_view>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace ostrella {

namespace {

using generators::Body;
using generators::NastyBody;
using std::numbers::pi;
using test::SurfaceDefects;

Body bodyOf(std::string_view name) {
    const NastyBody* entry = generators::nastyBody(name);
    if (entry == nullptr) {
        ADD_FAILURE() << "no body " << name;
        return Body{{{0, 0, 0}}, {{0, 0, 0}}};
    }
    return entry->make();
}

SurfaceDefects defectsOf(std::string_view name) {
    return SurfaceDefects::of(bodyOf(name));
}

/// Closed, manifold and of one orientation, whatever its shells do to one another.
void expectSoundShells(std::string_view name, std::size_t pieces) {
    const SurfaceDefects d = defectsOf(name);
    EXPECT_EQ(d.openEdges, 0U) << name;
    EXPECT_EQ(d.crowdedEdges, 0U) << name;
    EXPECT_EQ(d.turnedEdges, 0U) << name;
    EXPECT_EQ(d.emptyFacets, 0U) << name;
    EXPECT_EQ(d.pieces, pieces) << name;
    EXPECT_GT(d.volume, 0.0) << name;
}

/// How far a coordinate is from its 32-bit float.
double mostRounding(std::string_view name) {
    double most = 0.0;
    for (const glm::dvec3& v : bodyOf(name).vertices) {
        const glm::dvec3 off = glm::abs(v - glm::dvec3(glm::vec3(v)));
        most = std::max({most, off.x, off.y, off.z});
    }
    return most;
}

void expectCrossings(std::string_view name) {
    EXPECT_GT(test::crossings(bodyOf(name), 1), 0U) << name;
}

TEST(NastyBodies, AreMoreThanFortyAndHaveNamesOfTheirOwn) {
    EXPECT_GE(generators::nastyBodies().size(), 44U);
    std::set<std::string_view> names;
    for (const NastyBody& body : generators::nastyBodies()) {
        EXPECT_TRUE(names.insert(body.name).second) << body.name;
        EXPECT_FALSE(body.about.empty()) << body.name;
        const generators::TestBody* same = generators::testBody(body.name);
        EXPECT_TRUE(same == nullptr || same->make == body.make) << body.name;
    }
    EXPECT_EQ(generators::nastyBody("teapot"), nullptr);
}

TEST(NastyBodies, AreTheSameEachTimeAndFinite) {
    for (const NastyBody& body : generators::nastyBodies()) {
        const Body once = body.make();
        const Body again = body.make();
        EXPECT_EQ(once.vertices, again.vertices) << body.name;
        EXPECT_EQ(once.triangles, again.triangles) << body.name;
        EXPECT_FALSE(once.triangles.empty()) << body.name;
        for (const glm::dvec3& v : once.vertices) {
            ASSERT_TRUE(std::isfinite(v.x + v.y + v.z)) << body.name;
        }
    }
}

TEST(NastyBodies, OnlyThoseWithoutVolumeOrBeyondAllDigitsGiveNoFlow) {
    std::set<std::string_view> without;
    for (const NastyBody& body : generators::nastyBodies()) {
        if (body.end == NastyBody::End::sentence) {
            without.insert(body.name);
        }
    }
    EXPECT_THAT(
        without, testing::UnorderedElementsAre("hundredThousandSizesAway", "line", "point"));
}

TEST(NastyAircraft, ArePartsThatStickThroughOneAnother) {
    expectSoundShells("airliner", 4);
    expectSoundShells("glider", 4);
    // Fuselage, two wings, tailplane, fin, eight struts.
    expectSoundShells("biplane", 13);
    expectSoundShells("flyingBoat", 9);
    for (const char* name :
        {"airliner", "airlinerWithNacelles", "glider", "biplane", "flatWings"}) {
        expectCrossings(name);
    }
    // Two tubes of 16 facets round, open at both ends.
    EXPECT_EQ(defectsOf("airlinerWithNacelles").openEdges, 64U);
    // The wings are one sheet of six outer edges, the fin has four.
    EXPECT_EQ(defectsOf("flatWings").openEdges, 10U);
    EXPECT_EQ(defectsOf("flatWings").pieces, 3U);
}

TEST(NastyMissiles, HaveEdgesOfMoreThanTwoFacets) {
    // Four fins with roots of four edges each, closed wedges and sheets.
    EXPECT_EQ(defectsOf("finnedMissile").crowdedEdges, 16U);
    EXPECT_EQ(defectsOf("finnedMissile").openEdges, 0U);
    EXPECT_EQ(defectsOf("sheetFinnedMissile").crowdedEdges, 16U);
    // Each sheet has 4 + 3 + 3 edges besides.
    EXPECT_EQ(defectsOf("sheetFinnedMissile").openEdges, 40U);
    EXPECT_EQ(defectsOf("starOfFins").crowdedEdges, 1U);
    expectCrossings("starOfFins");
    const SurfaceDefects sliver = defectsOf("sliverMissile");
    EXPECT_EQ(sliver.pieces, 5U);
    EXPECT_LT(sliver.worstShape, 0.01);
    expectCrossings("sliverMissile");
}

TEST(NastyRotors, HaveBladesThroughAHub) {
    expectSoundShells("propeller3", 4);
    expectSoundShells("propeller5", 6);
    // Four sheets of 8 by 2 facets' edges.
    EXPECT_EQ(defectsOf("paperPropeller").openEdges, 80U);
    EXPECT_EQ(defectsOf("ductedFan").openEdges, 64U);
    expectSoundShells("gear", 4);
    for (const char* name : {"propeller3", "propeller5", "paperPropeller", "ductedFan", "gear"}) {
        expectCrossings(name);
    }
}

TEST(NastyVehicles, TouchAlongLines) {
    const SurfaceDefects onRoad = defectsOf("carOnRoad");
    EXPECT_EQ(onRoad.pieces, 6U);
    EXPECT_EQ(onRoad.openEdges, 24U);
    EXPECT_NEAR(onRoad.low.y, 0.0, 1e-7);
    expectCrossings("carOnRoad");
    expectSoundShells("cartOnTangentWheels", 5);
    // Nothing goes through anything: 1.6 x 0.6 x 4 of box, and four prisms of 20 sides.
    EXPECT_EQ(test::crossings(bodyOf("cartOnTangentWheels"), 1), 0U);
    EXPECT_NEAR(defectsOf("cartOnTangentWheels").volume,
        3.84 + 4 * 0.2 * 10 * 0.09 * std::sin(pi / 10), 1e-5);
    EXPECT_GT(defectsOf("carWithTrimmings").openEdges, 0U);
    expectCrossings("carWithTrimmings");
}

TEST(NastyFrames, CrossUnmerged) {
    expectSoundShells("crossingBars", 8);
    expectSoundShells("squareLattice", 27);
    // Five bays of three chords' bars, which join end to end, three diagonals, and six triangles.
    EXPECT_EQ(defectsOf("spaceTruss").pieces, 3U + 15U + 18U);
    EXPECT_GT(defectsOf("spaceTruss").openEdges, 0U);
    EXPECT_GT(defectsOf("bicycle").openEdges, 0U);
    // Table, two rails, two posts, a beam, a block, sixteen bolts with heads.
    expectSoundShells("gantry", 39);
    for (const char* name : {"crossingBars", "squareLattice", "spaceTruss", "bicycle", "gantry"}) {
        expectCrossings(name);
    }
    // Each box has its lowest edge in common with the next.
    EXPECT_EQ(defectsOf("staircase").crowdedEdges, 7U);
    EXPECT_EQ(defectsOf("staircase").openEdges, 0U);
    // Steps of 0.3 by 0.2 that add up to 36, 1.2 wide.
    EXPECT_NEAR(defectsOf("staircase").volume, 36 * 0.3 * 0.2 * 1.2, 1e-5);
}

TEST(NastySheets, HaveNoThicknessOrVeryLittle) {
    EXPECT_EQ(defectsOf("plane").openEdges, 4U);
    EXPECT_EQ(defectsOf("inclinedPlate").openEdges, 72U);
    EXPECT_EQ(defectsOf("sail").openEdges, 72U);
    EXPECT_GT(defectsOf("perforatedSheet").openEdges, 96U + 9 * 4);
    EXPECT_EQ(defectsOf("perforatedSheet").pieces, 1U);
    expectSoundShells("paperPlate", 1);
    expectSoundShells("paperPlate12", 1);
    EXPECT_NEAR(defectsOf("paperPlate").volume, 2.0 * 0.002 * 1.0, 1e-6);
    EXPECT_NEAR(defectsOf("paperPlate12").volume, 0.001, 1e-8);
    // One border that goes round twice, and a seam where both sides meet.
    EXPECT_EQ(defectsOf("mobiusStrip").openEdges, 120U);
    EXPECT_EQ(defectsOf("mobiusStrip").turnedEdges, 5U);
    EXPECT_EQ(defectsOf("threeLeaves").crowdedEdges, 12U);
    expectCrossings("crossedSheets");
}

TEST(NastySheets, LineAndPointHaveNoArea) {
    for (const char* name : {"line", "point"}) {
        const SurfaceDefects d = defectsOf(name);
        EXPECT_EQ(d.emptyFacets, d.facets) << name;
    }
    EXPECT_EQ(defectsOf("point").corners, 1U);
}

TEST(NastyOpenings, AreOpenWhereTheyShallBe) {
    EXPECT_EQ(defectsOf("tinyHoles").facets, 6480U - 50U);
    EXPECT_GT(defectsOf("tinyHoles").openEdges, 130U);
    EXPECT_LE(defectsOf("tinyHoles").openEdges, 150U);
    // Panels of 2 x 2, 16 x 8 and 10 x 10 squares.
    EXPECT_EQ(defectsOf("smallPanelMissing").openEdges, 8U);
    EXPECT_EQ(defectsOf("largePanelMissing").openEdges, 48U);
    EXPECT_EQ(defectsOf("frontMissing").openEdges, 40U);
    EXPECT_EQ(defectsOf("openDuct").openEdges, 56U);
    expectSoundShells("walledDuct", 1);
    EXPECT_GT(defectsOf("openCup").openEdges, 0U);
    EXPECT_EQ(defectsOf("leakyBox").openEdges, 144U);
    EXPECT_EQ(defectsOf("leakyBox").pieces, 6U);
    EXPECT_GT(defectsOf("tornSphere").openEdges, 900U);
}

TEST(NastyOpenings, GapsAreAHundredThousandth) {
    const SurfaceDefects gap = defectsOf("seamGap");
    EXPECT_EQ(gap.pieces, 2U);
    EXPECT_GT(gap.openEdges, 0U);
    EXPECT_EQ(gap.openEdges % 2, 0U);
    EXPECT_NEAR(gap.high.x - gap.low.x, 2.00001, 1e-6);
    expectSoundShells("slit", 2);
    EXPECT_NEAR(defectsOf("slit").extent(), 2.00001, 1e-6);
    EXPECT_NEAR(defectsOf("slit").volume, 2 * 0.64, 1e-6);
}

TEST(NastyScans, HaveWhatScannersLeave) {
    expectCrossings("scan");
    expectCrossings("scanWithSpikes");
    // The lump, five crumbs and four single facets.
    EXPECT_EQ(defectsOf("scanWithSpecks").pieces, 10U);
    EXPECT_EQ(defectsOf("scanWithSpecks").openEdges, 12U);
    EXPECT_GT(defectsOf("scanWithGaps").openEdges, 100U);
    EXPECT_EQ(defectsOf("twoScans").pieces, 2U);
    expectCrossings("twoScans");
    EXPECT_EQ(bodyOf("largeScan").triangles.size(), 302580U);
    EXPECT_EQ(defectsOf("facetSoup").pieces, 200U);
    EXPECT_EQ(defectsOf("facetSoup").openEdges, 600U);
}

TEST(NastyCad, HasNeedlesAndPatchesThatDoNotMatch) {
    expectSoundShells("needleCylinder", 1);
    EXPECT_LT(defectsOf("needleCylinder").worstShape, 0.02);
    expectSoundShells("needleBox", 1);
    EXPECT_LT(defectsOf("needleBox").worstShape, 0.01);
    expectSoundShells("hairFillets", 1);
    EXPECT_LT(defectsOf("hairFillets").worstShape, 0.01);
    // All edges of the six patches: no two of them are alike.
    EXPECT_EQ(defectsOf("patchesThatDoNotMatch").openEdges, 146U);
    EXPECT_EQ(defectsOf("patchesThatDoNotMatch").pieces, 6U);
    EXPECT_NEAR(defectsOf("patchesThatDoNotMatch").volume, 1.0, 1e-6);
    EXPECT_GT(defectsOf("curvedPatches").openEdges, 50U);
}

TEST(NastyCad, HasReliefOfOverlappingBoxes) {
    for (const char* name : {"reliefOnPlate", "reliefInPlate"}) {
        const SurfaceDefects relief = defectsOf(name);
        // The plate, and thirteen strokes, some of which have edges in common.
        EXPECT_EQ(relief.facets, 14U * 12U) << name;
        EXPECT_EQ(relief.openEdges, 0U) << name;
        EXPECT_GT(relief.crowdedEdges, 0U) << name;
    }
    expectCrossings("reliefInPlate");
    const SurfaceDefects rivets = defectsOf("rivetedPlate");
    EXPECT_EQ(rivets.pieces, 51U);
    EXPECT_GT(rivets.openEdges, 300U);
}

TEST(NastyCad, HasFacetsThatAreEmptyDoubledOrTurned) {
    // Three for every ninth of 432.
    EXPECT_EQ(defectsOf("zeroFacets").emptyFacets, 144U);
    EXPECT_EQ(defectsOf("doubledFacets").doubledFacets, 427U);
    const SurfaceDefects turned = defectsOf("randomlyFlipped");
    EXPECT_EQ(turned.openEdges, 0U);
    // Two neighbours disagree with a chance of 2 · 0.4 · 0.6.
    EXPECT_NEAR(double(turned.turnedEdges), 0.48 * 1.5 * double(turned.facets),
        0.05 * double(turned.facets));
}

TEST(NastyShells, LieInsideBesideAndUponOneAnother) {
    expectSoundShells("hollowSphere", 2);
    EXPECT_NEAR(defectsOf("hollowSphere").volume, 4.0 / 3.0 * pi * (1.0 - 0.729), 0.02);
    expectSoundShells("ballWithinBall", 2);
    // Outside, inside, and 42 screws of a shank and a head.
    expectSoundShells("housing", 86);
    expectCrossings("housing");
    expectSoundShells("unlikePair", 2);
    EXPECT_EQ(test::crossings(bodyOf("unlikePair"), 1), 0U);
    expectSoundShells("touchingAtPoint", 2);
    // Boxes of 98 corners, one in common.
    EXPECT_EQ(defectsOf("touchingAtPoint").corners, 195U);
    expectSoundShells("touchingAlongEdge", 2);
    EXPECT_EQ(test::crossings(bodyOf("touchingAlongEdge"), 1), 0U);
    EXPECT_EQ(defectsOf("commonFace").doubledFacets, 32U);
    expectSoundShells("boxUponBox", 2);
    expectSoundShells("foam", 30);
    expectCrossings("foam");
}

TEST(NastyShells, GoThroughThemselvesAndFaceTheWrongWay) {
    const SurfaceDefects klein = defectsOf("kleinTube");
    EXPECT_EQ(klein.pieces, 1U);
    EXPECT_EQ(klein.openEdges, 0U);
    EXPECT_GT(klein.turnedEdges, 0U);
    expectCrossings("kleinTube");
    expectSoundShells("crossingTube", 1);
    expectCrossings("crossingTube");
    EXPECT_NEAR(defectsOf("insideOutBoxes").volume, 0.7 * 1.2 * 0.5 - 1.5 * 0.7 * 0.7, 1e-5);
    expectCrossings("insideOutBoxes");
    const SurfaceDefects three = defectsOf("coincidentShells");
    EXPECT_EQ(three.doubledFacets, three.facets / 3 * 2);
}

TEST(NastyPlaces, AreLargeSmallAndFar) {
    EXPECT_NEAR(defectsOf("bracketOf300").extent(), 300.0, 1e-3);
    EXPECT_NEAR(defectsOf("bracketOf2000").extent(), 2000.0, 1e-3);
    EXPECT_NEAR(defectsOf("bracketOfCentimetres").extent(), 0.03, 1e-6);
    expectCrossings("bracketOf300");
    for (const auto& [name, times] : {std::pair{"thousandSizesAway", 1e3},
             {"tenThousandSizesAway", 1e4}, {"hundredThousandSizesAway", 1e5}}) {
        const SurfaceDefects d = defectsOf(name);
        EXPECT_NEAR(glm::length(d.low) / d.extent(), times, 0.1 * times) << name;
    }
    EXPECT_NEAR(defectsOf("thousandSizesAway").extent(), 1.5, 1e-3);
    // Out there floats are up to an eight-thousandth, a thousandth and a hundredth apart.
    EXPECT_LT(mostRounding("thousandSizesAway"), 1e-4);
    EXPECT_GT(mostRounding("tenThousandSizesAway"), 3e-4);
    EXPECT_GT(mostRounding("hundredThousandSizesAway"), 3e-3);
    EXPECT_EQ(defectsOf("kilometre").pieces, 10U);
    EXPECT_NEAR(defectsOf("kilometre").extent(), 900.0, 5.0);
    EXPECT_LT(defectsOf("kilometre").area, 10.0);
    EXPECT_EQ(defectsOf("strayFacet").pieces, 2U);
}

} // namespace

} // namespace ostrella
