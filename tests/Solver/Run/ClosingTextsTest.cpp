// The texts that close a run, and the phase that a failure leads to.

#include "RunFixture.h"

#include <stdexcept>

namespace ostrella::test {
namespace {

using Level = LogStore::Level;

std::exception_ptr atStage(RunStage stage, const std::exception_ptr& error) {
    return std::make_exception_ptr(RunStageError(stage, error));
}

std::exception_ptr meshError() {
    return std::make_exception_ptr(std::runtime_error("the mesher's own words"));
}

RunSummary summary(bool converged) {
    RunSummary figures;
    figures.elapsedSeconds = 12.34;
    figures.iterations = 150;
    figures.maxIterations = 200;
    figures.cells = 1234;
    figures.cl = 0.30004;
    figures.cd = -0.00006;
    figures.converged = converged;
    return figures;
}

TEST(FinishLine, ofAConvergedRun) {
    EXPECT_EQ(SimulationController::finishLine(summary(true)),
        TextLine("Converged at iter 150 · CL 0.3000 · CD -0.0001 · 12.3 s", Level::ok));
}

TEST(FinishLine, ofARunThatReachedTheLimit) {
    EXPECT_EQ(SimulationController::finishLine(summary(false)),
        TextLine("Iteration cap reached · 150 / 200 iter · not converged · CL 0.3000 · CD -0.0001 "
                 "· 12.3 s",
            Level::warn));
}

TEST(FinishLine, leavesOutWhatIsNotKnown) {
    RunSummary figures;
    figures.maxIterations = 200;
    EXPECT_EQ(SimulationController::finishLine(figures),
        TextLine("Iteration cap reached · ? / 200 iter · not converged · 0.0 s", Level::warn));
    figures.converged = true;
    figures.cd = 1.5;
    EXPECT_EQ(SimulationController::finishLine(figures),
        TextLine("Converged at iter ? · CD 1.5000 · 0.0 s", Level::ok));
}

TEST(WaterTightMessage, countsTheEdges) {
    EXPECT_EQ(SimulationController::waterTightMessage(1),
        "The STL is not water-tight: 1 open edge. Close the surface in your CAD tool and load it "
        "again.");
    EXPECT_EQ(SimulationController::waterTightMessage(1234),
        "The STL is not water-tight: 1 234 open edges. Close the surface in your CAD tool and load "
        "it again.");
}

TEST(FailurePhase, ofTheMesherAdvisesOnAnOpenModel) {
    const auto error = atStage(RunStage::mesh, meshError());
    EXPECT_EQ(SimulationController::failurePhase(error, 1),
        RunPhase::failed("mesh", SimulationController::waterTightMessage(1)));
    EXPECT_EQ(SimulationController::failurePhase(error, 1234),
        RunPhase::failed("mesh", SimulationController::waterTightMessage(1234)));
}

TEST(FailurePhase, ofTheMesherHasItsOwnWordsForAClosedModel) {
    const auto error = atStage(RunStage::mesh, meshError());
    const RunPhase own = RunPhase::failed("mesh", "the mesher's own words");
    EXPECT_EQ(SimulationController::failurePhase(error, 0), own);
    EXPECT_EQ(SimulationController::failurePhase(error, std::nullopt), own);
}

TEST(FailurePhase, ofTheLaterStagesHasTheirOwnWordsForAnyModel) {
    const auto exit = std::make_exception_ptr(SolverError::nonZeroExit(-1));
    EXPECT_EQ(SimulationController::failurePhase(atStage(RunStage::solver, exit), 5),
        RunPhase::failed("solver", "SU2_CFD exited with code -1."));
    EXPECT_EQ(SimulationController::failurePhase(atStage(RunStage::results, exit), 5),
        RunPhase::failed("results", "SU2_CFD exited with code -1."));
}

TEST(FailurePhase, ofAnErrorWithoutAStageIsTheSolvers) {
    EXPECT_EQ(SimulationController::failurePhase(meshError(), 5),
        RunPhase::failed("solver", "the mesher's own words"));
}

TEST(FailureLine, losesTheFullStopThatThePhaseKeeps) {
    const auto error =
        atStage(RunStage::results, std::make_exception_ptr(SolverError::noReadableOutput()));
    EXPECT_EQ(SimulationController::failureLine("results", error),
        "Results failed · SU2_CFD finished but neither surface_flow.vtk nor flow.vtk could be "
        "read");
    EXPECT_EQ(SimulationController::failurePhase(error, std::nullopt).message,
        "SU2_CFD finished but neither surface_flow.vtk nor flow.vtk could be read.");
}

TEST(FailureLine, losesOneFullStopOnly) {
    EXPECT_EQ(SimulationController::failureLine(
                  "mesh", std::make_exception_ptr(std::runtime_error("and so on..."))),
        "Mesh failed · and so on..");
}

TEST(FailureLine, hasTheErrorsOwnWordsForAnOpenModelToo) {
    EXPECT_EQ(SimulationController::failureLine("mesh", atStage(RunStage::mesh, meshError())),
        "Mesh failed · the mesher's own words");
}

} // namespace
} // namespace ostrella::test
