// The run around a model, from the first line of its log to the last.

#include "RunFixture.h"
#include "Solver/Surface/SurfaceJudge.h"

namespace ostrella::test {
namespace {

using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class STLRun : public RunTest {
protected:
    STLRun() { placeCube(); }

    /// Runs the driver itself, without a controller.
    SimulationResult drive(const SolverRunner::Events& events, const TriangleMesh& mesh = cube()) {
        SimulationResult result;
        onWorker([&] {
            const SolverRunner runner(environment(), {});
            result = runner.runSTL({"cube.stl", mesh}, SimulationInputs(), app_->logStore,
                &app_->historyStore, events);
        });
        return result;
    }
    SolverRunner::Events record() {
        return [this](const SolverRunner::Event& event) { events_.push_back(event); };
    }
    std::string configuration() { return readFile(runDirectory() / "run.cfg"); }
    /// What stands beneath the solver's options.
    static std::string comment(const std::string& velocity) {
        return "% For ostrella-batch --results: --velocity " + velocity +
               " --inlet-offset 0.5 --wake-length 2 --seed-count 100\n";
    }

    std::vector<SolverRunner::Event> events_;
};

TEST_F(STLRun, logsEachStepInOrder) {
    package_.setSolver(Script::goodSolver + Script::openTriangle);
    runToEnd();
    const std::string solver = package_.tool("SU2_CFD").string();
    const std::string mesher = package_.tool("gmsh").string();
    // The cube of 0…1 lies at y −1…0 in the solver's frame.
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Using solver: " + solver, Level::info),
            TextLine("Working dir: " + runDirectory().string(), Level::info),
            TextLine("Regime: Incompressible (M < 0.3)", Level::info),
            TextLine("Geometry turned into the solver frame (app Y up → SU2 Z up)", Level::info),
            TextLine(
                "Surface judged · 12 facets · 1 shell · closed · fit for meshing", Level::info),
            TextLine("Using gmsh: " + mesher, Level::info),
            TextLine("Body extent (solver frame, Z up): 1.00 × 1.00 × 1.00 m", Level::info),
            TextLine("Far-field pads: −5.00 / +15.00 (X), ±4.00 (Y/Z) · 5.0 c upstream, 15.0 c "
                     "down",
                Level::info),
            TextLine("Far-field box: [-5.00, -5.00, -4.00] → [16.00, 4.00, 5.00]", Level::info),
            TextLine("Mesh size: lc=[0.0500, 1.0000]", Level::info),
            TextLine("gmsh · external aero volume mesh", Level::info),
            TextLine("Info    : Meshing 3D...", Level::su2),
            TextLine("Mesh built · 1 234 cells · 3D · 0.0 s", Level::ok),
            TextLine("Reference area (planform, top view): 1.0000 m²", Level::info),
            TextLine("V=50.00 m/s, α=0.00°, β=0.00°, ρ=1.225 kg/m³, ITER=200", Level::info),
            TextLine("Launching SU2_CFD…", Level::info),
            TextLine("Maximum number of iterations reached (ITER = 200).", Level::su2),
            TextLine("SU2_CFD finished in 0.0 s", Level::info),
            TextLine("Surface: 3 points, 1 primitives, Cp ∈ [-0.500, 0.500]", Level::ok),
            TextLine("Volume: 4 points parsed in 0.0 s", Level::info),
            TextLine("Generating streamlines…", Level::info),
            // The seeds stand ahead of the small volume, and no line gets anywhere.
            TextLine("Streamlines: 100 seeds → 0 segments in 0.00 s, |V| ∈ [50.00, 50.00] m/s",
                Level::ok),
            TextLine("Extracting vortex iso-surface (Q-criterion)…", Level::info),
            TextLine("Vortex: no Q > 0 region in the wake.", Level::warn),
            TextLine("Iteration cap reached · 2 / 200 iter · not converged · CL 0.3000 · CD 0.4000 "
                     "· 0.0 s",
                Level::warn)));
}

TEST_F(STLRun, warnsOfTheStandInAfterTheSolversPath) {
    package_.useStandIn();
    runToEnd();
    EXPECT_EQ(
        lines()[0], TextLine("Using solver: " + package_.tool("SU2_CFD").string(), Level::info));
    EXPECT_EQ(lines()[1],
        TextLine("The built-in preview solver stands in for SU2_CFD · figures are indicative",
            Level::warn));
    EXPECT_THAT(lines()[2].first, StartsWith("Working dir: "));
}

