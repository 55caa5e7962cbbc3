// The roads from a model to its mesh: as it is, prepared, or one after the other.

#include "Solver/Run/SurfaceMeshing.h"
#include "RunFixture.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelFile.h"

#include <algorithm>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* judgedCube =
    "Surface judged · 12 facets · 1 shell · closed · fit for meshing";

/// A script that fails the first time it is started in a run, and then goes on.
std::string failingFirst(const std::string& failure) {
    return "if [ ! -e failed ]; then\ntouch failed\n" + failure + "fi\n";
}

/// Lines of a mesher's script: a mesh of one cell, three right angles around a height, m. The gamma
/// of a flat one is 2.12 times its height.
std::string cellOfHeight(const std::string& height) {
    return "printf 'NDIME= 3\\nNELEM= 1\\n10 0 1 2 3 0\\nNPOIN= 4\\n"
           "0 0 0\\n1 0 0\\n0 1 0\\n0 0 " +
           height + "\\n' > mesh.su2\n";
}

/// A script that does one thing the first time it is started in a run, and another one later.
std::string once(const std::string& first, const std::string& later) {
    return "if [ ! -e tried ]; then\ntouch tried\n" + first + "else\n" + later + "fi\n";
}

class SurfaceRoads : public RunTest {
protected:
    SurfaceRoads() {
        placeCube();
        writeFile(
            package_.resource("su2/templates/stl_external_aero.geo"), "{{SURFACE_ROAD}} {{XMIN}}");
    }

    /// Runs the driver itself up to the written case, with a choice of its own.
    SolverRunner::PreparedCase drive(SurfaceChoice choice, const TriangleMesh& mesh = cube()) {
        SolverRunner::PreparedCase prepared;
        RunEnvironment own = environment();
        own.surface = choice;
        onWorker([&] {
            prepared = SolverRunner(own, {}).prepareSTL({"cube.stl", mesh}, SimulationInputs(),
                app_->logStore,
                [this](const SolverRunner::Event& event) { events_.push_back(event); });
        });
        return prepared;
    }
    std::string failure(SurfaceChoice choice, const TriangleMesh& mesh = cube()) {
        try {
            drive(choice, mesh);
        } catch (const RunStageError& error) {
            EXPECT_EQ(error.stage(), RunStage::mesh);
            return error.what();
        }
        return "no failure";
    }
    template <class Event>
    std::vector<Event> events() const {
        std::vector<Event> found;
        for (const auto& event : events_) {
            if (const auto* one = std::get_if<Event>(&event)) {
                found.push_back(*one);
            }
        }
        return found;
    }
    std::size_t meshings() const { return package_.starts("gmsh").size(); }
    std::string script() { return readFile(runDirectory() / "mesh.geo"); }
    TriangleMesh given() { return loadModelFile(runDirectory() / "input.stl"); }
    /// The lines from the first that begins with `beginning` on.
    std::vector<TextLine> linesFrom(const std::string& beginning) const {
        const auto all = lines();
        const auto first = std::find_if(all.begin(), all.end(),
            [&](const TextLine& line) { return line.first.starts_with(beginning); });
        return {first, all.end()};
    }

    std::vector<SolverRunner::Event> events_;
};

/// Facets without any area, along the x axis.
TriangleMesh needle() {
    const SharedArray<Vec3> corners{Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(2, 0, 0)};
    return {corners, corners};
}

TEST_F(SurfaceRoads, aSoundModelIsGivenAsItIs) {
    drive(SurfaceChoice::automatic);
    const auto from = linesFrom("Geometry turned");
    EXPECT_EQ(from[1], TextLine(judgedCube, Level::info));
    EXPECT_THAT(from[2].first, StartsWith("Using gmsh: "));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface prepared"))));
    EXPECT_EQ(given().facetCount(), 12U);
    EXPECT_EQ(script(), "0 -5.000000") << "coarse facets of a closed body are made anew";
    EXPECT_EQ(meshings(), 1U);
    const auto surfaces = events<MeshedSurface>();
    ASSERT_EQ(surfaces.size(), 1U);
    EXPECT_EQ(surfaces[0], (MeshedSurface{cube(), std::nullopt, 0}));
    ASSERT_EQ(events<SurfaceFitness>().size(), 1U);
    EXPECT_TRUE(events<SurfaceFitness>()[0].isFit());
}

