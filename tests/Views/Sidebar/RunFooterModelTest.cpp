#include "Views/Sidebar/RunFooterModel.h"

#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/ViewBench.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using test::Probe;

class RunFooterModelTest : public testing::Test, protected test::ViewBench {
protected:
    /// A run that begins now.
    void begin(int maxIterations = 200) {
        Probe::setMaxIterations(app.simulation, maxIterations);
        Probe::setStartedAt(app.simulation, clock.now());
        Probe::setPhase(app.simulation, RunPhase::meshing());
        Probe::setPhase(app.simulation, RunPhase::solving());
    }
    /// Lets time go by, tick after tick of the timeline.
    void wait(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            clock.advance(1);
            timers.advance(1);
            turn();
        }
    }
    void finish(bool converged = true) {
        RunSummary summary;
        summary.elapsedSeconds = 12.34;
        summary.iterations = 200;
        summary.cl = 0.25;
        summary.cd = 0.01;
        app.parameters.setLastRunResult(SimulationResult());
        Probe::setSummary(app.simulation, summary);
        Probe::setPhase(app.simulation, RunPhase::finished(converged));
    }
    std::string detail() const { return footer.progressDetail().toStdString(); }

    test::ManualClock clock;
    test::ManualTimers timers;
    RunFooterModel footer{shared(), PlatformWords::freedesktop(), clock, timers};
};

TEST_F(RunFooterModelTest, WithoutAModel) {
    EXPECT_FALSE(footer.showsProgress());
    EXPECT_FALSE(footer.canRun());
    EXPECT_EQ(footer.hint().toStdString(), "Load an STL to enable Run.");
    EXPECT_EQ(footer.hintSymbol().toStdString(), "info.circle");
    EXPECT_FALSE(footer.hintIsBusy());
    EXPECT_TRUE(footer.summaryHead().isEmpty());
    EXPECT_TRUE(footer.summaryParts().isEmpty());
    EXPECT_TRUE(footer.stateText().isEmpty());
    EXPECT_TRUE(footer.stateTone().isEmpty());
    EXPECT_TRUE(timers.pending().empty());
}

TEST_F(RunFooterModelTest, WithAModel) {
    placeModel();
    EXPECT_TRUE(footer.canRun());
    EXPECT_TRUE(footer.hint().isEmpty());
}

TEST_F(RunFooterModelTest, WhileAFileLoads) {
    placeModel();
    app.parameters.setLoadingFileName("next.stl");
    EXPECT_FALSE(footer.canRun());
    EXPECT_EQ(footer.hint().toStdString(), "Loading next.stl…");
    EXPECT_TRUE(footer.hintSymbol().isEmpty());
    EXPECT_TRUE(footer.hintIsBusy());
}

TEST_F(RunFooterModelTest, FixedTexts) {
    const QVariantMap texts = footer.texts();
    const auto text = [&texts](const char* name) {
        return texts.value(QString::fromLatin1(name)).toString().toStdString();
    };
    EXPECT_EQ(text("run"), "Run Simulation");
    EXPECT_EQ(text("runSymbol"), "play.fill");
    EXPECT_EQ(text("runHelp"), "Run the simulation (Ctrl+R)");
    EXPECT_EQ(text("cancel"), "Cancel simulation");
    EXPECT_EQ(text("cancelHelp"), "Stop meshing or the solver");
}

TEST_F(RunFooterModelTest, TheTimelineTicksOnlyWhileARunIsUnderWay) {
    begin();
    EXPECT_TRUE(footer.showsProgress());
    EXPECT_EQ(timers.pending(), std::vector<double>{1});
    wait(3);
    EXPECT_EQ(detail(), "3 s elapsed");
    EXPECT_EQ(timers.pending(), std::vector<double>{1});
    finish();
    EXPECT_FALSE(footer.showsProgress());
    EXPECT_TRUE(timers.pending().empty());
}

TEST_F(RunFooterModelTest, ATickThatIsAlreadyOnItsWayAtTheEndStartsNoOther) {
    begin();
    timers.advance(1); // posted, not yet served
    finish();
    turn();
    EXPECT_TRUE(timers.pending().empty());
}

