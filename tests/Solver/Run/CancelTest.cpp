// How a run is stopped: the child's end, the time that is told, and what a cancel leaves alone.

#include "RunFixture.h"
#include "Solver/Tools/ManagedProcess.h"

namespace ostrella::test {
namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;

class Cancel : public RunTest {};

TEST_F(Cancel, changesNothingWithoutARun) {
    app_->simulation.cancel();
    EXPECT_EQ(phase(), RunPhase::idle());
    EXPECT_FALSE(app_->simulation.isCancelling());
    EXPECT_TRUE(phases_.empty());
}

TEST_F(Cancel, isShownUntilTheRunHasEnded) {
    placeCube();
    package_.setMesher(Script::deaf);
    runUntilReady();
    EXPECT_FALSE(app_->simulation.isCancelling());
    app_->simulation.cancel();
    EXPECT_TRUE(app_->simulation.isCancelling());
    EXPECT_TRUE(app_->parameters.isRunning());
    timers_.advance(ManagedProcess::killDelay);
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(app_->simulation.isCancelling());
}

TEST_F(Cancel, twiceHasTheEffectOfOnce) {
    placeCube();
    package_.setSolver(Script::deaf);
    runUntilReady();
    app_->simulation.cancel();
    const auto first = Probe::cancelRequestedAt(app_->simulation);
    EXPECT_EQ(first, clock_.now());
    clock_.advance(1);
    app_->simulation.cancel();
    EXPECT_EQ(Probe::cancelRequestedAt(app_->simulation), first);
    timers_.advance(ManagedProcess::killDelay);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::cancelled());
}

TEST_F(Cancel, tellsTheTimeUpToTheRequestInWholeSeconds) {
    placeCube();
    package_.setSolver(Script::deaf);
    runUntilReady();
    clock_.advance(3.4);
    app_->simulation.cancel();
    clock_.advance(2);
    timers_.advance(ManagedProcess::killDelay);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(lastLine(), TextLine("Cancelled by user after 3 s", Level::warn));
}

TEST_F(Cancel, roundsHalfASecondUp) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    clock_.advance(61.5);
    cancelToEnd();
    EXPECT_EQ(lastLine(), TextLine("Cancelled by user after 62 s", Level::warn));
}

TEST_F(Cancel, stopsAPoliteChildAtOnceAndLeavesNoTimerBehind) {
    placeCube();
    package_.setSolver(Script::hang);
    runUntilReady();
    cancelToEnd();
    expectNoChildLeft();
    EXPECT_TRUE(timers_.pending().empty());
}

TEST_F(Cancel, stopsADeafMesherThreeSecondsLater) {
    placeCube();
    package_.setMesher(Script::deaf);
    runUntilReady();
    app_->simulation.cancel();
    EXPECT_THAT(timers_.pending(), Contains(3.0));
    timers_.advance(2.9);
    EXPECT_TRUE(processExists(package_.starts("gmsh").front()));
    timers_.advance(0.2);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::cancelled());
    expectNoChildLeft();
}

TEST_F(Cancel, countsAlsoIfTheSolverThenEndsWellAndCallsItConverged) {
    placeCube();
    package_.setSolver("trap '" + Script::fields +
                       "echo All convergence criteria satisfied.; "
                       "exit 0' TERM\necho ready\n" +
                       package_.waitAtGate());
    runUntilReady();
    app_->simulation.cancel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_FALSE(app_->parameters.lastRunResult());
    EXPECT_FALSE(app_->simulation.summary());
}

TEST_F(Cancel, isTheOnlyLineAboutTheEndOfTheRun) {
    placeCube();
    package_.setSolver(Script::hang);
    runUntilReady();
    cancelToEnd();
    EXPECT_EQ(texts().back(), "Cancelled by user after 0 s");
    EXPECT_THAT(texts(), Not(Contains(StartsWith("SU2_CFD finished in"))));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Solver failed"))));
}

TEST_F(Cancel, leavesTheHistoryAsItWasLastRead) {
    placeCube();
    package_.setSolver(Script::history + Script::hang);
    runUntilReady();
    EXPECT_FALSE(app_->historyStore.hasData());
    cancelToEnd();
    EXPECT_FALSE(app_->historyStore.hasData()) << "what is read after a cancel is dropped";
}

TEST_F(Cancel, byAListenerToTheStartStopsTheRunBeforeAnyChild) {
    placeCube();
    whenPhase(app_->simulation, RunPhase::meshing(), [this] { app_->simulation.cancel(); });
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::cancelled());
    EXPECT_TRUE(package_.starts("gmsh").empty());
}

TEST_F(Cancel, allowsTheNextRun) {
    placeCube();
    package_.setSolver(Script::hang);
    runUntilReady();
    cancelToEnd();
    package_.setSolver(Script::goodSolver);
    EXPECT_TRUE(app_->simulation.canRun());
    runToEnd();
    EXPECT_EQ(phase(), RunPhase::finished(false));
}

} // namespace
} // namespace ostrella::test
