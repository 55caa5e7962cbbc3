// The run of the built-in aerofoil.

#include "Platform/PackageUse.h"
#include "RunFixture.h"

namespace ostrella::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

class DemoRun : public RunTest {
protected:
    std::string configuration() { return readFile(runDirectory() / "run.cfg"); }
};

TEST_F(DemoRun, logsEachStepInOrder) {
    app_->parameters.setBeta(3);
    runDemoToEnd();
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Using solver: " + package_.tool("SU2_CFD").string(), Level::info),
            TextLine("Working dir: " + runDirectory().string(), Level::info),
            TextLine("V=50.00 m/s, α=0.00°, ρ=1.225 kg/m³, ITER=200", Level::info),
            TextLine("Launching SU2_CFD…", Level::info),
            TextLine("Maximum number of iterations reached (ITER = 200).", Level::su2),
            TextLine("SU2_CFD finished in 0.0 s", Level::info),
            TextLine("Surface: 3 points, 1 primitives, Cp ∈ [-0.500, 0.500]", Level::ok),
            TextLine("Volume: 4 points parsed in 0.0 s", Level::info),
            TextLine("Generating streamlines…", Level::info),
            TextLine("Streamlines: 100 seeds → 0 segments in 0.00 s, |V| ∈ [50.00, 50.00] m/s",
                Level::ok),
            TextLine("Iteration cap reached · 2 / 200 iter · not converged · CL 0.3000 · CD 0.4000 "
                     "· 0.0 s",
                Level::warn)));
}

TEST_F(DemoRun, warnsOfTheStandInAfterTheSolversPath) {
    package_.useStandIn();
    runDemoToEnd();
    EXPECT_THAT(texts()[0], StartsWith("Using solver: "));
    EXPECT_EQ(lines()[1],
        TextLine("The built-in preview solver stands in for SU2_CFD · figures are indicative",
            Level::warn));
}

TEST_F(DemoRun, keepsThePackageFromBeingReplacedUntilItsEnd) {
    const auto isFree = [this] {
        return PackageUse::claimAlone(environment().bundle.root()).get() >= 0;
    };
    std::vector<bool> during;
    onWorker([&] {
        const SolverRunner runner(environment(), {});
        EXPECT_TRUE(isFree());
        runner.runDemo(SimulationInputs(), app_->logStore, &app_->historyStore,
            [&](const SolverRunner::Event&) { during.push_back(isFree()); });
        EXPECT_TRUE(isFree());
    });
    EXPECT_FALSE(during.empty());
    EXPECT_THAT(during, testing::Each(false));
}

TEST_F(DemoRun, reportsItsEventsInOrder) {
    std::vector<SolverRunner::Event> events;
    SimulationResult result;
    onWorker([&] {
        const SolverRunner runner(environment(), {});
        result = runner.runDemo(SimulationInputs(), app_->logStore, &app_->historyStore,
            [&events](const SolverRunner::Event& event) { events.push_back(event); });
    });
    EXPECT_EQ(events, (std::vector<SolverRunner::Event>{RunPhase::solving(),
                          SolverRunner::RunDirectory{result.runDirectory},
                          SolverRunner::MeshCells{57344}, RunPhase::postProcessing()}));
    EXPECT_EQ(result.meshCells, 57344);
}

TEST_F(DemoRun, needsNoModelAndLeavesALoadedOneAlone) {
    runDemoToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_FALSE(app_->parameters.mesh());
    placeCube();
    runDemoToEnd();
    EXPECT_EQ(app_->parameters.mesh(), cube());
    EXPECT_TRUE(app_->parameters.lastRunResult());
    EXPECT_TRUE(package_.starts("gmsh").empty());
}

TEST_F(DemoRun, isIncompressibleWhateverTheUserChose) {
    app_->parameters.setRegime(FlowRegime::compressible);
    runDemoToEnd();
    EXPECT_THAT(configuration(), HasSubstr("SOLVER= INC_RANS\n"));
    EXPECT_EQ(app_->parameters.regime(), FlowRegime::compressible);
}

TEST_F(DemoRun, takesTheUsersFlowAndModelButNoSideslip) {
    app_->parameters.setVelocity(20);
    app_->parameters.setAlpha(90);
    app_->parameters.setBeta(45);
    app_->parameters.setTurbulenceModel(TurbulenceModel::sst);
    runDemoToEnd();
    EXPECT_EQ(configuration(), "SOLVER= INC_RANS\n"
                               "KIND_TURB_MODEL= SST\n"
                               "INC_VELOCITY_INIT= (0.000000, 20.000000, 0.000000)\n"
                               "ITER= 200\n"
                               "REF_AREA= 1.000000\n"
                               "MESH_FILENAME= mesh.su2\n"
                               "% For ostrella-batch --results: --velocity 20 --inlet-offset 0.5 "
                               "--wake-length 2 --seed-count 100\n");
}

TEST_F(DemoRun, solvesACopyOfItsMesh) {
    const auto original = package_.resource("su2/fixtures/n0012_897-257.su2");
    const std::string mesh = readFile(original);
    package_.setSolver("echo changed > mesh.su2\n" + Script::goodSolver);
    runDemoToEnd();
    EXPECT_EQ(readFile(runDirectory() / "mesh.su2"), "changed\n");
    EXPECT_EQ(readFile(original), mesh);
}

TEST_F(DemoRun, goesOnWithAMeshWhoseHeadCannotBeRead) {
    writeFile(package_.resource("su2/fixtures/n0012_897-257.su2"), "no head\n");
    runDemoToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_FALSE(app_->simulation.meshCells());
}

TEST_F(DemoRun, needsTheSolver) {
    std::filesystem::remove(package_.tool("SU2_CFD"));
    runDemoToEnd();
    EXPECT_EQ(phase(),
        RunPhase::failed("solver",
            "SU2_CFD is missing from Ostrella (libexec/ostrella). The app is incomplete; download "
            "and install Ostrella again."));
}

TEST_F(DemoRun, needsItsMesh) {
    std::filesystem::remove(package_.resource("su2/fixtures/n0012_897-257.su2"));
    std::filesystem::remove(package_.resource("su2/templates/incompressible_rans_sa_2d.cfg"));
    runDemoToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("solver", "Bundled NACA0012 mesh fixture is missing."));
    EXPECT_EQ(lastLine(),
        TextLine("Solver failed · Bundled NACA0012 mesh fixture is missing", Level::error));
    EXPECT_THAT(texts(), Contains(StartsWith("Using solver: ")));
}

TEST_F(DemoRun, needsItsTemplate) {
    std::filesystem::remove(package_.resource("su2/templates/incompressible_rans_sa_2d.cfg"));
    runDemoToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("solver", "Bundled SU2 config template is missing."));
    EXPECT_TRUE(runDirectoryNames().empty());
}

TEST_F(DemoRun, tellsWhereItsMeshCannotBeWritten) {
    const auto folder = directory_.path() / "case";
    writeFile(folder / "mesh.su2", "of an earlier case");
    onWorker([&] {
        const SolverRunner runner(environment(), {}, folder);
        try {
            runner.prepareDemo(SimulationInputs(), app_->logStore, {});
            ADD_FAILURE() << "an earlier case was overwritten";
        } catch (const RunStageError& error) {
            EXPECT_EQ(error.stage(), RunStage::solver);
            EXPECT_EQ(std::string(error.what()),
                "Cannot write " + (folder / "mesh.su2").string() + ": File exists");
        }
    });
    EXPECT_EQ(readFile(folder / "mesh.su2"), "of an earlier case");
}

} // namespace
} // namespace ostrella::test