TEST_F(RunFooterModelTest, ProgressFromMeshingToTheResults) {
    begin();
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_EQ(footer.progressTitle().toStdString(), "Meshing…");
    EXPECT_EQ(footer.progressFraction(), 0);
    Probe::setPhase(app.simulation, RunPhase::solving());
    EXPECT_EQ(footer.progressTitle().toStdString(), "Starting solver…");
    setLatestIteration(49);
    EXPECT_EQ(footer.progressTitle().toStdString(), "Iter 50 / 200");
    EXPECT_EQ(footer.progressFraction(), 0.25);
    EXPECT_EQ(footer.progressValue().toStdString(), "25 percent, 0 s elapsed");
    Probe::setPhase(app.simulation, RunPhase::postProcessing());
    EXPECT_EQ(footer.progressTitle().toStdString(), "Processing results…");
    EXPECT_EQ(footer.progressFraction(), 1);
}

TEST_F(RunFooterModelTest, TheRemainingTimeComesFromTheMeanSinceTheFirstIterationAndCountsDown) {
    begin(10);
    setLatestIteration(4);
    wait(10);
    EXPECT_EQ(detail(), "10 s elapsed"); // one iteration gives no rate
    setLatestIteration(5);
    wait(10);
    setLatestIteration(6);
    // 10 seconds for each of the iterations 8, 9 and 10.
    EXPECT_EQ(detail(), "20 s elapsed · ~30 s remaining");
    wait(4);
    EXPECT_EQ(detail(), "24 s elapsed · ~26 s remaining");
    wait(36);
    EXPECT_EQ(detail(), "1 min 00 s elapsed · ~0 s remaining");
    Probe::setPhase(app.simulation, RunPhase::postProcessing());
    EXPECT_EQ(detail(), "1 min 00 s elapsed");
}

TEST_F(RunFooterModelTest, TheNextRunHasARateOfItsOwn) {
    begin(10);
    setLatestIteration(4);
    wait(10);
    setLatestIteration(5);
    EXPECT_EQ(detail(), "10 s elapsed · ~40 s remaining");
    finish();
    begin(10);
    EXPECT_EQ(detail(), "0 s elapsed");
    setLatestIteration(std::nullopt);
    setLatestIteration(0);
    wait(1);
    EXPECT_EQ(detail(), "1 s elapsed");
}

TEST_F(RunFooterModelTest, WhatTheLastRunGave) {
    placeModel();
    finish();
    EXPECT_EQ(footer.summaryHead().toStdString(), "Last run");
    EXPECT_EQ(footer.summaryParts().toStdString(), " · 12.3 s · 200 iter · CL 0.2500 · CD 0.0100");
    EXPECT_EQ(footer.stateText().toStdString(), "Converged · 200 iter · 12.3 s");
    EXPECT_EQ(footer.stateTone().toStdString(), "good");
    finish(false);
    EXPECT_EQ(footer.stateText().toStdString(), "Stopped at iteration cap · 200 iter · 12.3 s");
    EXPECT_EQ(footer.stateTone().toStdString(), "caution");
}

TEST_F(RunFooterModelTest, AnotherModelTakesTheLastRunAway) {
    finish();
    placeModel();
    EXPECT_TRUE(footer.summaryHead().isEmpty());
    EXPECT_TRUE(footer.summaryParts().isEmpty());
    EXPECT_TRUE(footer.stateText().isEmpty());
}

TEST_F(RunFooterModelTest, AFailureStaysWithoutAResult) {
    Probe::setPhase(app.simulation, RunPhase::failed("mesh", "a message"));
    EXPECT_EQ(footer.stateText().toStdString(), "Failed · mesh");
    EXPECT_EQ(footer.stateTone().toStdString(), "failure");
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    EXPECT_EQ(footer.stateText().toStdString(), "Cancelled");
    EXPECT_EQ(footer.stateTone().toStdString(), "muted");
}

TEST_F(RunFooterModelTest, NotifiesOnceATurn) {
    int changes = 0;
    QObject::connect(&footer, &RunFooterModel::changed, [&changes] { ++changes; });
    turn();
    changes = 0;
    begin();
    setLatestIteration(3);
    EXPECT_EQ(changes, 0);
    turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(RunFooterModelTest, RunWithoutAModelDoesNothing) {
    footer.run();
    footer.run();
    EXPECT_EQ(app.simulation.phase(), RunPhase::idle());
    footer.cancel();
    EXPECT_EQ(app.simulation.phase(), RunPhase::idle());
}

} // namespace
} // namespace ostrella