TEST_F(SurfaceRoads, anOpenModelIsPreparedFirst) {
    drive(SurfaceChoice::automatic, cube(1));
    const auto from = linesFrom("Surface judged");
    EXPECT_EQ(from[0].second, Level::warn);
    EXPECT_THAT(from[1].first, StartsWith("Surface prepared for meshing · "));
    EXPECT_EQ(from[1].second, Level::warn);
    EXPECT_THAT(from[2].first, StartsWith("Using gmsh: "));
    EXPECT_THAT(texts(), Contains("Body extent (solver frame, Z up): 1.00 × 1.00 × 1.00 m"));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Open surface"))));
    EXPECT_EQ(meshings(), 1U);

    const auto surfaces = events<MeshedSurface>();
    ASSERT_EQ(surfaces.size(), 1U);
    ASSERT_TRUE(surfaces[0].preparation);
    EXPECT_EQ(surfaces[0].preparation->facets, surfaces[0].mesh.facetCount());
    // The mesher has the same in its own frame, keeps its facets, and has the box of the model.
    EXPECT_EQ(given().facetCount(), surfaces[0].mesh.facetCount());
    EXPECT_EQ(given().positions()[0],
        Vec3(surfaces[0].mesh.positions()[0].x, -surfaces[0].mesh.positions()[0].z,
            surfaces[0].mesh.positions()[0].y));
    EXPECT_THAT(script(), testing::MatchesRegex("0\\.[0-9]+ -5\\.000000"));
    EXPECT_NEAR(std::stod(script()), surfaces[0].preparation->medianEdge, 1e-4);
}

TEST_F(SurfaceRoads, theReferenceAreaStaysTheModelsAndIsDoubted) {
    // The facet that lacks is half of the side at x = 0, so up and down are as before.
    drive(SurfaceChoice::automatic, cube(1));
    const auto from = linesFrom("Reference area");
    EXPECT_EQ(from[0], TextLine("Reference area (planform, top view): 1.0000 m²", Level::info));
    EXPECT_THAT(from[1].first, StartsWith("Reference area of a model that is not closed · 1.0000 "
                                          "m² face up and 1.0000 m² down, the prepared surface "
                                          "has "));
    EXPECT_EQ(from[1].second, Level::warn);
    EXPECT_THAT(from[2].first, StartsWith("V="));
}

TEST_F(SurfaceRoads, placesAreNamedInTheFrameOfTheApplication) {
    drive(SurfaceChoice::asIs, cube(1));
    EXPECT_THAT(
        linesFrom("Surface judged")[0].first, HasSubstr(" · 3 open edges at (0.00, 0.50, 1.00) · "))
        << "the middle of an upright edge of the facet that lacks, with y up";
}

TEST_F(SurfaceRoads, theFitnessIsToldInTheFrameOfTheApplication) {
    drive(SurfaceChoice::asIs, cube(1));
    const auto fitness = events<SurfaceFitness>();
    ASSERT_EQ(fitness.size(), 1U);
    EXPECT_FALSE(fitness[0].isFit());
    EXPECT_EQ(fitness[0].openEdges.count, 3);
    ASSERT_EQ(fitness[0].openEdges.places.size(), 3U);
    for (const Vec3& place : fitness[0].openEdges.places) {
        // On the facet that lacks: (0, 1, 0), (0, 0, 1), (0, 1, 1).
        EXPECT_EQ(place.x, 0.0F);
        EXPECT_GE(place.y + place.z, 1.0F);
        EXPECT_LE(std::max(place.y, place.z), 1.0F);
    }
}

TEST_F(SurfaceRoads, whatTheMesherFailsOnIsPreparedAfterAll) {
    package_.setMesher(failingFirst("echo 'Error   : foo'\nexit 1\n") + Script::goodMesher);
    EXPECT_EQ(drive(SurfaceChoice::automatic).meshCells, 1234);
    const auto from = linesFrom("Error   : foo");
    EXPECT_EQ(from[1], TextLine("No mesh of the surface as it is · gmsh exited with code 1 and "
                                "produced no usable mesh (Error   : foo)",
                           Level::warn));
    EXPECT_THAT(from[2].first, StartsWith("Surface prepared for meshing · "));
    EXPECT_EQ(from[2].second, Level::info);
    EXPECT_EQ(from[3], TextLine("gmsh · external aero volume mesh", Level::info));
    EXPECT_EQ(from[4], TextLine("Info    : Meshing 3D...", Level::su2));
    EXPECT_EQ(from[5], TextLine("Mesh built · 1 234 cells · 3D · 0.0 s", Level::ok));
    EXPECT_EQ(meshings(), 2U);
    const auto surfaces = events<MeshedSurface>();
    ASSERT_EQ(surfaces.size(), 2U);
    EXPECT_FALSE(surfaces[0].preparation);
    EXPECT_TRUE(surfaces[1].preparation);
}

