// Each way from one phase of a run to another, with child programs that finish, fail and are
// stopped.

#include "RunFixture.h"

namespace ostrella::test {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

class Transition : public RunTest {};

TEST_F(Transition, fromRestToMeshingByARunOfAModel) {
    placeCube();
    package_.setMesher(Script::hang);
    EXPECT_EQ(phase(), RunPhase::idle());
    app_->simulation.run();
    EXPECT_EQ(phase(), RunPhase::meshing());
    EXPECT_TRUE(app_->parameters.isRunning());
}

TEST_F(Transition, fromRestToSolvingByTheDemo) {
    package_.setSolver(Script::hang);
    EXPECT_EQ(phase(), RunPhase::idle());
    app_->simulation.runDemo();
    EXPECT_EQ(phase(), RunPhase::solving());
    EXPECT_TRUE(app_->parameters.isRunning());
}

TEST_F(Transition, throughTheStagesOfARunOfAModel) {
    placeCube();
    runToEnd();
    EXPECT_THAT(phases_, ElementsAre(RunPhase::meshing(), RunPhase::meshing(), RunPhase::solving(),
                             RunPhase::postProcessing(), RunPhase::finished(false)));
}

TEST_F(Transition, throughTheStagesOfTheDemo) {
    runDemoToEnd();
    EXPECT_THAT(phases_, ElementsAre(RunPhase::solving(), RunPhase::solving(),
                             RunPhase::postProcessing(), RunPhase::finished(false)));
}

TEST_F(Transition, toFinishedAsConvergedIfTheSolverSaysSo) {
    placeCube();
    package_.setSolver(Script::history + Script::fields + Script::convergedMessage);
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(true));
    expectNoChildLeft();
}

TEST_F(Transition, toFailedByTheMesher) {
    placeCube();
    package_.setMesher("echo 'Error   : no way'\nexit 1\n");
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("mesh", "gmsh exited with code 1 and produced no usable "
                                                "mesh (Error   : no way)"));
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
    expectNoChildLeft();
}

TEST_F(Transition, toFailedByTheSolver) {
    placeCube();
    package_.setSolver("exit 3\n");
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("solver", "SU2_CFD exited with code 3."));
    expectNoChildLeft();
}

TEST_F(Transition, toFailedWithoutResults) {
    placeCube();
    package_.setSolver("exit 0\n");
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::failed("results", "SU2_CFD finished but neither surface_flow.vtk "
                                                   "nor flow.vtk could be read."));
    expectNoChildLeft();
}

TEST_F(Transition, toFailedBetweenMesherAndSolver) {
    placeCube();
    // Where the configuration is to be written there is a folder of that name.
    package_.setMesher(Script::goodMesher + "mkdir run.cfg\n");
    runToEnd();
    EXPECT_EQ(phase().stage, "solver");
    EXPECT_THAT(phase().message, StartsWith("Cannot write " + runDirectory().string()));
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
}

TEST_F(Transition, toCancelledWhileMeshing) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    app_->simulation.cancel();
    EXPECT_EQ(phase(), RunPhase::meshing()) << "the phase stays until the run has ended";
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
    expectNoChildLeft();
}

TEST_F(Transition, toCancelledBetweenMesherAndSolver) {
    placeCube();
    QObject::connect(&app_->simulation, &SimulationController::meshCellsChanged, [this] {
        if (app_->simulation.meshCells()) {
            app_->simulation.cancel();
        }
    });
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_FALSE(std::filesystem::exists(runDirectory() / "run.cfg"));
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
}

TEST_F(Transition, toCancelledAtTheSolversDoor) {
    placeCube();
    whenPhase(app_->simulation, RunPhase::solving(), [this] { app_->simulation.cancel(); });
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_THAT(package_.starts("SU2_CFD"), IsEmpty());
}

TEST_F(Transition, toCancelledWhileSolving) {
    placeCube();
    package_.setSolver(Script::hang);
    runUntilReady();
    EXPECT_EQ(phase(), RunPhase::solving());
    cancelToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    expectNoChildLeft();
}

TEST_F(Transition, toCancelledWhileResultsAreRead) {
    placeCube();
    whenPhase(app_->simulation, RunPhase::postProcessing(), [this] { app_->simulation.cancel(); });
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_FALSE(app_->parameters.lastRunResult());
}

TEST_F(Transition, toCancelledWhileTheDemoIsSolved) {
    package_.setSolver(Script::hang);
    runDemoUntilReady();
    cancelToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    expectNoChildLeft();
}

TEST_F(Transition, toCancelledByTheErrorAloneIfNobodyAskedForIt) {
    placeCube();
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    Probe::complete(app_->simulation, run, std::make_exception_ptr(CancellationError()));
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_EQ(lastLine(), TextLine("Cancelled by user after 0 s", Level::warn));
}

TEST_F(Transition, toCancelledWhateverTheErrorWasIfItWasAskedFor) {
    placeCube();
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    app_->simulation.cancel();
    Probe::complete(app_->simulation, run,
        std::make_exception_ptr(RunStageError(
            RunStage::solver, std::make_exception_ptr(SolverError::nonZeroExit(15)))));
    EXPECT_EQ(phase(), RunPhase::cancelled());
}

TEST_F(Transition, toFinishedIfTheCancelComesTooLate) {
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    app_->simulation.cancel();
    Probe::complete(app_->simulation, run, SimulationResult());
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_FALSE(app_->simulation.isCancelling());
}

TEST_F(Transition, fromEachEndToMeshingAgain) {
    placeCube();
    package_.setSolver("exit 3\n");
    runToEnd();
    package_.setSolver(Script::goodSolver);
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    package_.setMesher(Script::hang);
    runUntilReady();
    EXPECT_EQ(phase(), RunPhase::meshing());
    cancelToEnd();
    package_.setMesher(Script::goodMesher);
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_EQ(app_->simulation.runID(), 4);
}

TEST_F(Transition, fromAnyEndToIdleByANewModel) {
    placeCube();
    const auto expectIdleByANewModel = [this] {
        EXPECT_NE(phase(), RunPhase::idle());
        app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
        EXPECT_EQ(phase(), RunPhase::idle());
        EXPECT_FALSE(app_->simulation.summary());
    };
    runToEnd();
    expectIdleByANewModel();
    package_.setSolver("exit 3\n");
    runToEnd();
    expectIdleByANewModel();
    package_.setSolver(Script::hang);
    runUntilReady();
    cancelToEnd();
    expectIdleByANewModel();
}

TEST_F(Transition, noneByANewModelDuringARun) {
    placeCube();
    package_.setSolver(Script::hang);
    runUntilReady();
    app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
    EXPECT_EQ(phase(), RunPhase::solving());
}

} // namespace
} // namespace ostrella::test
