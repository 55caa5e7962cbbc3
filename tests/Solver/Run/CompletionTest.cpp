// What the end of a run leaves: the figures, the layers, and nothing from a run that is no longer
// the present one.

#include "RunFixture.h"

namespace ostrella::test {
namespace {

class Completion : public RunTest {
protected:
    void complete(SimulationResult result) {
        const std::int64_t run = Probe::pretendRun(app_->simulation);
        Probe::complete(app_->simulation, run, std::move(result), inputs_);
    }

    SimulationInputs inputs_;
};

TEST_F(Completion, tellsTheFiguresOfTheRun) {
    placeCube();
    runToEnd();
    RunSummary expected;
    expected.elapsedSeconds = 0;
    expected.iterations = 2;
    expected.maxIterations = 200;
    expected.cells = 1234;
    expected.cl = 0.3;
    expected.cd = 0.4;
    EXPECT_EQ(app_->simulation.summary(), expected);
    EXPECT_EQ(app_->simulation.meshCells(), 1234);
    EXPECT_EQ(lastLine(), TextLine("Iteration cap reached · 2 / 200 iter · not converged · CL "
                                   "0.3000 · CD 0.4000 · 0.0 s",
                              Level::warn));
}

TEST_F(Completion, measuresTheSolverAlone) {
    placeCube();
    whenPhase(app_->simulation, RunPhase::solving(), [this] { clock_.advance(100); });
    package_.setSolver("echo ready\n" + package_.waitAtGate() + Script::goodSolver);
    runUntilReady();
    clock_.advance(12.5);
    whenPhase(app_->simulation, RunPhase::postProcessing(), [this] { clock_.advance(100); });
    package_.openGate();
    ASSERT_TRUE(waitForEnd());
    EXPECT_NEAR(app_->simulation.summary()->elapsedSeconds, 12.5, 1e-6);
}

TEST_F(Completion, takesTheIterationsFromTheSolversWordsWithoutAHistory) {
    SimulationResult result;
    result.stopReason = StopReason::iterationCap(150);
    complete(result);
    EXPECT_EQ(app_->simulation.summary()->iterations, 150);
    EXPECT_FALSE(app_->simulation.summary()->converged);
}

TEST_F(Completion, trustsTheHistoryMoreThanTheSolversWords) {
    app_->historyStore.setResiduals({HistoryPoint{"P", 41, -3.0}});
    SimulationResult result;
    result.stopReason = StopReason::iterationCap(150);
    complete(result);
    EXPECT_EQ(app_->simulation.summary()->iterations, 42);
}

TEST_F(Completion, withoutHistoryAndStopReasonIsCalledTheLimit) {
    complete(SimulationResult());
    EXPECT_EQ(lastLine(),
        TextLine("Iteration cap reached · ? / 200 iter · not converged · 0.0 s", Level::warn));
    EXPECT_EQ(phase(), RunPhase::finished(false));
}

TEST_F(Completion, takesTheCellsOfTheResultIfTheEventDidNotCome) {
    SimulationResult result;
    result.meshCells = 77;
    complete(result);
    EXPECT_EQ(app_->simulation.summary()->cells, 77);
    EXPECT_EQ(app_->simulation.meshCells(), 77);
}

TEST_F(Completion, showsTheResultAndEndsTheRun) {
    placeCube();
    runToEnd();
    const auto& result = app_->parameters.lastRunResult();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->runDirectory, runDirectory());
    EXPECT_EQ(result->flowVTK, runDirectory() / "flow.vtk");
    EXPECT_EQ(result->surfaceVTK, runDirectory() / "surface_flow.vtk");
    EXPECT_EQ(result->historyCSV, runDirectory() / "history.csv");
    EXPECT_EQ(result->configFile, runDirectory() / "run.cfg");
    EXPECT_EQ(result->stopReason, StopReason::iterationCap(200));
    EXPECT_EQ(result->meshCells, 1234);
    EXPECT_FALSE(app_->parameters.isRunning());
    EXPECT_FALSE(app_->simulation.activeRunDirectory());
}

TEST_F(Completion, switchesOnTheLayersWithSomethingToShow) {
    SimulationResult result;
    result.surfaceField.emplace();
    complete(result);
    EXPECT_TRUE(app_->renderSettings.colormapEnabled());
    EXPECT_FALSE(app_->renderSettings.streamlinesEnabled());
    EXPECT_FALSE(app_->renderSettings.vortexEnabled());

    result.surfaceField.reset();
    result.streamlines.emplace();
    result.vortex.emplace();
    app_->renderSettings.setColormapEnabled(false);
    complete(result);
    EXPECT_FALSE(app_->renderSettings.colormapEnabled());
    EXPECT_TRUE(app_->renderSettings.streamlinesEnabled());
    EXPECT_TRUE(app_->renderSettings.vortexEnabled());
}

TEST_F(Completion, leavesALayerWithNothingToShowAsTheUserHadIt) {
    app_->renderSettings.setStreamlinesEnabled(true);
    complete(SimulationResult());
    EXPECT_TRUE(app_->renderSettings.streamlinesEnabled());
    EXPECT_FALSE(app_->renderSettings.colormapEnabled());
}

TEST_F(Completion, asksForAReframeAfterASuccessOnly) {
    const QUuid before = app_->renderSettings.reframeRequestID();
    complete(SimulationResult());
    const QUuid after = app_->renderSettings.reframeRequestID();
    EXPECT_NE(before, after);
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    Probe::complete(app_->simulation, run, std::make_exception_ptr(CancellationError()));
    EXPECT_EQ(app_->renderSettings.reframeRequestID(), after);
}

TEST_F(Completion, ofAFailureLogsItsLineAsAnError) {
    placeCube();
    package_.setSolver("exit 3\n");
    runToEnd();
    EXPECT_EQ(lastLine(), TextLine("Solver failed · SU2_CFD exited with code 3", Level::error));
    EXPECT_FALSE(app_->parameters.lastRunResult());
    EXPECT_FALSE(app_->simulation.summary());
    EXPECT_FALSE(app_->parameters.isRunning());
}

TEST_F(Completion, ofAMeshFailureAdvisesInThePhaseAndQuotesInTheLog) {
    placeCube();
    app_->parameters.setOpenEdgeCount(1234);
    package_.setMesher("exit 0\n");
    runToEnd();
    EXPECT_EQ(phase(),
        RunPhase::failed("mesh", "The STL is not water-tight: 1 234 open edges. Close the surface "
                                 "in your CAD tool and load it again."));
    EXPECT_EQ(
        lastLine(), TextLine("Mesh failed · gmsh exited with code 0 and produced no usable mesh",
                        Level::error));
}

TEST_F(Completion, ofAnOlderRunIsDropped) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    const std::int64_t present = app_->simulation.runID();
    const std::size_t lineCount = lines().size();
    Probe::complete(app_->simulation, present - 1, SimulationResult());
    EXPECT_EQ(phase(), RunPhase::meshing());
    EXPECT_TRUE(app_->parameters.isRunning());
    EXPECT_FALSE(app_->parameters.lastRunResult());
    EXPECT_EQ(lines().size(), lineCount);
}