TEST_F(SurfaceRoads, whatTheMesherHangsOnIsPreparedAfterAll) {
    package_.setMesher(failingFirst(Script::hang) + Script::goodMesher);
    app_->simulation.run();
    waitForLine("ready");
    EXPECT_THAT(timers_.pending(), ElementsAre(SurfaceMeshing::longestAttempt));
    timers_.advance(SurfaceMeshing::longestAttempt - 0.1);
    EXPECT_TRUE(processExists(package_.starts("gmsh").front()));
    timers_.advance(0.2);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_THAT(lines(), Contains(TextLine("No mesh of the surface as it is · gmsh produced no "
                                           "mesh within 25 s and was stopped",
                             Level::warn)));
    EXPECT_EQ(meshings(), 2U);
    expectNoChildLeft();
}

TEST_F(SurfaceRoads, theLastAttemptIsNotWaitedOutForEverEither) {
    package_.setMesher("echo 'Error   : first'\nif [ -e tried ]; then " +
                       std::string(Script::hang) + "\nfi\ntouch tried\nexit 1\n");
    app_->simulation.run();
    waitForLine("ready");
    EXPECT_THAT(timers_.pending(), ElementsAre(SurfaceMeshing::longestLastAttempt));
    timers_.advance(SurfaceMeshing::longestLastAttempt + 0.1);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(
        phase().message, "gmsh exited with code 1 and produced no usable mesh (Error   : first)");
    EXPECT_THAT(lines(), Contains(TextLine("No mesh of the prepared surface · gmsh produced no "
                                           "mesh within 180 s and was stopped",
                             Level::warn)));
    expectNoChildLeft();
}

TEST_F(SurfaceRoads, theFirstFailureCountsIfBothRoadsFail) {
    package_.setMesher(
        failingFirst("echo 'Error   : first'\nexit 1\n") + "echo 'Error   : second'\nexit 2\n");
    EXPECT_EQ(failure(SurfaceChoice::automatic),
        "gmsh exited with code 1 and produced no usable mesh (Error   : first)");
    EXPECT_EQ(lines().back(), TextLine("No mesh of the prepared surface · gmsh exited with code 2 "
                                       "and produced no usable mesh (Error   : second)",
                                  Level::warn));
    EXPECT_EQ(meshings(), 2U);
}

TEST_F(SurfaceRoads, theMeshOfAFailedAttemptIsNotTakenForTheNext) {
    package_.setMesher(failingFirst("printf 'NDIME= 3\\nNELEM= 0\\n' > mesh.su2\nexit 0\n"));
    EXPECT_EQ(failure(SurfaceChoice::automatic),
        "gmsh produced a mesh with no volume cells; the surface is probably not closed");
    EXPECT_EQ(lines().back().first, "No mesh of the prepared surface · gmsh exited with code 0 and "
                                    "produced no usable mesh");
    EXPECT_FALSE(fs::exists(runDirectory() / "mesh.su2"));
}

TEST_F(SurfaceRoads, aFailureThatIsNotTheSurfacesIsTheEnd) {
    fs::remove(package_.resource("su2/templates/stl_external_aero.geo"));
    EXPECT_EQ(failure(SurfaceChoice::automatic), "STL meshing template missing from app bundle.");
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface prepared"))));
}

TEST_F(SurfaceRoads, withoutAMesherNothingIsJudgedOrPrepared) {
    fs::remove(package_.tool("gmsh"));
    EXPECT_THAT(failure(SurfaceChoice::automatic, cube(1)), StartsWith("gmsh is missing from "));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface "))));
}

TEST_F(SurfaceRoads, aFailureOnThePreparedSurfaceOfAnUnfitModelIsTheRuns) {
    package_.setMesher("echo 'Error   : foo'\nexit 1\n");
    EXPECT_EQ(failure(SurfaceChoice::automatic, cube(1)),
        "gmsh exited with code 1 and produced no usable mesh (Error   : foo)");
    EXPECT_EQ(meshings(), 1U);
    EXPECT_EQ(lines().back(),
        TextLine("The surface has 3 open edges, the first at (0.00, 0.50, 1.00) m.", Level::warn));
}

