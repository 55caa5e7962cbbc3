#include "Views/Chrome/RunAnnouncer.h"

#include "support/ManualClock.h"
#include "support/ViewBench.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using test::Probe;
using testing::ElementsAre;
using testing::IsEmpty;

class RunAnnouncerTest : public testing::Test, protected test::ViewBench {
protected:
    void begin(int maxIterations = 200) {
        Probe::setMaxIterations(app.simulation, maxIterations);
        Probe::setSummary(app.simulation, std::nullopt);
        Probe::setPhase(app.simulation, RunPhase::meshing());
        Probe::setPhase(app.simulation, RunPhase::solving());
        turn();
    }
    void finish() {
        RunSummary summary;
        summary.elapsedSeconds = 12.34;
        summary.iterations = 150;
        summary.cl = 0.25;
        summary.converged = true;
        Probe::setSummary(app.simulation, summary);
        Probe::setPhase(app.simulation, RunPhase::finished(true));
        turn();
    }

    test::ManualClock clock;
    bool isInFront = false;
    std::vector<std::string> notes;
    int withdrawals = 0;
    std::vector<std::optional<double>> progress;
    RunAnnouncer announcer{shared(),
        {.isInFront = [this] { return isInFront; },
            .showNote = [this](const std::string& title,
                            const std::string& body) { notes.push_back(title + ": " + body); },
            .withdrawNote = [this] { ++withdrawals; },
            .showProgress = [this](std::optional<double> value) { progress.push_back(value); }},
        clock};
};

TEST_F(RunAnnouncerTest, SaysNothingBeforeARun) {
    turn();
    setLatestIteration(3);
    turn();
    EXPECT_THAT(notes, IsEmpty());
    EXPECT_THAT(progress, IsEmpty());
}

TEST_F(RunAnnouncerTest, ALongRunThatEndsWhileTheUserIsElsewhere) {
    begin();
    clock.advance(10.5);
    finish();
    EXPECT_THAT(notes, ElementsAre("Ostrella: Converged at iter 150 · CL 0.2500 · 12.3 s"));
}

TEST_F(RunAnnouncerTest, AShortRun) {
    begin();
    clock.advance(10);
    finish();
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(RunAnnouncerTest, AWindowInFrontSaysItByItself) {
    begin();
    clock.advance(60);
    isInFront = true;
    finish();
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(RunAnnouncerTest, AFailure) {
    begin();
    clock.advance(60);
    Probe::setPhase(app.simulation, RunPhase::failed("solver", "It diverged."));
    EXPECT_THAT(notes, ElementsAre("Ostrella: Solver failed · It diverged"));
}

TEST_F(RunAnnouncerTest, WhatTheUserStopped) {
    begin();
    clock.advance(60);
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(RunAnnouncerTest, AnOutcomeThatIsClearedLaterIsNotToldAgain) {
    begin();
    clock.advance(60);
    finish();
    clock.advance(60);
    Probe::setPhase(app.simulation, RunPhase::idle());
    finish();
    EXPECT_EQ(notes.size(), 1U);
}

TEST_F(RunAnnouncerTest, EachRunIsTimedByItself) {
    begin();
    clock.advance(60);
    finish();
    begin();
    clock.advance(5);
    finish();
    EXPECT_EQ(notes.size(), 1U);
}

TEST_F(RunAnnouncerTest, TheNoteGoesWhenTheUserComesBack) {
    announcer.windowCameToFront();
    begin();
    clock.advance(60);
    finish();
    EXPECT_EQ(withdrawals, 0);
    announcer.windowCameToFront();
    announcer.windowCameToFront();
    EXPECT_EQ(withdrawals, 1);
}

TEST_F(RunAnnouncerTest, TheNoteGoesWhenTheNextRunBegins) {
    begin();
    clock.advance(60);
    finish();
    begin();
    EXPECT_EQ(withdrawals, 1);
}

TEST_F(RunAnnouncerTest, ProgressFollowsTheRun) {
    begin(200);
    setLatestIteration(99);
    turn();
    Probe::setPhase(app.simulation, RunPhase::postProcessing());
    turn();
    finish();
    EXPECT_THAT(progress, ElementsAre(0.0, 0.5, 1.0, std::nullopt));
}

TEST_F(RunAnnouncerTest, ProgressIsToldOnceATurn) {
    begin(200);
    for (int i = 0; i < 100; ++i) {
        setLatestIteration(i);
    }
    turn();
    EXPECT_THAT(progress, ElementsAre(0.0, 0.5));
}

} // namespace
} // namespace ostrella