TEST_F(Completion, lettingAListenerStartTheNextRunLeavesThatRunAlone) {
    placeCube();
    package_.setMesher(Script::hang);
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    whenPhase(app_->simulation, RunPhase::finished(false), [this] { app_->simulation.run(); });
    Probe::complete(app_->simulation, run, SimulationResult());
    EXPECT_EQ(phase(), RunPhase::meshing());
    EXPECT_TRUE(app_->parameters.isRunning());
    waitForLine("ready");
    cancelToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
}

using Events = Completion;

TEST_F(Events, ofThePresentRunAreApplied) {
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    Probe::apply(app_->simulation, SolverRunner::MeshCells{99}, run);
    Probe::apply(app_->simulation, SolverRunner::RunDirectory{runs_ / "x"}, run);
    Probe::apply(app_->simulation, RunPhase::postProcessing(), run);
    EXPECT_EQ(app_->simulation.meshCells(), 99);
    EXPECT_EQ(app_->simulation.activeRunDirectory(), runs_ / "x");
    EXPECT_EQ(phase(), RunPhase::postProcessing());
    Probe::complete(app_->simulation, run, SimulationResult());
}

TEST_F(Events, ofAnOlderRunAreDropped) {
    const std::int64_t run = Probe::pretendRun(app_->simulation);
    Probe::apply(app_->simulation, SolverRunner::MeshCells{99}, run - 1);
    Probe::apply(app_->simulation, SolverRunner::RunDirectory{runs_ / "x"}, run - 1);
    Probe::apply(app_->simulation, RunPhase::postProcessing(), run - 1);
    EXPECT_FALSE(app_->simulation.meshCells());
    EXPECT_FALSE(app_->simulation.activeRunDirectory());
    EXPECT_EQ(phase(), RunPhase::solving());
    Probe::complete(app_->simulation, run, SimulationResult());
}

TEST_F(Events, afterTheEndAreDropped) {
    placeCube();
    runToEnd();
    const std::int64_t run = app_->simulation.runID();
    Probe::apply(app_->simulation, RunPhase::solving(), run);
    Probe::apply(app_->simulation, SolverRunner::MeshCells{99}, run);
    Probe::apply(app_->simulation, SolverRunner::RunDirectory{runs_ / "x"}, run);
    EXPECT_EQ(phase(), RunPhase::finished(false));
    EXPECT_EQ(app_->simulation.meshCells(), 1234);
    EXPECT_FALSE(app_->simulation.activeRunDirectory());
}

} // namespace
} // namespace ostrella::test