TEST_F(SurfaceRoads, aModelWithoutAnyAreaEndsWithASentenceAboutThat) {
    EXPECT_THAT(
        failure(SurfaceChoice::automatic, needle()), StartsWith("The model has no surface"));
    EXPECT_EQ(meshings(), 0U);
    EXPECT_TRUE(events<MeshedSurface>().empty());
}

class PoorCells : public SurfaceRoads {
protected:
    /// What the surfaces that were meshed one after the other are: whether each was prepared.
    std::vector<bool> prepared() const {
        std::vector<bool> result;
        for (const MeshedSurface& surface : events<MeshedSurface>()) {
            result.push_back(surface.preparation.has_value());
        }
        return result;
    }
    double lastGamma() const { return events<MeshQuality>().back().leastGamma; }
    std::string mesh() { return readFile(runDirectory() / "mesh.su2"); }
    /// Of the model as it is, with the files of its attempt, after a second one.
    void expectTheFirstKept() {
        EXPECT_EQ(meshings(), 2U);
        EXPECT_THAT(mesh(), EndsWith("0 0 0.004\n"));
        EXPECT_EQ(given().facetCount(), 12U);
        EXPECT_EQ(script(), "0 -5.000000");
        EXPECT_THAT(prepared(), ElementsAre(false, true, false));
        EXPECT_NEAR(lastGamma(), 0.00845, 1e-5);
        for (const auto& entry : fs::directory_iterator(runDirectory())) {
            EXPECT_NE(entry.path().extension(), ".aside") << entry.path();
        }
    }

    const std::string flatLine = "Cells as flat as 0.0085 around the surface as it is · a solver "
                                 "may diverge there, so it is prepared";
};

TEST_F(PoorCells, areReasonEnoughToPrepareTheSurface) {
    package_.setMesher(once(cellOfHeight("0.004"), cellOfHeight("0.5")));
    EXPECT_EQ(drive(SurfaceChoice::automatic).meshCells, 1);
    const auto from = linesFrom("Mesh built");
    EXPECT_EQ(from[1], TextLine(flatLine, Level::warn));
    EXPECT_THAT(from[2].first, StartsWith("Surface prepared for meshing · "));
    EXPECT_EQ(from[3], TextLine("gmsh · external aero volume mesh", Level::info));
    EXPECT_EQ(from[4], TextLine("Mesh built · 1 cells · 3D · 0.0 s", Level::ok));
    EXPECT_THAT(from[5].first, StartsWith("Reference area"));
    EXPECT_EQ(meshings(), 2U);
    EXPECT_THAT(prepared(), ElementsAre(false, true));
    EXPECT_GT(lastGamma(), 0.5);
    EXPECT_GT(given().facetCount(), 12U);
    EXPECT_THAT(mesh(), EndsWith("0 0 0.5\n"));
    EXPECT_FALSE(fs::exists(runDirectory() / "mesh.su2.aside"));
}

TEST_F(PoorCells, ofBothMeshesLeaveTheFirstIfTheSecondIsWorse) {
    package_.setMesher(once(cellOfHeight("0.004"), cellOfHeight("0.001")));
    EXPECT_EQ(drive(SurfaceChoice::automatic).meshCells, 1);
    EXPECT_THAT(lines(), Contains(TextLine(flatLine, Level::warn)));
    EXPECT_THAT(lines(), Contains(TextLine("Mesh of the surface as it is kept · cells as flat as "
                                           "0.0021 around the prepared one",
                             Level::info)));
    expectTheFirstKept();
}

TEST_F(PoorCells, areBetterThanNoMeshOfThePreparedSurface) {
    package_.setMesher(once(cellOfHeight("0.004"), "echo 'Error   : foo'\nexit 1\n"));
    EXPECT_EQ(drive(SurfaceChoice::automatic).meshCells, 1);
    const auto from = linesFrom("No mesh of");
    EXPECT_EQ(from[0], TextLine("No mesh of the prepared surface · gmsh exited with code 1 and "
                                "produced no usable mesh (Error   : foo)",
                           Level::warn));
    EXPECT_EQ(from[1], TextLine("Mesh of the surface as it is kept", Level::info));
    EXPECT_THAT(from[2].first, StartsWith("Reference area"));
    expectTheFirstKept();
}

