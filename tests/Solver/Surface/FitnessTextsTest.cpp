#include "Solver/Surface/FitnessTexts.h"

#include <gtest/gtest.h>

namespace ostrella::test {

namespace {

SurfaceFitness fit() {
    SurfaceFitness fitness;
    fitness.facets = 5120;
    fitness.shells = 1;
    fitness.extent = 1;
    return fitness;
}

} // namespace

TEST(FitnessTexts, ofAFitSurface) {
    EXPECT_EQ(
        fitnessLine(fit()), "Surface judged · 5 120 facets · 1 shell · closed · fit for meshing");
    EXPECT_EQ(worstDefectSentence(fit()), "");
}

TEST(FitnessTexts, sliversAreToldOfAFitOne) {
    SurfaceFitness fitness = fit();
    fitness.slivers = {1, {{0.5F, 0, 0}}};
    EXPECT_EQ(fitnessLine(fitness),
        "Surface judged · 5 120 facets · 1 shell · closed · 1 sliver at "
        "(0.50, 0.00, 0.00) · fit for meshing");
    EXPECT_EQ(worstDefectSentence(fitness), "");
}

TEST(FitnessTexts, eachDefectWithItsCountAndItsFirstPlace) {
    SurfaceFitness fitness = fit();
    fitness.facets = 1;
    fitness.shells = 2;
    fitness.openEdges = {18, {{0.15F, 0.47F, -0.07F}, {1, 2, 3}}};
    fitness.nonManifoldEdges = {1, {{0, 0, 1}}};
    fitness.duplicatedFacets = {1, {{0, 0, 2}}};
    fitness.inconsistentEdges = {1, {{0, 0, 3}}};
    fitness.degenerateFacets = {1, {{0, 0, 4}}};
    fitness.slivers = {12'345, {{0, 0, 5}}};
    fitness.selfIntersections = {1, {{0, 0, 6}}};
    fitness.overlaps = {1, {{0, 0, 7}}};
    fitness.insideOutShells = {1, {{0, 0, 8}}};
    fitness.innerShells = {1, {{0, 0, 9}}};
    fitness.cuttingShells = {1, {{-0.001F, 0, 10}}};
    EXPECT_EQ(fitnessLine(fitness),
        "Surface judged · 1 facet · 2 shells · 18 open edges at (0.15, 0.47, −0.07) · "
        "1 non-manifold edge at (0.00, 0.00, 1.00) · 1 duplicated facet at (0.00, 0.00, 2.00) · "
        "1 edge between facets of opposite orientation at (0.00, 0.00, 3.00) · "
        "1 degenerate facet at (0.00, 0.00, 4.00) · 12 345 slivers at (0.00, 0.00, 5.00) · "
        "1 self-intersection at (0.00, 0.00, 6.00) · "
        "1 pair of overlapping facets at (0.00, 0.00, 7.00) · "
        "1 shell inside out at (0.00, 0.00, 8.00) · 1 inner shell at (0.00, 0.00, 9.00) · "
        "1 pair of shells that cut each other at (0.00, 0.00, 10.00) · "
        "not fit for meshing as it is");
    EXPECT_EQ(worstDefectSentence(fitness),
        "The surface has 18 open edges, the first at (0.15, 0.47, −0.07) m.");
}

TEST(FitnessTexts, inThePlural) {
    SurfaceFitness fitness = fit();
    fitness.nonManifoldEdges.count = 2;
    fitness.duplicatedFacets.count = 2;
    fitness.inconsistentEdges.count = 2;
    fitness.degenerateFacets.count = 2;
    fitness.selfIntersections.count = 1234;
    fitness.overlaps.count = 2;
    fitness.insideOutShells.count = 2;
    fitness.innerShells.count = 2;
    fitness.cuttingShells.count = 2;
    EXPECT_EQ(fitnessLine(fitness),
        "Surface judged · 5 120 facets · 1 shell · closed · 2 non-manifold edges · "
        "2 duplicated facets · 2 edges between facets of opposite orientation · "
        "2 degenerate facets · 1 234 self-intersections · 2 pairs of overlapping facets · "
        "2 shells inside out · 2 inner shells · 2 pairs of shells that cut each other · "
        "not fit for meshing as it is");
    EXPECT_EQ(worstDefectSentence(fitness), "The surface has 2 non-manifold edges.");
}

TEST(FitnessTexts, theWorstDefect) {
    SurfaceFitness fitness = fit();
    fitness.degenerateFacets = {3, {{1, 1, 1}}};
    EXPECT_EQ(worstDefectSentence(fitness),
        "The surface has 3 degenerate facets, the first at (1.00, 1.00, 1.00) m.");
    fitness.selfIntersections = {1, {{0, 0, 0}}};
    EXPECT_EQ(worstDefectSentence(fitness),
        "The surface has 1 self-intersection at (0.00, 0.00, 0.00) m.");
    fitness.cuttingShells = {2, {{0, 0, 0}}};
    EXPECT_EQ(worstDefectSentence(fitness),
        "The surface has 2 pairs of shells that cut each other, "
        "the first at (0.00, 0.00, 0.00) m.");
}

TEST(FitnessTexts, ofNoFacets) {
    EXPECT_EQ(
        fitnessLine(SurfaceFitness()), "Surface judged · 0 facets · not fit for meshing as it is");
    EXPECT_EQ(worstDefectSentence(SurfaceFitness()), "The surface has no facets.");
}

TEST(FitnessTexts, ofASearchThatWasCutShort) {
    SurfaceFitness fitness = fit();
    fitness.isCutShort = true;
    EXPECT_EQ(fitnessLine(fitness),
        "Surface judged · 5 120 facets · 1 shell · closed · too entangled "
        "to be searched whole · not fit for meshing as it is");
    EXPECT_EQ(worstDefectSentence(fitness), "The surface is too entangled to be searched whole.");
    fitness.selfIntersections = {100'000, {}};
    EXPECT_EQ(worstDefectSentence(fitness), "The surface has at least 100 000 self-intersections.");
}

TEST(FitnessTexts, digitsFollowTheBodysSize) {
    const auto at = [](float extent, const Vec3& place) {
        SurfaceFitness fitness = fit();
        fitness.extent = extent;
        fitness.openEdges = {1, {place}};
        return worstDefectSentence(fitness);
    };
    EXPECT_EQ(at(2000, {1234.56F, -0.4F, 7}), "The surface has 1 open edge at (1235, 0, 7) m.");
    EXPECT_EQ(at(12, {1.25F, -3.1F, 0}), "The surface has 1 open edge at (1.2, −3.1, 0.0) m.");
    EXPECT_EQ(at(0.3F, {0.1234F, 0, 0}), "The surface has 1 open edge at (0.123, 0.000, 0.000) m.");
    EXPECT_EQ(
        at(1e-9F, {1.5e-10F, -1e-9F, 0}), "The surface has 1 open edge at (1.5e-10, −1e-09, 0) m.");
    EXPECT_EQ(at(0, {5, 5, 5}), "The surface has 1 open edge at (5, 5, 5) m.");
}

} // namespace ostrella::test