TEST_F(STLRun, reportsItsEventsInOrder) {
    const SimulationResult result = drive(record());
    const SurfaceFitness fitness = judgeSurface(cube());
    EXPECT_EQ(events_, (std::vector<SolverRunner::Event>{RunPhase::meshing(),
                           SolverRunner::RunDirectory{result.runDirectory}, fitness,
                           MeshedSurface{cube(), std::nullopt, 0}, SolverRunner::MeshCells{1234},
                           RunPhase::solving(), RunPhase::postProcessing()}));
}

TEST_F(STLRun, givesTheSameResultWithoutAnyoneListening) {
    const SimulationResult result = drive({});
    EXPECT_EQ(result.runDirectory, runDirectory());
    EXPECT_EQ(result.meshCells, 1234);
    EXPECT_EQ(result.stopReason, StopReason::iterationCap(200));
}

TEST_F(STLRun, goesOnWithAMeshWhoseHeadCannotBeRead) {
    package_.setMesher("echo rubbish > mesh.su2\n");
    const SimulationResult result = drive(record());
    EXPECT_FALSE(result.meshCells);
    EXPECT_EQ(events_.size(), 6U);
    EXPECT_THAT(texts(), Contains("Mesh built · 0.0 MB · 0.0 s"));
}

TEST_F(STLRun, goesOnWithAMesherThatComplainsBesideAGoodMesh) {
    package_.setMesher(Script::mesh + "exit 1\n");
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_THAT(lines(),
        Contains(TextLine(
            "gmsh exited with code 1 · non-fatal warnings, mesh still produced", Level::warn)));
}

TEST_F(STLRun, hasAReferenceAreaOf1ForABodyWithoutPlanform) {
    // One facet upright across the flow, without any shadow from above.
    const SharedArray<Vec3> corners{Vec3(0, 0, 0), Vec3(0, 0, 1), Vec3(0, 1, 0)};
    app_->parameters.setMesh(TriangleMesh(corners, corners));
    runToEnd();
    EXPECT_THAT(texts(), Contains("Reference area (planform, top view): 1.0000 m²"));
    EXPECT_THAT(configuration(), HasSubstr("REF_AREA= 1.000000\n"));
}

TEST_F(STLRun, measuresThePlanformFromAbove) {
    // A plate of 2 m by 3 m that lies in the application's x and z, facing up.
    const SharedArray<Vec3> corners{
        Vec3(0, 0, 0), Vec3(0, 0, 3), Vec3(2, 0, 3), Vec3(0, 0, 0), Vec3(2, 0, 3), Vec3(2, 0, 0)};
    app_->parameters.setMesh(TriangleMesh(corners, corners));
    runToEnd();
    EXPECT_THAT(texts(), Contains("Reference area (planform, top view): 6.0000 m²"));
    EXPECT_THAT(configuration(), HasSubstr("REF_AREA= 6.000000\n"));
}

TEST_F(STLRun, fillsTheIncompressibleTemplate) {
    app_->parameters.setVelocity(40);
    app_->parameters.setAlpha(90);
    app_->parameters.setTurbulenceModel(TurbulenceModel::sst);
    app_->appSettings.setDefaultMaxIterations(77);
    runToEnd();
    EXPECT_EQ(configuration(), "SOLVER= INC_RANS\n"
                               "KIND_TURB_MODEL= SST\n"
                               "INC_VELOCITY_INIT= (0.000000, 0.000000, 40.000000)\n"
                               "ITER= 77\n"
                               "REF_AREA= 1.000000\n"
                               "MESH_FILENAME= mesh.su2\n" +
                                   comment("40"));
}

TEST_F(STLRun, fillsTheCompressibleTemplate) {
    app_->parameters.setRegime(FlowRegime::compressible);
    app_->parameters.setVelocity(340.2970287557621);
    runToEnd();
    EXPECT_THAT(texts(), Contains("Regime: Compressible (transonic+)"));
    EXPECT_EQ(configuration(),
        "SOLVER= RANS\nMACH_NUMBER= 1.0000\nREF_AREA= 1.000000\n" + comment("340.2970287557621"));
}

