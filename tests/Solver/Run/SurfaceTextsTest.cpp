#include "Solver/Run/SurfaceTexts.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using Level = LogStore::Level;
using testing::Eq;
using testing::Optional;

TEST(SurfaceTexts, GiveALengthInTheUnitThatItReadsBestIn) {
    EXPECT_EQ(SurfaceTexts::length(0.0013), "1.3 mm");
    EXPECT_EQ(SurfaceTexts::length(0.005), "5.0 mm");
    EXPECT_EQ(SurfaceTexts::length(0.0437), "43.7 mm");
    EXPECT_EQ(SurfaceTexts::length(0.5), "500 mm");
    EXPECT_EQ(SurfaceTexts::length(1.25), "1.2 m");
    EXPECT_EQ(SurfaceTexts::length(120), "120 m");
    EXPECT_EQ(SurfaceTexts::length(4200), "4.2 km");
    EXPECT_EQ(SurfaceTexts::length(1.5e7), "15000 km");
    EXPECT_EQ(SurfaceTexts::length(2.5e-5), "25.0 µm");
    EXPECT_EQ(SurfaceTexts::length(3e-9), "3.0 nm");
    EXPECT_EQ(SurfaceTexts::length(0), "0 mm");
}

TEST(SurfaceTexts, RoundALengthIntoTheNextUnit) {
    EXPECT_EQ(SurfaceTexts::length(0.0999), "99.9 mm");
    EXPECT_EQ(SurfaceTexts::length(0.09996), "100 mm");
    EXPECT_EQ(SurfaceTexts::length(0.9994), "999 mm");
    EXPECT_EQ(SurfaceTexts::length(0.9996), "1.0 m");
}

TEST(SurfaceTexts, TellWhatAPreparationMade) {
    SurfacePreparation facts;
    facts.facets = 12345;
    facts.deviation = 0.0013;
    EXPECT_EQ(SurfaceTexts::prepared(facts),
        SurfaceTexts::Line(
            "Surface prepared for meshing · 12 345 facets · within 1.3 mm of the model",
            Level::info));
}

TEST(SurfaceTexts, WarnOfClosedOpeningsAndThickenedSheets) {
    SurfacePreparation facts;
    facts.facets = 12345;
    facts.deviation = 0.0013;
    facts.openingsClosed = 2;
    EXPECT_EQ(SurfaceTexts::prepared(facts),
        SurfaceTexts::Line("Surface prepared for meshing · 12 345 facets · within 1.3 mm of the "
                           "model · 2 openings closed",
            Level::warn));
    facts.openingsClosed = 1;
    facts.sheetsThickened = 2;
    facts.sheetThickness = 0.005;
    EXPECT_EQ(SurfaceTexts::prepared(facts),
        SurfaceTexts::Line("Surface prepared for meshing · 12 345 facets · within 1.3 mm of the "
                           "model · 1 opening closed · 2 sheets thickened to 5.0 mm",
            Level::warn));
    facts.openingsClosed = 0;
    facts.sheetsThickened = 1;
    EXPECT_EQ(SurfaceTexts::prepared(facts).second, Level::warn);
}

TEST(SurfaceTexts, TellOfInnerShellsWithoutAWarning) {
    SurfacePreparation facts;
    facts.facets = 1;
    facts.shellsRemoved = 1;
    EXPECT_EQ(SurfaceTexts::prepared(facts),
        SurfaceTexts::Line("Surface prepared for meshing · 1 facet · within 0 mm of the model · 1 "
                           "hidden shell left out",
            Level::info));
    facts.shellsRemoved = 1200;
    EXPECT_THAT(
        SurfaceTexts::prepared(facts).first, testing::EndsWith(" · 1 200 hidden shells left out"));
    facts = {};
    facts.smallBodies = 2;
    EXPECT_THAT(SurfaceTexts::prepared(facts).first,
        testing::EndsWith(" · 2 bodies too small for the facets"));
    EXPECT_EQ(SurfaceTexts::prepared(facts).second, Level::warn);
}

