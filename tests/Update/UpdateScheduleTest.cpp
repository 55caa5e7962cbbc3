// When the updater looks at its feed by itself, and what it then shows.

#include "Solver/Tools/Background.h"
#include "Update/UpdaterFixture.h"

#include <QCoreApplication>

#include <future>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double hour = 3600;

class UpdateScheduleTest : public UpdaterFixture {
protected:
    /// Both the clock on the wall and the timers go on, with the events that follow.
    void pass(double hours) {
        clock_.advance(hours * hour);
        timers_.advance(hours * hour);
        // The timers' call has been queued for this thread; whatever follows comes after it.
        bool isServed = false;
        QMetaObject::invokeMethod(
            updater_.get(), [&isServed] { isServed = true; }, Qt::QueuedConnection);
        ASSERT_TRUE(waitUntil([&isServed] { return isServed; }));
    }

    bool isDone() {
        return waitUntil([this] { return !updater_->sessionInProgress(); });
    }
};

TEST_F(UpdateScheduleTest, TheFirstCheckComesAtTheStartAndTheNextSixHoursLater) {
    writeFeed({publish("1.0.0", copyEntries("1.0.0"))});
    started();
    scheduledCheck();
    ASSERT_TRUE(isDone());
    EXPECT_EQ(updater_->session().stage, Stage::idle);
    for (int i = 1; i < 6; ++i) {
        pass(1);
        EXPECT_FALSE(updater_->sessionInProgress()) << "after " << i << " hours";
    }
    const auto before = checks();
    pass(1);
    ASSERT_TRUE(waitUntil([&] { return checks() != before; }));
    ASSERT_TRUE(isDone());
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(UpdateScheduleTest, TheLastCheckIsRememberedAcrossStarts) {
    offerNext();
    clock_.advance(1000 * hour);
    preferences_.set("Ostrella.updates.lastCheck", std::int64_t{997 * 3600});
    started();
    pass(2);
    EXPECT_FALSE(updater_->sessionInProgress());
    pass(1);
    EXPECT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, ACheckInTheFutureWasByAWrongClock) {
    offerNext();
    preferences_.set("Ostrella.updates.lastCheck", std::int64_t{2} * 1000 * 1000 * 1000);
    started();
    pass(0);
    EXPECT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, AMachineThatSleptChecksSoonAfter) {
    writeFeed({publish("1.0.0", copyEntries("1.0.0"))});
    started();
    scheduledCheck();
    ASSERT_TRUE(isDone());
    offerNext();
    // Timers stand still in sleep.
    clock_.advance(100 * hour);
    timers_.advance(hour);
    EXPECT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, ItIsTheUsersChoice) {
    offerNext();
    started();
    updater_->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(updater_->automaticallyChecksForUpdates());
    EXPECT_THAT(timers_.pending(), IsEmpty());
    pass(24);
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_FALSE(make().automaticallyChecksForUpdates()) << "it is remembered";

    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    EXPECT_THAT(timers_.pending(), IsEmpty());
    int changes = 0;
    QObject::connect(updater_.get(), &Updater::automaticallyChecksForUpdatesChanged, updater_.get(),
        [&changes] { ++changes; });
    updater_->setAutomaticallyChecksForUpdates(true);
    updater_->setAutomaticallyChecksForUpdates(true);
    EXPECT_EQ(changes, 1);
    pass(0);
    EXPECT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, WhatItFindsIsShownAsNotAskedFor) {
    offerNext();
    started();
    pass(0);
    ASSERT_TRUE(comesTo(Stage::found));
    EXPECT_FALSE(updater_->session().userInitiated);
    EXPECT_THAT(delegate_.calls, ElementsAre("found 1.1.0", "show"));
    updater_->remindLater();
    pass(5);
    EXPECT_FALSE(updater_->sessionInProgress());
    pass(1);
    EXPECT_TRUE(comesTo(Stage::found)) << "later has come";
}

TEST_F(UpdateScheduleTest, WhileTheDelegateHoldsItNothingIsShown) {
    offerNext();
    delegate_.isRunning = true;
    started();
    scheduledCheck();
    EXPECT_EQ(updater_->session().stage, Stage::idle);
    EXPECT_TRUE(updater_->sessionInProgress());
    EXPECT_TRUE(updater_->canCheckForUpdates());
    EXPECT_THAT(delegate_.calls, ElementsAre("found 1.1.0", "hold"));
    pass(24);
    EXPECT_THAT(delegate_.calls, SizeIs(2)) << "it holds one, and that is enough";

    delegate_.isRunning = false;
    updater_->checkForUpdates();
    EXPECT_EQ(updater_->session().stage, Stage::found);
    EXPECT_THAT(delegate_.calls, ElementsAre("found 1.1.0", "hold", "show"));
}

TEST_F(UpdateScheduleTest, ASkippedVersionIsShownToWhoeverAsksOnly) {
    offerNext();
    started();
    pass(0);
    ASSERT_TRUE(comesTo(Stage::found));
    updater_->skipVersion();
    EXPECT_FALSE(updater_->sessionInProgress());
    clock_.advance(6 * hour);
    scheduledCheck();
    ASSERT_TRUE(isDone());
    search(Stage::found);
    updater_->remindLater();

    writeFeed({publish("1.2.0", copyEntries("1.2.0"))});
    pass(6);
    EXPECT_TRUE(comesTo(Stage::found)) << "another version was not skipped";
    EXPECT_EQ(updater_->session().item.version, "1.2.0");
}

TEST_F(UpdateScheduleTest, AFailureIsOneLineAndNothingIsShown) {
    clock_.advance(1000 * hour);
    started();
    scheduledCheck();
    ASSERT_TRUE(isDone());
    EXPECT_THAT(log_, SizeIs(1));
    EXPECT_EQ(updater_->session().stage, Stage::idle);
    pass(5);
    EXPECT_THAT(log_, SizeIs(1));
    EXPECT_FALSE(updater_->sessionInProgress());
    pass(1);
    ASSERT_TRUE(waitUntil([this] { return log_.size() == 2; }));
}

TEST_F(UpdateScheduleTest, ACheckUnderWayBecomesTheUsers) {
    offerNext();
    started();
    timers_.advance(0);
    ASSERT_TRUE(waitUntil([this] { return updater_->sessionInProgress(); }));
    if (updater_->session().stage == Stage::idle) {
        updater_->checkForUpdates();
        EXPECT_EQ(updater_->session().stage, Stage::checking);
        EXPECT_TRUE(updater_->session().userInitiated);
    }
    ASSERT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, TheScheduleWaitsForTheEndOfASession) {
    offerNext();
    started();
    search(Stage::found);
    const auto calls = delegate_.calls.size();
    pass(24);
    EXPECT_EQ(delegate_.calls.size(), calls);
    updater_->remindLater();
    EXPECT_THAT(timers_.pending(), SizeIs(1));
}

/// No feed is read while the workers wait for it.
class BusyWorkers {
public:
    BusyWorkers() {
        for (int i = 0; i < 8; ++i) {
            Background::run([free = free_] { free.wait(); }, Background::Priority::userInitiated);
        }
    }
    ~BusyWorkers() { promise_.set_value(); }
    BusyWorkers(const BusyWorkers&) = delete;
    BusyWorkers& operator=(const BusyWorkers&) = delete;

private:
    std::promise<void> promise_;
    std::shared_future<void> free_ = promise_.get_future().share();
};

TEST_F(UpdateScheduleTest, AFeedIsReadByAWorkerAndNotWhereTheWindowWaits) {
    offerNext();
    started();
    {
        const BusyWorkers busy;
        updater_->checkForUpdates();
        ASSERT_TRUE(waitUntil([this] { return timers_.pending().empty(); })) << "it has come";
        QCoreApplication::processEvents();
        EXPECT_EQ(updater_->session().stage, Stage::checking);
    }
    EXPECT_TRUE(comesTo(Stage::found));
}

TEST_F(UpdateScheduleTest, WhatWasReadForACheckThatWasLeftIsNotShown) {
    offerNext();
    started();
    {
        const BusyWorkers busy;
        updater_->checkForUpdates();
        ASSERT_TRUE(waitUntil([this] { return timers_.pending().empty(); }));
        QCoreApplication::processEvents();
        updater_->cancel();
        writeFeed({});
        updater_->checkForUpdates();
    }
    ASSERT_TRUE(waitUntil([this] { return updater_->session().stage != Stage::checking; }));
    EXPECT_EQ(updater_->session().stage, Stage::upToDate);
}

TEST_F(UpdateScheduleTest, ItsChangesAreTold) {
    offerNext();
    make();
    int can = 0;
    int inProgress = 0;
    int session = 0;
    QObject::connect(
        updater_.get(), &Updater::canCheckForUpdatesChanged, updater_.get(), [&can] { ++can; });
    QObject::connect(updater_.get(), &Updater::sessionInProgressChanged, updater_.get(),
        [&inProgress] { ++inProgress; });
    QObject::connect(
        updater_.get(), &AppcastUpdater::sessionChanged, updater_.get(), [&session] { ++session; });
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    EXPECT_EQ(can, 1);
    search(Stage::found);
    EXPECT_EQ(inProgress, 1);
    EXPECT_GE(session, 2);
    updater_->remindLater();
    EXPECT_EQ(inProgress, 2);
    EXPECT_THAT(delegate_.calls, Contains("finish"));
}

} // namespace
