#include "Update/UpdateGate.h"

#include <gmock/gmock.h>

#include <memory>
#include <thread>

namespace ostrella {
namespace {

class UpdateGateTest : public testing::Test {
protected:
    UpdateGateTest() {
        item.version = "200";
        item.displayVersionString = "2.0";
        gate.log = log.get();
        gate.onPostponed = [this] { ++postponed; };
    }

    void setRunning(bool running) {
        gate.isRunning = [running] { return running; };
    }

    bool postpone(int& installs) {
        return gate.shouldPostponeRelaunch(item, [&installs] { ++installs; });
    }

    AppcastItem item;
    std::unique_ptr<LogStore> log = std::make_unique<LogStore>();
    UpdateGate gate;
    int postponed = 0;
};

TEST_F(UpdateGateTest, beginsOpen) {
    EXPECT_FALSE(gate.isRunning());
    EXPECT_FALSE(gate.pendingInstall);
    EXPECT_EQ(gate.pendingVersion, std::nullopt);
    EXPECT_FALSE(gate.deferredUpdate);
    EXPECT_FALSE(gate.offeredRestart);
}

TEST_F(UpdateGateTest, tellsThatAnUpdateWasFound) {
    gate.didFindValidUpdate(item);
    int found = 0;
    gate.onFoundUpdate = [&found] { ++found; };
    gate.didFindValidUpdate(item);
    EXPECT_EQ(found, 1);
}

TEST_F(UpdateGateTest, doesNotPostponeARelaunchWithoutARun) {
    int installs = 0;
    EXPECT_FALSE(postpone(installs));
    EXPECT_FALSE(gate.pendingInstall);
    EXPECT_EQ(gate.pendingVersion, std::nullopt);
    EXPECT_EQ(postponed, 0);
    EXPECT_EQ(log->count(), 0);
    EXPECT_EQ(installs, 0);
}

TEST_F(UpdateGateTest, postponesARelaunchDuringARun) {
    setRunning(true);
    int installs = 0;
    EXPECT_TRUE(postpone(installs));
    EXPECT_EQ(gate.pendingVersion, "2.0");
    EXPECT_FALSE(gate.offeredRestart);
    EXPECT_EQ(postponed, 1);
    ASSERT_EQ(log->count(), 1);
    EXPECT_EQ(log->lines()[0].text, "Update 2.0 is ready. It installs when the simulation ends.");
    EXPECT_EQ(log->lines()[0].level, LogStore::Level::info);
    EXPECT_EQ(installs, 0);
    gate.pendingInstall();
    EXPECT_EQ(installs, 1);
}

TEST_F(UpdateGateTest, hasItsStateInOrderWhenItTellsOfAPostponement) {
    setRunning(true);
    gate.offeredRestart = true;
    bool wasReady = false;
    gate.onPostponed = [&] {
        wasReady = gate.pendingInstall && gate.pendingVersion == "2.0" && !gate.offeredRestart;
    };
    int installs = 0;
    postpone(installs);
    EXPECT_TRUE(wasReady);
}

TEST_F(UpdateGateTest, keepsTheLatestOfTwoPostponedUpdatesAndOffersItAnew) {
    setRunning(true);
    int first = 0;
    int second = 0;
    postpone(first);
    gate.offeredRestart = true;
    item.displayVersionString = "2.1";
    postpone(second);
    EXPECT_EQ(gate.pendingVersion, "2.1");
    EXPECT_FALSE(gate.offeredRestart);
    gate.pendingInstall();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(UpdateGateTest, doesWithoutALog) {
    setRunning(true);
    log.reset();
    int installs = 0;
    EXPECT_TRUE(postpone(installs));
    EXPECT_TRUE(gate.pendingInstall);
    EXPECT_EQ(postponed, 1);
}

TEST_F(UpdateGateTest, remindsGentlyAtAnyTime) {
    EXPECT_TRUE(gate.supportsGentleScheduledUpdateReminders());
    setRunning(true);
    EXPECT_TRUE(gate.supportsGentleScheduledUpdateReminders());
}

TEST_F(UpdateGateTest, letsAScheduledUpdateShowItselfOnlyWithoutARun) {
    for (const bool immediateFocus : {false, true}) {
        setRunning(false);
        EXPECT_TRUE(gate.shouldHandleShowingScheduledUpdate(item, immediateFocus));
        setRunning(true);
        EXPECT_FALSE(gate.shouldHandleShowingScheduledUpdate(item, immediateFocus));
    }
}

TEST_F(UpdateGateTest, remembersAnUpdateThatWasNotShown) {
    gate.willHandleShowingUpdate(true, item);
    EXPECT_FALSE(gate.deferredUpdate);
    gate.willHandleShowingUpdate(false, item);
    EXPECT_TRUE(gate.deferredUpdate);
    gate.willHandleShowingUpdate(true, item);
    EXPECT_TRUE(gate.deferredUpdate);
    gate.willFinishUpdateSession();
    EXPECT_FALSE(gate.deferredUpdate);
}

TEST_F(UpdateGateTest, namesTheUpdateThatLiesReadyByNow) {
    gate.readyUpdateChanged(&item);
    EXPECT_EQ(gate.pendingVersion, std::nullopt) << "nothing was held back";
    setRunning(true);
    int installs = 0;
    EXPECT_TRUE(postpone(installs));
    gate.offeredRestart = true;
    gate.readyUpdateChanged(&item);
    EXPECT_TRUE(gate.offeredRestart) << "it is the same one";
    item.displayVersionString = "2.1";
    gate.readyUpdateChanged(&item);
    EXPECT_EQ(gate.pendingVersion, "2.1");
    EXPECT_FALSE(gate.offeredRestart);
    gate.pendingInstall();
    EXPECT_EQ(installs, 1);
    gate.offeredRestart = true;
    gate.readyUpdateChanged(nullptr);
    EXPECT_FALSE(gate.pendingInstall);
    EXPECT_EQ(gate.pendingVersion, std::nullopt);
    EXPECT_FALSE(gate.offeredRestart);
}

using UpdateGateDeathTest = UpdateGateTest;

TEST_F(UpdateGateDeathTest, isForTheMainThreadOnly) {
    EXPECT_DEATH(std::thread([this] { gate.willFinishUpdateSession(); }).join(), "main thread");
}

} // namespace
} // namespace ostrella