TEST(SurfaceTexts, TellWhatCouldNotBeDone) {
    EXPECT_EQ(SurfaceTexts::notPrepared("It has no surface."),
        "Surface not prepared · It has no surface.");
    EXPECT_EQ(SurfaceTexts::notPreparedWithin(60),
        "Preparing the surface takes longer than 60 s. Simplify the model and load it again.");
    EXPECT_EQ(SurfaceTexts::notJudged("No memory."), "Surface not judged · No memory.");
    EXPECT_EQ(
        SurfaceTexts::notJudgedWithin(10), "Surface not judged · that takes longer than 10 s");
    EXPECT_EQ(SurfaceTexts::noMeshAsItIs("gmsh said no"),
        "No mesh of the surface as it is · gmsh said no");
    EXPECT_EQ(SurfaceTexts::noMeshPrepared("gmsh said no"),
        "No mesh of the prepared surface · gmsh said no");
}

TEST(SurfaceTexts, TrustThePlanformOfAModelThatIsClosedAndOutward) {
    SurfaceFitness fitness;
    fitness.selfIntersections.count = 5;
    fitness.nonManifoldEdges.count = 5;
    EXPECT_EQ(SurfaceTexts::planformTrust(fitness, {1, 1, {}}), std::nullopt);
}

TEST(SurfaceTexts, TellHowFarThePlanformOfAnOpenModelIsInDoubt) {
    SurfaceFitness fitness;
    fitness.openEdges.count = 3;
    EXPECT_THAT(SurfaceTexts::planformTrust(fitness, {6, 0, {}}),
        Optional(Eq(SurfaceTexts::Line("Reference area of a model that is not closed · 6.0000 m² "
                                       "face up and 0.0000 m² down · coefficients are as uncertain "
                                       "as these differ",
            Level::warn))));
    EXPECT_THAT(SurfaceTexts::planformTrust(fitness, {6, 5.5, 6.125}),
        Optional(Eq(SurfaceTexts::Line("Reference area of a model that is not closed · 6.0000 m² "
                                       "face up and 5.5000 m² down, the prepared surface has "
                                       "6.1250 m² · coefficients are as uncertain as these differ",
            Level::warn))));
    fitness.openEdges.count = 0;
    fitness.inconsistentEdges.count = 4;
    EXPECT_THAT(SurfaceTexts::planformTrust(fitness, {6, 2, {}})->first,
        testing::StartsWith("Reference area of a model whose facets disagree on the outside · "
                            "6.0000 m² face up and 2.0000 m² down"));
}

TEST(SurfaceTexts, TellThatHiddenFacetsCountInThePlanform) {
    const SurfaceFitness fitness;
    EXPECT_THAT(SurfaceTexts::planformTrust(fitness, {1.5, 1.5, 1.25}),
        Optional(Eq(SurfaceTexts::Line("Reference area counts hidden facets too · 1.5000 m² face "
                                       "up, the prepared surface has 1.2500 m²",
            Level::warn))));
    EXPECT_EQ(SurfaceTexts::planformTrust(fitness, {1.29, 1.29, 1.25}), std::nullopt);
    EXPECT_EQ(SurfaceTexts::planformTrust(fitness, {1.5, 1.5, {}}), std::nullopt);
}

TEST(SurfaceTexts, TellThatThePlanformOfAModelInsideOutIsThatOfItsUnderside) {
    SurfaceFitness fitness;
    fitness.insideOutShells.count = 1;
    EXPECT_THAT(SurfaceTexts::planformTrust(fitness, {1, 1, {}}),
        Optional(Eq(SurfaceTexts::Line("Reference area of a model that is inside out · measured on "
                                       "its underside, which is the same for a closed surface",
            Level::info))));
}

TEST(SurfaceTexts, TellOfPoorCells) {
    MeshQuality quality{.cells = 99, .leastGamma = 0.00894};
    EXPECT_EQ(SurfaceTexts::poorCells(quality),
        "Cells as flat as 0.0089 around the surface as it is · a solver may diverge there, so it "
        "is prepared");
    EXPECT_EQ(SurfaceTexts::keptAsItIs(quality),
        "Mesh of the surface as it is kept · cells as flat as 0.0089 around the prepared one");
    quality.inverted = 1234;
    EXPECT_EQ(SurfaceTexts::poorCells(quality),
        "1 234 cells inside out around the surface as it is · a solver may diverge there, so it "
        "is prepared");
    EXPECT_EQ(SurfaceTexts::keptAsItIs(std::nullopt), "Mesh of the surface as it is kept");
}

} // namespace
} // namespace ostrella