TEST_F(PoorCells, areBetterThanAMeshThatCannotBeMeasured) {
    package_.setMesher(once(cellOfHeight("0.004"), Script::mesh));
    EXPECT_EQ(drive(SurfaceChoice::automatic).meshCells, 1);
    expectTheFirstKept();
}

TEST_F(PoorCells, areNotWaitedOutForEver) {
    package_.setMesher(once(cellOfHeight("0.004"), Script::hang));
    app_->simulation.run();
    waitForLine("ready");
    EXPECT_THAT(timers_.pending(), ElementsAre(SurfaceMeshing::longestAttempt));
    timers_.advance(SurfaceMeshing::longestAttempt);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_FALSE(app_->simulation.meshedSurface()->preparation);
    ASSERT_TRUE(app_->simulation.meshQuality());
    EXPECT_NEAR(app_->simulation.meshQuality()->leastGamma, 0.00845, 1e-5);
    expectNoChildLeft();
}

TEST_F(PoorCells, turnedInsideOutAreTheWorst) {
    package_.setMesher(once(cellOfHeight("-0.5"), cellOfHeight("0.004")));
    drive(SurfaceChoice::automatic);
    EXPECT_THAT(lines(), Contains(TextLine("1 cell inside out around the surface as it is · a "
                                           "solver may diverge there, so it is prepared",
                             Level::warn)));
    EXPECT_THAT(prepared(), ElementsAre(false, true));
    EXPECT_THAT(mesh(), EndsWith("0 0 0.004\n"));
}

TEST_F(PoorCells, areNotWhatASolverCanLiveWith) {
    package_.setMesher(cellOfHeight("0.01"));
    drive(SurfaceChoice::automatic);
    EXPECT_EQ(meshings(), 1U);
    EXPECT_NEAR(lastGamma(), 0.021, 1e-3);
    const auto from = linesFrom("Mesh built");
    EXPECT_THAT(from[1].first, StartsWith("Reference area"));
}

TEST_F(PoorCells, areTakenAsTheyComeIfTheChoiceSaysSo) {
    package_.setMesher(cellOfHeight("0.004"));
    drive(SurfaceChoice::asIs);
    EXPECT_EQ(meshings(), 1U);
    EXPECT_NEAR(lastGamma(), 0.00845, 1e-5);
    drive(SurfaceChoice::prepared);
    EXPECT_EQ(meshings(), 2U);
    EXPECT_THAT(texts(), Not(Contains(HasSubstr("Cells as flat"))));
}

using AsIs = SurfaceRoads;

TEST_F(AsIs, anOpenModelIsMeshedAndWarnedOf) {
    drive(SurfaceChoice::asIs, cube(1));
    EXPECT_THAT(linesFrom("Surface judged")[1].first, StartsWith("Using gmsh: "));
    EXPECT_EQ(given().facetCount(), 11U);
    const auto from = linesFrom("Mesh built");
    EXPECT_EQ(from[1],
        TextLine("Open surface · 3 open edges · the inside may be meshed too, so the figures are "
                 "not to be trusted. Close the surface and run again.",
            Level::warn));
    EXPECT_THAT(from[2].first, StartsWith("Reference area (planform"));
}

TEST_F(AsIs, aFailureIsTheEnd) {
    package_.setMesher("exit 1\n");
    EXPECT_EQ(failure(SurfaceChoice::asIs), "gmsh exited with code 1 and produced no usable mesh");
    EXPECT_EQ(meshings(), 1U);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("No mesh of"))));
}

using Prepared = SurfaceRoads;

TEST_F(Prepared, aSoundModelIsPreparedToo) {
    drive(SurfaceChoice::prepared);
    const auto from = linesFrom("Surface judged");
    EXPECT_EQ(from[0], TextLine(judgedCube, Level::info));
    EXPECT_THAT(from[1].first, StartsWith("Surface prepared for meshing · "));
    EXPECT_EQ(from[1].second, Level::info);
    EXPECT_THAT(from[2].first, StartsWith("Using gmsh: "));
    EXPECT_GT(given().facetCount(), 12U);
    EXPECT_EQ(meshings(), 1U);
}

TEST_F(Prepared, whatCannotBePreparedFailsWithTheReason) {
    EXPECT_THAT(failure(SurfaceChoice::prepared, needle()), StartsWith("The model has no surface"));
    EXPECT_EQ(meshings(), 0U);
}

} // namespace
} // namespace ostrella::test
