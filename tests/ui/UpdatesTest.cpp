// The check for updates in the menu, and updates that come while the user works.

#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "ui/support/AppUnderTest.h"

namespace ostrella {

class SimulationControllerProbe {
public:
    static void setPhase(SimulationController& simulation, const RunPhase& phase) {
        simulation.setPhase(phase);
    }
};

namespace test {
namespace {

class CopyWithoutAFeed : public AppUnderTest {};

TEST_F(CopyWithoutAFeed, saysSoInTheLogWhenAsked) {
    const std::string line = "No update feed is configured for this copy of Ostrella.";
    EXPECT_FALSE(logs(line, LogStore::Level::info));
    choose("Help", "Check for Updates…");
    EXPECT_TRUE(waitFor([&] { return logs(line, LogStore::Level::info); }));
    EXPECT_TRUE(app->updates->isStarted()) << "without waiting for its ten seconds";
}

class CopyWithUpdates : public AppUnderTest {
protected:
    CopyWithUpdates()
        : AppUnderTest(OSTRELLA_STAGE_DIR, std::make_unique<ScriptedUpdater>()),
          scripted(dynamic_cast<ScriptedUpdater&>(*updater)) {
        update.displayVersionString = "2.0";
    }

    bool postpone() {
        return scripted.delegate->shouldPostponeRelaunch(update, [this] { ++installs; });
    }
    bool waitForOffer() {
        const bool isThere = waitFor([this] { return shows("Install Ostrella 2.0?"); });
        user->settle();
        return isThere;
    }

    ScriptedUpdater& scripted;
    AppcastItem update;
    int installs = 0;
};

TEST_F(CopyWithUpdates, checksFromTheMenuWhileItCan) {
    choose("Help", "Check for Updates…");
    EXPECT_TRUE(waitFor([this] { return scripted.checks == 1; }));
    scripted.setCanCheck(false);
    user->settle();
    click("Help", QAccessible::MenuItem);
    EXPECT_TRUE(waitFor([this] { return !isEnabled("Check for Updates…"); }));
    scripted.setCanCheck(true);
    EXPECT_TRUE(waitFor([this] { return isEnabled("Check for Updates…"); }));
}

TEST_F(CopyWithUpdates, offersTheRestartAfterTheRun) {
    click("Load sample Sphere");
    waitForModel("sphere.stl");
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::solving));
    ASSERT_TRUE(postpone());
    user->settle();
    EXPECT_FALSE(shows("Install Ostrella 2.0?"));
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished)) << testing::PrintToString(log());
    ASSERT_TRUE(waitForOffer());
    EXPECT_TRUE(shows("The simulation has ended. Ostrella restarts to install the update. Choose "
                      "Later to keep working; the update installs when you quit."));
    click("Restart Now");
    EXPECT_TRUE(waitFor([this] { return installs == 1; }));
    EXPECT_TRUE(waitFor([this] { return !shows("Install Ostrella 2.0?"); }));
}

TEST_F(CopyWithUpdates, asksAgainOnlyFromTheMenuAfterLater) {
    SimulationControllerProbe::setPhase(app->simulation, RunPhase::solving());
    ASSERT_TRUE(postpone());
    SimulationControllerProbe::setPhase(app->simulation, RunPhase::finished(true));
    ASSERT_TRUE(waitForOffer());
    click("Later");
    EXPECT_TRUE(waitFor([this] { return !shows("Install Ostrella 2.0?"); }));
    EXPECT_EQ(installs, 0);
    choose("Help", "Check for Updates…");
    EXPECT_TRUE(waitForOffer());
    EXPECT_EQ(scripted.checks, 0);
    // As the other button.
    user->type(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return !shows("Install Ostrella 2.0?"); }));
    EXPECT_EQ(installs, 0);
}

} // namespace
} // namespace test
} // namespace ostrella
