#include "Solver/Tools/SurfaceRoad.h"

#include "Shapes.h"
#include "TestBodies.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace ostrella {

namespace {

std::vector<Vec3> soupOf(const generators::Body& body) {
    std::vector<Vec3> positions;
    for (const auto& triangle : body.triangles) {
        for (const auto corner : triangle) {
            positions.emplace_back(body.vertices[corner]);
        }
    }
    return positions;
}

std::vector<Vec3> corpusBody(std::string_view name) {
    return soupOf(generators::testBody(name)->make());
}

SurfaceRoad::Kind roadOf(std::string_view name, float lcMin, float lcMax) {
    return surfaceRoad(corpusBody(name), lcMin, lcMax).kind;
}

constexpr auto keep = SurfaceRoad::Kind::keep;
constexpr auto remesh = SurfaceRoad::Kind::remesh;
constexpr auto refuse = SurfaceRoad::Kind::refuse;

TEST(SurfaceRoad, FacetsOfAboutTheWantedSizeAreKept) {
    EXPECT_EQ(roadOf("sphere", 0.1F, 2.0F), keep);
    EXPECT_EQ(roadOf("twoSpheres", 0.15F, 3.0F), keep);
    EXPECT_EQ(roadOf("farSphere", 0.1F, 2.0F), keep);
}

TEST(SurfaceRoad, FacetsFarTooCoarseOrFarTooFineAreMadeAnew) {
    EXPECT_EQ(roadOf("cube12", 0.05F, 1.0F), remesh);
    EXPECT_EQ(roadOf("slab", 0.2F, 4.0F), remesh);
    EXPECT_EQ(roadOf("fineSphere", 0.1F, 2.0F), remesh);
}

TEST(SurfaceRoad, NeedlesAreMadeAnewOnAClosedBodyAndRefusedOnAnOpenOne) {
    std::vector<Vec3> body = corpusBody("slivers");
    EXPECT_EQ(surfaceRoad(body, 0.05F, 1.0F).kind, remesh);
    body.resize(body.size() - 3);
    EXPECT_EQ(surfaceRoad(body, 0.05F, 1.0F).kind, refuse);
}

TEST(SurfaceRoad, BodiesThatTheClassificationCouldLoopOnAreNeverRemeshed) {
    // Sizes for which a sound sphere would be remeshed.
    for (const char* name : {"duplicates", "flipped", "holes"}) {
        EXPECT_EQ(roadOf(name, 1.0F, 2.0F), keep) << name;
        EXPECT_EQ(roadOf(name, 0.01F, 2.0F), keep) << name;
    }
    EXPECT_EQ(roadOf("nonManifold", 0.1F, 2.0F), keep);
    EXPECT_EQ(roadOf("insideOut", 1.0F, 2.0F), remesh);
}

TEST(SurfaceRoad, TheLesserSizeCountsWhereTheLimitsCross) {
    // A cube of 0.8 mm: lcMin is 1 mm, lcMax 0.8 mm, the median edge 0.8 mm, the longest 1.13 mm.
    EXPECT_EQ(roadOf("underMillimetreCube", 0.001F, 0.0008F), keep);
    EXPECT_EQ(roadOf("underMillimetreCube", 0.001F, 0.0001F), remesh);
}

TEST(SurfaceRoad, ACollapsedFacetRulesRemeshingOut) {
    std::vector<Vec3> body = corpusBody("cube12");
    body.insert(body.end(), {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}});
    EXPECT_EQ(surfaceCensus(body).degenerate, 1U);
    EXPECT_EQ(surfaceRoad(body, 0.05F, 1.0F).kind, keep);
}

TEST(SurfaceCensus, MeasuresACubeOfTwelveFacets) {
    const SurfaceCensus census = surfaceCensus(corpusBody("cube12"));
    EXPECT_EQ(census.facets, 12U);
    EXPECT_TRUE(census.closed);
    EXPECT_EQ(census.needles, 0U);
    EXPECT_FLOAT_EQ(census.medianEdge, 1.0F);
    EXPECT_FLOAT_EQ(census.longestEdge, 1.41421356F);
}

TEST(SurfaceCensus, AnEmptySurfaceIsNothing) {
    const SurfaceCensus census = surfaceCensus({});
    EXPECT_EQ(census.facets, 0U);
    EXPECT_FALSE(census.closed);
    EXPECT_EQ(surfaceRoad({}, 0.05F, 1.0F).kind, keep);
}

TEST(SurfaceRoad, TellsTheScriptTheEdgeOrANumberThatIsNoLength) {
    EXPECT_EQ((SurfaceRoad{keep, 0.25F}.scriptValue()), "0.25");
    EXPECT_EQ((SurfaceRoad{keep, 0.000078125F}.scriptValue()), "7.8125e-05");
    EXPECT_EQ((SurfaceRoad{remesh, 0.25F}.scriptValue()), "0");
    EXPECT_EQ((SurfaceRoad{refuse, 0.25F}.scriptValue()), "-1");
    EXPECT_EQ((SurfaceRoad{keep, 0.0F}.scriptValue()), "1e-06");
}

} // namespace

} // namespace ostrella
