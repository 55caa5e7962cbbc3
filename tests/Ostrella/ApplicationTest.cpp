#include "Ostrella/OstrellaApp.h"

#include "Platform/SystemFacts.h"
#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

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

class ApplicationTest : public testing::Test {
protected:
    void giveUpdates() {
        auto made = std::make_unique<ScriptedUpdater>();
        updater = made.get();
        app.updates = std::make_unique<UpdateController>(std::move(made), timers,
            [this](const UpdateAlert& alert, const std::function<void(bool)>&) {
                questions.push_back(alert.message);
            });
    }

    TemporaryDirectory directory;
    MemoryPreferences preferences;
    ManualTimers timers;
    std::vector<std::string> questions;
    OstrellaApp app{{AppBundle(directory.path()), directory.path(), &SystemFacts::words()},
        preferences, {}, [](const std::string&, const std::string&) {}};
    ScriptedUpdater* updater = nullptr;
};

TEST_F(ApplicationTest, hasNoUpdatesWithoutAWindow) {
    EXPECT_FALSE(app.updates);
    app.start();
}

TEST_F(ApplicationTest, startsTheUpdaterTenSecondsAfterItsOwnStart) {
    giveUpdates();
    EXPECT_THAT(timers.pending(), IsEmpty());
    app.start();
    EXPECT_THAT(timers.pending(), ElementsAre(10.0));
    timers.advance(10);
    EXPECT_TRUE(waitUntil([this] { return app.updates->isStarted(); }));
    EXPECT_EQ(updater->starts, 1);
}

TEST_F(ApplicationTest, keepsUpdatesFromItsRuns) {
    giveUpdates();
    app.start();
    const auto lines = app.logStore.count();
    SimulationControllerProbe::setPhase(app.simulation, RunPhase::solving());
    AppcastItem item;
    item.displayVersionString = "2.0";
    EXPECT_TRUE(updater->delegate->shouldPostponeRelaunch(item, [] {}));
    EXPECT_EQ(app.logStore.count(), lines + 1);
    EXPECT_THAT(questions, IsEmpty());
    SimulationControllerProbe::setPhase(app.simulation, RunPhase::finished(true));
    EXPECT_TRUE(waitUntil([this] { return !questions.empty(); }));
    EXPECT_THAT(questions, ElementsAre("Install Ostrella 2.0?"));
}

} // namespace
} // namespace test
} // namespace ostrella
