#include "UpdateControllerFixture.h"

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Level = LogStore::Level;

// Starting.

TEST_F(UpdateControllerTest, beginsWithAnUpdaterThatIsNotStarted) {
    EXPECT_EQ(updater->starts, 0);
    EXPECT_EQ(updater->delegate, &controller->gate());
    EXPECT_FALSE(controller->isStarted());
    // Choosing the item starts the updater.
    EXPECT_TRUE(controller->canCheckForUpdates());
}

TEST_F(UpdateControllerTest, startsTheUpdaterTenSecondsAfterTheLaunch) {
    controller->startAfterLaunch();
    EXPECT_THAT(timers.pending(), ElementsAre(10.0));
    timers.advance(9.9);
    settle();
    EXPECT_EQ(updater->starts, 0);
    timers.advance(0.2);
    settle();
    EXPECT_EQ(updater->starts, 1);
    EXPECT_TRUE(controller->isStarted());
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(UpdateControllerTest, startsOnceHoweverOftenItIsTold) {
    controller->startAfterLaunch();
    controller->startAfterLaunch();
    EXPECT_EQ(timers.pending().size(), 1U);
    timers.advance(10);
    settle();
    controller->startAfterLaunch();
    EXPECT_THAT(timers.pending(), IsEmpty());
    EXPECT_EQ(updater->starts, 1);
}

TEST_F(UpdateControllerTest, tellsThatItIsStarted) {
    int told = 0;
    QObject::connect(controller.get(), &UpdateController::isStartedChanged, [&] { ++told; });
    start();
    EXPECT_EQ(told, 1);
}

TEST_F(UpdateControllerTest, withdrawsTheStartThatGoesWithIt) {
    controller->startAfterLaunch();
    controller.reset();
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(UpdateControllerTest, outlivesAStartThatIsAlreadyOnItsWay) {
    controller->startAfterLaunch();
    timers.advance(10);
    controller.reset();
    settle();
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(UpdateControllerTest, reportsAFailedStartInTheLogOnly) {
    attach();
    updater->failure = "The feed's key is missing.";
    controller->startAfterLaunch();
    timers.advance(10);
    settle();
    EXPECT_FALSE(controller->isStarted());
    EXPECT_THAT(lines(),
        ElementsAre(Line("Updates are unavailable: The feed's key is missing.", Level::warn)));
    EXPECT_THAT(alerts, IsEmpty());
    EXPECT_TRUE(controller->canCheckForUpdates());
}

TEST_F(UpdateControllerTest, startsAfreshWithTheNextManualCheckAfterAFailure) {
    attach();
    updater->failure = "No.";
    controller->checkForUpdates();
    // The check that was asked for is forgotten with the failure.
    updater->setCanCheck(true);
    settle();
    EXPECT_EQ(updater->checks, 0);
    updater->failure.reset();
    controller->startAfterLaunch();
    timers.advance(10);
    settle();
    EXPECT_EQ(updater->starts, 2);
    EXPECT_TRUE(controller->isStarted());
    EXPECT_EQ(updater->checks, 0);
    controller->checkForUpdates();
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(UpdateControllerTest, triesAFailedStartAgainWithTheNextManualCheck) {
    attach();
    updater->failure = "No.";
    controller->checkForUpdates();
    updater->failure.reset();
    controller->checkForUpdates();
    EXPECT_EQ(updater->starts, 2);
    EXPECT_EQ(updater->checks, 1);
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(UpdateControllerTest, worksOnWhenTheStartFailsWithoutALog) {
    attach();
    log.reset();
    updater->failure = "No.";
    controller->checkForUpdates();
    EXPECT_EQ(updater->starts, 1);
    EXPECT_FALSE(controller->isStarted());
}

// Manual checks.

TEST_F(UpdateControllerTest, checksWhenTheUserAsks) {
    start();
    controller->checkForUpdates();
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(UpdateControllerTest, startsAtOnceForACheckInTheFirstTenSeconds) {
    updater->canCheckWhenStarted = false;
    controller->startAfterLaunch();
    controller->checkForUpdates();
    EXPECT_EQ(updater->starts, 1);
    EXPECT_THAT(timers.pending(), IsEmpty());
    EXPECT_EQ(updater->checks, 0);
    updater->setInSession(true);
    updater->setCanCheck(true);
    settle();
    EXPECT_EQ(updater->checks, 0);
    updater->setInSession(false);
    settle();
    EXPECT_EQ(updater->checks, 1);
    // Once is enough.
    updater->setInSession(true);
    updater->setInSession(false);
    settle();
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(UpdateControllerTest, doesNotStartTwiceWhenTheDelayedStartWasOnItsWay) {
    controller->startAfterLaunch();
    timers.advance(10);
    controller->checkForUpdates();
    settle();
    EXPECT_EQ(updater->starts, 1);
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(UpdateControllerTest, takesAFailedStartForTheEndOfTheDelayedOneToo) {
    updater->failure = "No.";
    controller->startAfterLaunch();
    timers.advance(10);
    controller->checkForUpdates();
    settle();
    EXPECT_EQ(updater->starts, 1);
}

TEST_F(UpdateControllerTest, dropsTheWaitingCheckWhenAnUpdateWasFoundAnyway) {
    updater->canCheckWhenStarted = false;
    controller->checkForUpdates();
    updater->delegate->didFindValidUpdate(item);
    updater->setCanCheck(true);
    settle();
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(UpdateControllerTest, followsWhatTheUpdaterCanDo) {
    start();
    std::vector<bool> told;
    QObject::connect(controller.get(), &UpdateController::canCheckForUpdatesChanged,
        [&] { told.push_back(controller->canCheckForUpdates()); });
    EXPECT_TRUE(controller->canCheckForUpdates());
    updater->setCanCheck(false);
    settle();
    updater->setCanCheck(false);
    settle();
    updater->setCanCheck(true);
    settle();
    EXPECT_THAT(told, ElementsAre(false, true));
}

TEST_F(UpdateControllerTest, handsTheAutomaticChecksThrough) {
    int told = 0;
    QObject::connect(
        controller.get(), &UpdateController::automaticallyChecksForUpdatesChanged, [&] { ++told; });
    EXPECT_TRUE(controller->automaticallyChecksForUpdates());
    controller->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(updater->automaticallyChecksForUpdates());
    EXPECT_FALSE(controller->automaticallyChecksForUpdates());
    EXPECT_EQ(told, 1);
}

// Runs.

TEST_F(UpdateControllerTest, takesEveryStageOfARunForARun) {
    attach();
    for (const RunPhase& phase :
        {RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        setPhase(phase);
        EXPECT_TRUE(controller->gate().isRunning());
    }
    for (const RunPhase& phase : {RunPhase::idle(), RunPhase::finished(false),
             RunPhase::failed("mesh", "no"), RunPhase::cancelled()}) {
        setPhase(phase);
        EXPECT_FALSE(controller->gate().isRunning());
    }
}

TEST_F(UpdateControllerTest, takesAControllerThatIsGoneForNoRun) {
    attach();
    beginRun();
    simulation.reset();
    EXPECT_FALSE(controller->gate().isRunning());
    EXPECT_FALSE(relaunch());
}

TEST_F(UpdateControllerTest, showsNothingWhereTheApplicationStartsIdle) {
    start();
    findBySchedule();
    updater->delegate->willHandleShowingUpdate(false, item);
    attach();
    settle();
    EXPECT_EQ(updater->checks, 0);
    // Still idle: no run has ended.
    setPhase(RunPhase::idle());
    settle();
    EXPECT_EQ(updater->checks, 0);
    EXPECT_TRUE(controller->gate().deferredUpdate);
}

TEST_F(UpdateControllerTest, noticesTheEndOfARunThatWasOnBeforeIt) {
    start();
    beginRun();
    attach();
    findBySchedule();
    endRun();
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(UpdateControllerTest, observesOneSimulationOnlyOnce) {
    start();
    attach();
    attach();
    beginRun();
    findBySchedule();
    endRun();
    EXPECT_EQ(updater->checks, 1);
    EXPECT_FALSE(controller->gate().deferredUpdate);
}

TEST_F(UpdateControllerTest, asksTheSimulationThatWasAttachedLastAndWritesIntoItsLog) {
    attach();
    beginRun();
    EXPECT_TRUE(controller->gate().isRunning());
    SimulationController second(
        RunEnvironment{AppBundle("package"), "runs", &SystemFacts::words()}, notifications);
    LogStore secondLog;
    controller->attach(second, secondLog);
    EXPECT_FALSE(controller->gate().isRunning());
    EXPECT_FALSE(relaunch());
    SimulationControllerProbe::setPhase(second, RunPhase::meshing());
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(secondLog.lines().back().text,
        "Update 2.0 is ready. It installs when the simulation ends.");
    EXPECT_TRUE(lines().empty());
}

TEST_F(UpdateControllerTest, showsAHeldBackUpdateWhenTheRunEnds) {
    attach();
    start();
    beginRun();
    EXPECT_FALSE(findBySchedule());
    EXPECT_TRUE(controller->gate().deferredUpdate);
    setPhase(RunPhase::solving());
    settle();
    EXPECT_EQ(updater->checks, 0);
    setPhase(RunPhase::finished(true));
    // Not from within the end of the run itself.
    EXPECT_EQ(updater->checks, 0);
    settle();
    EXPECT_EQ(updater->checks, 1);
    EXPECT_FALSE(controller->gate().deferredUpdate);
}

TEST_F(UpdateControllerTest, doesNotBringBackAHeldBackUpdateWhoseSessionIsOver) {
    attach();
    start();
    beginRun();
    findBySchedule();
    updater->delegate->willFinishUpdateSession();
    endRun();
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(UpdateControllerTest, leavesAnUpdateToTheUpdaterWithoutARun) {
    attach();
    start();
    EXPECT_TRUE(findBySchedule());
    EXPECT_FALSE(controller->gate().deferredUpdate);
    beginRun();
    endRun();
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(UpdateControllerTest, keepsAHeldBackUpdateWhileTheNextRunIsOn) {
    attach();
    start();
    beginRun();
    findBySchedule();
    setPhase(RunPhase::cancelled());
    beginRun();
    settle();
    EXPECT_EQ(updater->checks, 0);
    EXPECT_TRUE(controller->gate().deferredUpdate);
    endRun();
    EXPECT_EQ(updater->checks, 1);
}

} // namespace
} // namespace ostrella::test
