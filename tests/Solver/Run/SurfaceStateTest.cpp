// What the controller keeps of a model's surface, how a run is stopped on its way to the mesher,
// and how large the facets of a prepared surface are.

#include "RunFixture.h"
#include "Solver/Run/SurfaceMeshing.h"

#include <chrono>
#include <cmath>
#include <numbers>

namespace ostrella::test {
namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;

class SurfaceState : public RunTest {
protected:
    SurfaceState() { placeCube(); }
};

TEST_F(SurfaceState, isKnownAfterARun) {
    app_->parameters.setMesh(cube(1));
    EXPECT_FALSE(app_->simulation.surfaceFitness());
    int fitnessChanges = 0;
    int surfaceChanges = 0;
    QObject::connect(
        &app_->simulation, &SimulationController::surfaceFitnessChanged, [&] { ++fitnessChanges; });
    QObject::connect(
        &app_->simulation, &SimulationController::meshedSurfaceChanged, [&] { ++surfaceChanges; });
    runToEnd();
    ASSERT_TRUE(app_->simulation.surfaceFitness());
    EXPECT_EQ(app_->simulation.surfaceFitness()->openEdges.count, 3);
    ASSERT_TRUE(app_->simulation.meshedSurface());
    EXPECT_TRUE(app_->simulation.meshedSurface()->preparation);
    EXPECT_EQ(fitnessChanges, 2) << "cleared at the start, then set";
    EXPECT_EQ(surfaceChanges, 2);
}

TEST_F(SurfaceState, staysAfterAFailedRun) {
    package_.setMesher("exit 1\n");
    runToEnd();
    EXPECT_EQ(phase().kind, RunPhase::Kind::failed);
    EXPECT_TRUE(app_->simulation.surfaceFitness());
}

TEST_F(SurfaceState, goesWithTheNextRun) {
    runToEnd();
    app_->simulation.runDemo();
    EXPECT_FALSE(app_->simulation.surfaceFitness());
    EXPECT_FALSE(app_->simulation.meshedSurface());
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(app_->simulation.surfaceFitness()) << "the built-in case has none";
}

TEST_F(SurfaceState, goesWithAnotherModelButNotDuringARun) {
    package_.setSolver(Script::hang);
    runUntilReady();
    app_->simulation.clearOutcomeForNewGeometry();
    EXPECT_TRUE(app_->simulation.surfaceFitness());
    cancelToEnd();
    EXPECT_TRUE(app_->simulation.meshedSurface());
    app_->simulation.clearOutcomeForNewGeometry();
    EXPECT_FALSE(app_->simulation.surfaceFitness());
    EXPECT_FALSE(app_->simulation.meshedSurface());
}

TEST_F(SurfaceState, isThatOfThePresentRunOnly) {
    const auto id = Probe::pretendRun(app_->simulation);
    Probe::apply(app_->simulation, SurfaceFitness(), id - 1);
    Probe::apply(app_->simulation, MeshedSurface(), id - 1);
    Probe::apply(app_->simulation, MeshQuality(), id - 1);
    EXPECT_FALSE(app_->simulation.surfaceFitness());
    EXPECT_FALSE(app_->simulation.meshedSurface());
    EXPECT_FALSE(app_->simulation.meshQuality());
    Probe::apply(app_->simulation, SurfaceFitness(), id);
    Probe::apply(app_->simulation, MeshedSurface(), id);
    Probe::apply(app_->simulation, MeshQuality(), id);
    EXPECT_TRUE(app_->simulation.surfaceFitness());
    EXPECT_TRUE(app_->simulation.meshedSurface());
    EXPECT_TRUE(app_->simulation.meshQuality());
    Probe::apply(app_->simulation, MeshedSurface(), id);
    EXPECT_FALSE(app_->simulation.meshQuality()) << "that was another surface's";
    Probe::complete(app_->simulation, id, SimulationResult());
}

/// A sphere of radius 1 m of some 320 000 facets with a wave on it, so that nothing about it is
/// simple; without its first facet if it is to be open.
TriangleMesh wavySphere(bool open) {
    constexpr int rings = 400;
    const auto point = [](int ring, int segment) {
        const double polar = std::numbers::pi * ring / rings;
        const double around = 2 * std::numbers::pi * (segment % rings) / rings;
        const double radius = 1 + 0.05 * std::sin(6 * around) * std::sin(5 * polar);
        const double flat = ring == 0 || ring == rings ? 0 : std::sin(polar);
        return Vec3(static_cast<float>(radius * flat * std::cos(around)),
            static_cast<float>(radius * flat * std::sin(around)),
            static_cast<float>(ring == 0       ? 1
                               : ring == rings ? -1
                                               : radius * std::cos(polar)));
    };
    std::vector<Vec3> corners;
    for (int i = 0; i < rings; ++i) {
        for (int j = 0; j < rings; ++j) {
            if (i > 0) {
                corners.insert(corners.end(), {point(i, j), point(i + 1, j), point(i, j + 1)});
            }
            if (i + 1 < rings) {
                corners.insert(
                    corners.end(), {point(i, j + 1), point(i + 1, j), point(i + 1, j + 1)});
            }
        }
    }
    if (open) {
        corners.resize(corners.size() - 3);
    }
    std::vector<Vec3> normals(corners.size(), Vec3(0, 0, 1));
    return {std::move(corners), std::move(normals)};
}

class SurfaceCancel : public RunTest {
protected:
    /// Runs `mesh`, and cancels the run when a line begins with `moment`; the seconds from there to
    /// the end.
    double cancelledAt(const TriangleMesh& mesh, const std::string& moment) {
        app_->parameters.setSTLURL(directory_.path() / "sphere.stl");
        app_->parameters.setMesh(mesh);
        std::chrono::steady_clock::time_point asked;
        QObject::connect(&app_->logStore, &LogStore::linesChanged, [this, moment, &asked] {
            if (app_->logStore.lines().back().text.starts_with(moment)) {
                asked = std::chrono::steady_clock::now();
                app_->simulation.cancel();
            }
        });
        runToEnd();
        const auto end = std::chrono::steady_clock::now();
        EXPECT_EQ(phase(), RunPhase::cancelled());
        EXPECT_NE(asked, std::chrono::steady_clock::time_point());
        return std::chrono::duration<double>(end - asked).count();
    }
};

TEST_F(SurfaceCancel, reachesTheJudging) {
    EXPECT_LT(cancelledAt(wavySphere(false), "Geometry turned"), 3);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface "))));
    EXPECT_TRUE(package_.starts("gmsh").empty());
}

TEST_F(SurfaceCancel, reachesThePreparation) {
    EXPECT_LT(cancelledAt(wavySphere(true), "Surface judged"), 3);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface prepared"))));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface not prepared"))));
    EXPECT_TRUE(package_.starts("gmsh").empty());
}

