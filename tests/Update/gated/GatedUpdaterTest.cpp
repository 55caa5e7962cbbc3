// No update disturbs a run, and none is lost by that.

#include "Models/NotificationCenter.h"
#include "Platform/SystemFacts.h"
#include "Solver/Run/SimulationController.h"
#include "Update/UpdateController.h"
#include "Update/UpdaterFixture.h"

#include <QCoreApplication>

namespace ostrella {

class SimulationControllerProbe {
public:
    static void setPhase(SimulationController& simulation, const RunPhase& phase) {
        simulation.setPhase(phase);
    }
};

namespace test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GatedUpdaterTest : public UpdaterFixture {
protected:
    GatedUpdaterTest() {
        auto made = std::make_unique<AppcastUpdater>(surroundings());
        updater = made.get();
        controller = std::make_unique<UpdateController>(std::move(made), timers_,
            [this](const UpdateAlert& alert, std::function<void(bool)> reply) {
                questions.push_back(alert.message);
                answer = std::move(reply);
            });
        controller->attach(simulation, log);
    }

    bool comesTo(Stage stage) {
        return waitUntil([&] { return updater->session().stage == stage; });
    }
    void start() {
        controller->startAfterLaunch();
        timers_.advance(10);
        ASSERT_TRUE(waitUntil([this] { return controller->isStarted(); }));
    }
    void checkBySchedule() {
        const auto before = checks();
        timers_.advance(timers_.pending().front());
        ASSERT_TRUE(waitUntil([&] { return checks() != before; }));
    }
    void beginRun() { SimulationControllerProbe::setPhase(simulation, RunPhase::solving()); }
    void endRun() { SimulationControllerProbe::setPhase(simulation, RunPhase::finished(true)); }

    /// The user takes the update and asks for the restart, which waits for the end of a run.
    void askForTheRestartDuringARun() {
        offerNext();
        controller->checkForUpdates();
        ASSERT_TRUE(comesTo(Stage::found));
        updater->install();
        ASSERT_TRUE(comesTo(Stage::ready)) << updater->session().text;
        beginRun();
        updater->installAndRestart();
        EXPECT_EQ(updater->session().stage, Stage::idle) << "nothing is on show";
        EXPECT_EQ(quits_, 0);
        EXPECT_EQ(log.lines().back().text,
            "Update 1.1.0 is ready. It installs when the simulation ends.");
        controller->checkForUpdates();
        EXPECT_THAT(questions, IsEmpty());
        endRun();
        ASSERT_TRUE(waitUntil([this] { return !questions.empty(); }));
        EXPECT_THAT(questions, ElementsAre("Install Ostrella 1.1.0?"));
    }

    void offer(const std::string& version, const std::vector<ArchiveEntry>& entries) {
        writeFeed({publish(version, entries)});
    }
    /// The next check by schedule finds an update, and the user takes it.
    void takeTheScheduledOne() {
        clock_.advance(6 * 3600);
        checkBySchedule();
        ASSERT_TRUE(comesTo(Stage::found));
        updater->install();
    }

    LogStore log;
    NotificationCenter notifications;
    SimulationController simulation{
        RunEnvironment{AppBundle("package"), "runs", &SystemFacts::words()}, notifications};
    std::vector<std::string> questions;
    std::function<void(bool)> answer;
    AppcastUpdater* updater = nullptr;
    std::unique_ptr<UpdateController> controller;
};

TEST_F(GatedUpdaterTest, WhatIsFoundByScheduleDuringARunIsShownAtItsEnd) {
    offerNext();
    start();
    beginRun();
    checkBySchedule();
    ASSERT_TRUE(waitUntil([this] { return controller->gate().deferredUpdate; }));
    EXPECT_EQ(updater->session().stage, Stage::idle);
    endRun();
    EXPECT_TRUE(comesTo(Stage::found));
    EXPECT_EQ(updater->session().item.version, "1.1.0");
    EXPECT_FALSE(updater->session().userInitiated) << "the front is another program's, maybe";
    EXPECT_FALSE(controller->gate().deferredUpdate);
}

TEST_F(GatedUpdaterTest, WhatIsFoundByScheduleWithoutARunIsShownAtOnce) {
    offerNext();
    start();
    checkBySchedule();
    EXPECT_TRUE(comesTo(Stage::found));
    EXPECT_FALSE(controller->gate().deferredUpdate);
}

TEST_F(GatedUpdaterTest, ACheckBeforeTheStartIsDoneWhenItHasStarted) {
    offerNext();
    controller->startAfterLaunch();
    controller->checkForUpdates();
    EXPECT_TRUE(controller->isStarted());
    EXPECT_TRUE(comesTo(Stage::found));
    EXPECT_TRUE(updater->session().userInitiated);
}

TEST_F(GatedUpdaterTest, ARestartThatARunHeldBackIsDoneOnTheUsersWord) {
    askForTheRestartDuringARun();
    answer(true);
    EXPECT_EQ(quits_, 1);
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(GatedUpdaterTest, ARestartThatWasPutOffIsAskedForAgainByHandAndDoneAtQuit) {
    askForTheRestartDuringARun();
    answer(false);
    EXPECT_EQ(installed(), "1.0.0");
    beginRun();
    endRun();
    QCoreApplication::processEvents();
    EXPECT_EQ(questions.size(), 1U);
    controller->checkForUpdates();
    EXPECT_EQ(questions.size(), 2U);
    answer(false);
    EXPECT_EQ(quits_, 0);
    updater->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(GatedUpdaterTest, ANewerUpdateThatIsRefusedLeavesTheOneThatWasPutOff) {
    askForTheRestartDuringARun();
    answer(false);
    offer("1.2.0", copyEntries("1.1.5"));
    takeTheScheduledOne();
    ASSERT_TRUE(comesTo(Stage::failed));
    updater->acknowledge();
    controller->checkForUpdates();
    EXPECT_THAT(questions, ElementsAre("Install Ostrella 1.1.0?", "Install Ostrella 1.1.0?"));
    answer(true);
    EXPECT_EQ(quits_, 1);
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(GatedUpdaterTest, TheQuestionNamesTheNewerUpdateThatTookThePlaceOfTheOther) {
    askForTheRestartDuringARun();
    answer(false);
    offer("1.2.0", copyEntries("1.2.0"));
    takeTheScheduledOne();
    ASSERT_TRUE(comesTo(Stage::ready)) << updater->session().text;
    updater->remindLater();
    controller->checkForUpdates();
    EXPECT_THAT(questions, ElementsAre("Install Ostrella 1.1.0?", "Install Ostrella 1.2.0?"));
    answer(true);
    EXPECT_EQ(quits_, 1);
    EXPECT_EQ(installed(), "1.2.0");
}

TEST_F(GatedUpdaterTest, AnUpdateThatIsNotThereAnyMoreIsNotAskedAbout) {
    askForTheRestartDuringARun();
    answer(false);
    std::filesystem::remove_all(root_.parent_path() / ".ostrella.ostrella-update");
    controller->checkForUpdates();
    answer(true);
    ASSERT_TRUE(comesTo(Stage::failed));
    EXPECT_EQ(quits_, 0);
    updater->acknowledge();
    controller->checkForUpdates();
    EXPECT_EQ(questions.size(), 2U);
    EXPECT_TRUE(comesTo(Stage::found));
}

} // namespace
} // namespace test
} // namespace ostrella
