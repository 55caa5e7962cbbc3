// What ends a result on show, and what becomes of the figures beside it.

#include "RunFixture.h"

namespace ostrella::test {
namespace {

/// A run that has finished, with its result on show.
class ShownResult : public RunTest {
protected:
    ShownResult() {
        placeCube();
        runToEnd();
        EXPECT_TRUE(app_->parameters.lastRunResult());
        EXPECT_TRUE(app_->simulation.summary());
    }

    void expectFiguresStay() const {
        EXPECT_EQ(phase(), RunPhase::finished(false));
        EXPECT_TRUE(app_->simulation.summary());
    }
};

TEST_F(ShownResult, endsWithTheNextRun) {
    package_.setMesher(Script::hang);
    runUntilReady();
    EXPECT_FALSE(app_->parameters.lastRunResult());
    EXPECT_TRUE(phase().isActive());
    EXPECT_FALSE(app_->simulation.summary());
    EXPECT_FALSE(app_->simulation.meshCells());
}

TEST_F(ShownResult, endsWithANewModelAndSoDoTheFigures) {
    writeFile(directory_.path() / "other.stl",
        "solid\nfacet normal 0 0 1\nvertex 0 0 0\nvertex 2 0 0\nvertex 0 2 0\n");
    app_->importer.open(directory_.path() / "other.stl", app_->parameters);
    ASSERT_TRUE(waitUntil([this] { return phase() == RunPhase::idle(); }));
    EXPECT_FALSE(app_->parameters.lastRunResult());
    EXPECT_FALSE(app_->simulation.summary());
}

TEST_F(ShownResult, endsWithATurnOfTheModelButTheFiguresStay) {
    app_->parameters.setRotationZ(30);
    EXPECT_FALSE(app_->parameters.lastRunResult());
    expectFiguresStay();
}

TEST_F(ShownResult, outlivesAChangeOfTheFlowAndItsModels) {
    app_->parameters.setVelocity(70);
    app_->parameters.setAlpha(4);
    app_->parameters.setBeta(-2);
    app_->parameters.setDensity(1);
    app_->parameters.setTurbulenceModel(TurbulenceModel::laminar);
    app_->parameters.setRegime(FlowRegime::compressible);
    app_->parameters.setSARotationCorrection(true);
    app_->parameters.setSATransition(true);
    EXPECT_TRUE(app_->parameters.lastRunResult());
    expectFiguresStay();
}

TEST_F(ShownResult, outlivesAChangeOfTheIterationLimitThatHoldsFromTheNextRun) {
    app_->appSettings.setDefaultMaxIterations(350);
    EXPECT_TRUE(app_->parameters.lastRunResult());
    EXPECT_EQ(app_->simulation.maxIterations(), 200);
    runToEnd();
    EXPECT_EQ(app_->simulation.maxIterations(), 350);
    EXPECT_EQ(app_->parameters.maxIterations(), 350);
    EXPECT_EQ(app_->simulation.summary()->maxIterations, 350);
}

TEST_F(ShownResult, isNotTouchedByATurnDuringTheRunThatReplacesIt) {
    package_.setSolver(Script::goodSolver + "echo ready\n" + package_.waitAtGate());
    runUntilReady();
    app_->parameters.setRotationX(10);
    app_->appSettings.setDefaultMaxIterations(999);
    package_.openGate();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(app_->parameters.lastRunResult()) << "the result came after the turn";
    EXPECT_EQ(app_->simulation.summary()->maxIterations, 200);
}

} // namespace
} // namespace ostrella::test