TEST_F(SurfaceCancel, reachesTheSecondAttempt) {
    package_.setMesher("if [ ! -e failed ]; then touch failed; exit 1; fi\n" + Script::hang);
    EXPECT_LT(cancelledAt(cube(), "ready"), 3);
    EXPECT_EQ(package_.starts("gmsh").size(), 2U);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("No mesh of the prepared surface"))));
    expectNoChildLeft();
    EXPECT_TRUE(timers_.pending().empty());
}

TEST_F(SurfaceCancel, reachesTheAttemptAtBetterCells) {
    package_.setMesher("if [ -e tried ]; then\n" + Script::hang +
                       "fi\ntouch tried\nprintf 'NDIME= 3\\nNELEM= 1\\n10 0 1 2 3\\nNPOIN= 4\\n"
                       "0 0 0\\n1 0 0\\n0 1 0\\n0 0 0.004\\n' > mesh.su2\n");
    EXPECT_LT(cancelledAt(cube(), "ready"), 3);
    EXPECT_EQ(package_.starts("gmsh").size(), 2U);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Mesh of the surface as it is kept"))));
    expectNoChildLeft();
    EXPECT_TRUE(timers_.pending().empty());
}

TEST_F(SurfaceCancel, ofTheFirstAttemptIsNoReasonForASecond) {
    package_.setMesher(Script::hang);
    EXPECT_LT(cancelledAt(cube(), "ready"), 3);
    EXPECT_EQ(package_.starts("gmsh").size(), 1U);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Surface prepared"))));
}

class FacetEdge : public testing::Test {
protected:
    /// For a body whose facets have edges of these lengths; 0.1 m is wanted on it.
    float edge(float median, float longest) {
        fitness_.medianEdge = median;
        fitness_.longestEdge = longest;
        return preparedFacetEdge(fitness_, field_);
    }

    const GMSHRunner::FarField field_ = GMSHRunner::farField(Vec3(0), Vec3(2, 1, 1));
    SurfaceFitness fitness_;
};

TEST_F(FacetEdge, isWhatTheMesherWantsOnTheBody) {
    EXPECT_FLOAT_EQ(preparedFacetEdge(std::nullopt, field_), 0.1F);
    EXPECT_FLOAT_EQ(edge(0.2F, 0.3F), 0.1F);
    EXPECT_FLOAT_EQ(edge(1, 2), 0.1F);
}

TEST_F(FacetEdge, followsFacetsThatAreEvenAndFiner) {
    // The median edge of a prepared surface is 1.4 times the one asked for.
    EXPECT_FLOAT_EQ(edge(0.042F, 0.4F), 0.03F);
    EXPECT_FLOAT_EQ(edge(0.07F, 0.1F), 0.05F);
    EXPECT_FLOAT_EQ(edge(0.14F, 0.3F), 0.1F);
    EXPECT_FLOAT_EQ(edge(0.025F, 0.1F), 0.025F) << "never under a quarter of what is wanted";
}

TEST_F(FacetEdge, doesNotFollowFacetsThatTheMesherWouldNotKeep) {
    EXPECT_FLOAT_EQ(edge(0.024F, 0.1F), 0.1F) << "much finer than what is wanted";
    EXPECT_FLOAT_EQ(edge(0.03F, 0.41F), 0.1F) << "of very different lengths";
    fitness_.slivers.count = 1;
    EXPECT_FLOAT_EQ(edge(0.03F, 0.1F), 0.1F);
    fitness_.slivers.count = 0;
    fitness_.degenerateFacets.count = 1;
    EXPECT_FLOAT_EQ(edge(0.03F, 0.1F), 0.1F);
}

TEST_F(FacetEdge, fitsIntoABodyUnderAMillimetre) {
    const auto small = GMSHRunner::farField(Vec3(0), Vec3(0.0005F, 0.0002F, 0.0002F));
    EXPECT_FLOAT_EQ(preparedFacetEdge(std::nullopt, small), 0.0005F);
    const auto point = GMSHRunner::farField(Vec3(0), Vec3(0));
    EXPECT_FLOAT_EQ(preparedFacetEdge(std::nullopt, point), 0.001F);
}

} // namespace
} // namespace ostrella::test
