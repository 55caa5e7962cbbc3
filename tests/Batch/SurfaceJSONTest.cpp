#include "Batch/SurfaceJSON.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

BatchReport reportOf(SurfaceFacts facts) {
    BatchReport report;
    report.surface = std::move(facts);
    return report;
}

TEST(SurfaceJSON, IsNullWhereNoModelWasToBeMeshed) {
    EXPECT_EQ(surfaceOf(BatchReport()), nullptr);
}

TEST(SurfaceJSON, HasNullsForWhatIsNotKnown) {
    EXPECT_EQ(surfaceOf(reportOf({})),
        Json::parse(R"({"choice": "auto", "road": null, "fitness": null, "preparation": null,
            "meshQuality": null, "file": null})"));
}

TEST(SurfaceJSON, TellsTheFitnessWithCountsAndPlaces) {
    SurfaceFitness fitness;
    fitness.facets = 11;
    fitness.shells = 1;
    fitness.openEdges = {3, {Vec3(0, 1, 0.5F), Vec3(-2, 0, 0.25F)}};
    fitness.slivers = {1, {Vec3(4, 5, 6)}};
    fitness.isCutShort = true;
    fitness.extent = 2;
    fitness.shortestEdge = 0.5F;
    fitness.medianEdge = 1;
    fitness.longestEdge = 1.5F;
    fitness.volume = -0.75;
    fitness.area = 5.5;
    BatchReport report = reportOf({fitness, MeshedSurface(), std::nullopt});
    report.options.surface = SurfaceChoice::asIs;
    EXPECT_EQ(surfaceOf(report), Json::parse(R"({"choice": "as-is", "road": "as-is",
        "fitness": {"fit": false, "facets": 11, "shells": 1,
            "openEdges": {"count": 3, "places": [[0.0, 1.0, 0.5], [-2.0, 0.0, 0.25]]},
            "nonManifoldEdges": {"count": 0, "places": []},
            "duplicatedFacets": {"count": 0, "places": []},
            "inconsistentEdges": {"count": 0, "places": []},
            "degenerateFacets": {"count": 0, "places": []},
            "slivers": {"count": 1, "places": [[4.0, 5.0, 6.0]]},
            "selfIntersections": {"count": 0, "places": []},
            "overlaps": {"count": 0, "places": []},
            "insideOutShells": {"count": 0, "places": []},
            "innerShells": {"count": 0, "places": []},
            "cuttingShells": {"count": 0, "places": []},
            "cutShort": true, "extent_m": 2.0, "shortestEdge_m": 0.5, "medianEdge_m": 1.0, "longestEdge_m": 1.5,
            "volume_m3": -0.75, "area_m2": 5.5},
        "preparation": null, "meshQuality": null, "file": null})"));
}

TEST(SurfaceJSON, TellsWhatThePreparationDid) {
    SurfacePreparation facts;
    facts.facets = 12345;
    facts.bodies = 2;
    facts.smallBodies = 1;
    facts.deviation = 0.0625;
    facts.openingsClosed = 3;
    facts.sheetsThickened = 4;
    facts.shellsRemoved = 5;
    facts.gapWidth = 0.125;
    facts.sheetThickness = 0.25;
    facts.shortestEdge = 0.5;
    facts.medianEdge = 1;
    facts.longestEdge = 2;
    BatchReport report = reportOf({std::nullopt, MeshedSurface{TriangleMesh(), facts, 1.5},
        "/out/surface.stl",
        MeshQuality{.cells = 7, .inverted = 2, .leastGamma = 0.25, .firstPercentileGamma = 0.375}});
    report.options.surface = SurfaceChoice::prepared;
    EXPECT_EQ(surfaceOf(report), Json::parse(R"({"choice": "prepared", "road": "prepared",
        "fitness": null,
        "preparation": {"facets": 12345, "bodies": 2, "smallBodies": 1, "deviation_m": 0.0625, "openingsClosed": 3,
            "sheetsThickened": 4, "shellsRemoved": 5, "gapWidth_m": 0.125,
            "sheetThickness_m": 0.25, "shortestEdge_m": 0.5, "medianEdge_m": 1.0,
            "longestEdge_m": 2.0},
        "meshQuality": {"leastGamma": 0.25, "firstPercentileGamma": 0.375, "invertedCells": 2},
        "file": "/out/surface.stl"})"));
}

} // namespace
} // namespace ostrella