TEST_F(STLRun, tellsTheValuesThatItRunsWith) {
    app_->parameters.setVelocity(12.345);
    app_->parameters.setAlpha(-3);
    app_->parameters.setBeta(1.5);
    app_->parameters.setDensity(0.9);
    runToEnd();
    EXPECT_THAT(texts(), Contains("V=12.35 m/s, α=-3.00°, β=1.50°, ρ=0.900 kg/m³, ITER=200"));
}

TEST_F(STLRun, startsTheToolsInItsDirectoryWithTheirArguments) {
    package_.setMesher("echo \"$(pwd) $*\"\n" + Script::goodMesher);
    package_.setSolver("echo \"$(pwd) $*\"\n" + Script::goodSolver);
    runToEnd();
    EXPECT_THAT(texts(), Contains(runDirectory().string() + " mesh.geo -3 -o mesh.su2 -nopopup"));
    EXPECT_THAT(texts(), Contains(runDirectory().string() + " run.cfg"));
}

TEST_F(STLRun, believesTheLaterOfTwoStopReasons) {
    package_.setSolver(Script::fields + Script::convergedMessage + Script::capMessage);
    EXPECT_EQ(drive({}).stopReason, StopReason::iterationCap(200));
    package_.setSolver(Script::fields + Script::capMessage + Script::convergedMessage);
    EXPECT_EQ(drive({}).stopReason, StopReason::converged());
}

TEST_F(STLRun, hasNoStopReasonIfTheSolverGaveNone) {
    package_.setSolver(Script::fields);
    EXPECT_FALSE(drive({}).stopReason);
}

TEST_F(STLRun, takesANamedDirectoryAsItIs) {
    const auto folder = directory_.path() / "a folder" / "für den Fall";
    onWorker([&] {
        const SolverRunner runner(environment(), {}, folder);
        const auto prepared =
            runner.prepareSTL({"cube.stl", cube()}, SimulationInputs(), app_->logStore, {});
        EXPECT_EQ(prepared.directory, folder);
        EXPECT_EQ(prepared.meshCells, 1234);
        EXPECT_EQ(prepared.dimensions, 3);
    });
    EXPECT_TRUE(std::filesystem::exists(folder / "run.cfg"));
    EXPECT_TRUE(std::filesystem::exists(folder / "mesh.su2"));
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
    EXPECT_THAT(runDirectoryNames(), IsEmpty());
}

using History = STLRun;

TEST_F(History, isFollowedWhileTheSolverRuns) {
    package_.setSolver(Script::history + "echo ready\n" + package_.waitAtGate() +
                       "echo '2, -3.0, 0.5, 0.6' >> history.csv\n" + Script::fields);
    runUntilReady();
    EXPECT_FALSE(app_->historyStore.hasData()) << "a quarter of a second has not passed";
    ASSERT_TRUE(waitUntil([this] { return !timers_.pending().empty(); }));
    EXPECT_THAT(timers_.pending(), ElementsAre(0.25));
    timers_.advance(0.25);
    ASSERT_TRUE(waitUntil([this] { return app_->historyStore.hasData(); }));
    EXPECT_EQ(app_->historyStore.latestIteration(), 1);
    EXPECT_EQ(app_->historyStore.latestValue("CL"), 0.3);
    ASSERT_TRUE(waitUntil([this] { return !timers_.pending().empty(); }))
        << "the next poll is due a quarter of a second later";
    package_.openGate();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(app_->historyStore.latestIteration(), 2) << "the last rows are read after the end";
    EXPECT_EQ(app_->simulation.summary()->iterations, 3);
}

TEST_F(History, isShownUpToTheCrash) {
    package_.setSolver(Script::history + "exit 7\n");
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("solver", "SU2_CFD exited with code 7."));
    EXPECT_EQ(app_->historyStore.latestValue("CD"), 0.4);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("SU2_CFD finished in"))));
}

TEST_F(History, mayBeRubbish) {
    package_.setSolver("printf '\\377\\376\\000,,,\"\\n\\n1,2\\n' > history.csv\n" +
                       Script::fields + Script::capMessage);
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_FALSE(app_->historyStore.hasData());
    EXPECT_EQ(app_->simulation.summary()->iterations, 200);
}

TEST_F(History, mayBeAbsent) {
    package_.setSolver(Script::fields);
    runToEnd();
    EXPECT_FALSE(app_->parameters.lastRunResult()->historyCSV);
    EXPECT_FALSE(app_->simulation.summary()->cl);
}

} // namespace
} // namespace ostrella::test
