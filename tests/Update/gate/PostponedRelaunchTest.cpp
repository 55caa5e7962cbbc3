#include "UpdateControllerFixture.h"

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

UpdateAlert offerOf(const std::string& version) {
    return {.message = "Install Ostrella " + version + "?",
        .text = "The simulation has ended. Ostrella restarts to install the update. Choose Later "
                "to keep working; the update installs when you quit.",
        .firstButton = "Restart Now",
        .secondButton = "Later"};
}

class PostponedRelaunchTest : public UpdateControllerTest {
protected:
    PostponedRelaunchTest() {
        attach();
        start();
    }

    void postponeDuringARun() {
        beginRun();
        ASSERT_TRUE(relaunch());
    }
};

TEST_F(PostponedRelaunchTest, doesNotTouchARelaunchWithoutARun) {
    EXPECT_FALSE(relaunch());
    settle();
    EXPECT_THAT(alerts, IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(PostponedRelaunchTest, offersTheRestartWhenTheRunEnds) {
    postponeDuringARun();
    EXPECT_THAT(lines(), ElementsAre(Line("Update 2.0 is ready. It installs when the simulation "
                                          "ends.",
                             LogStore::Level::info)));
    settle();
    EXPECT_THAT(alerts, IsEmpty());
    setPhase(RunPhase::failed("solver", "It diverged."));
    EXPECT_THAT(alerts, IsEmpty());
    settle();
    EXPECT_THAT(alerts, ElementsAre(offerOf("2.0")));
    EXPECT_TRUE(controller->gate().offeredRestart);
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(PostponedRelaunchTest, restartsOnTheFirstButton) {
    postponeDuringARun();
    endRun();
    ASSERT_THAT(replies, SizeIs(1));
    replies[0](true);
    EXPECT_THAT(installed, ElementsAre("2.0"));
    EXPECT_FALSE(controller->gate().pendingInstall);
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(PostponedRelaunchTest, keepsTheUpdateOnLater) {
    postponeDuringARun();
    endRun();
    replies[0](false);
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_TRUE(controller->gate().pendingInstall);
}

TEST_F(PostponedRelaunchTest, doesNotAskAgainAfterTheNextRun) {
    postponeDuringARun();
    endRun();
    replies[0](false);
    beginRun();
    endRun();
    beginRun();
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
    EXPECT_EQ(updater->checks, 0);
}

TEST_F(PostponedRelaunchTest, asksAgainWhenTheUserLooksForUpdates) {
    postponeDuringARun();
    endRun();
    replies[0](false);
    controller->checkForUpdates();
    EXPECT_THAT(alerts, SizeIs(2));
    EXPECT_EQ(updater->checks, 0);
    replies[1](true);
    EXPECT_THAT(installed, ElementsAre("2.0"));
    // Nothing waits any more: a check is a check.
    controller->checkForUpdates();
    EXPECT_THAT(alerts, SizeIs(2));
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(PostponedRelaunchTest, ignoresACheckDuringTheRun) {
    postponeDuringARun();
    controller->checkForUpdates();
    settle();
    EXPECT_THAT(alerts, IsEmpty());
    EXPECT_EQ(updater->checks, 0);
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
}

TEST_F(PostponedRelaunchTest, offersASecondUpdateOfALaterRun) {
    postponeDuringARun();
    endRun();
    replies[0](false);
    beginRun();
    EXPECT_TRUE(relaunch("2.1"));
    endRun();
    EXPECT_THAT(alerts, ElementsAre(offerOf("2.0"), offerOf("2.1")));
    replies[1](true);
    EXPECT_THAT(installed, ElementsAre("2.1"));
}

TEST_F(PostponedRelaunchTest, doesWithoutAVersion) {
    beginRun();
    relaunch("");
    endRun();
    EXPECT_THAT(alerts, ElementsAre(offerOf("")));
}

TEST_F(PostponedRelaunchTest, keepsTheMenuItemEnabledWhileAnUpdateWaits) {
    beginRun();
    updater->setCanCheck(false);
    settle();
    EXPECT_FALSE(controller->canCheckForUpdates());
    relaunch();
    EXPECT_TRUE(controller->canCheckForUpdates());
    endRun();
    replies[0](true);
    EXPECT_FALSE(controller->canCheckForUpdates());
}

TEST_F(PostponedRelaunchTest, comesBeforeAnUpdateThatWasHeldBack) {
    postponeDuringARun();
    findBySchedule();
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
    EXPECT_EQ(updater->checks, 0);
    EXPECT_TRUE(controller->gate().deferredUpdate);
    replies[0](false);
    // Declined, it no longer stands in the way.
    beginRun();
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(PostponedRelaunchTest, asksOneQuestionAtATime) {
    postponeDuringARun();
    endRun();
    controller->checkForUpdates();
    EXPECT_THAT(alerts, SizeIs(1));
}

TEST_F(PostponedRelaunchTest, asksOnceWhereTheUserIsFasterThanTheEndOfTheRun) {
    postponeDuringARun();
    setPhase(RunPhase::finished(true));
    controller->checkForUpdates();
    EXPECT_THAT(alerts, SizeIs(1));
    settle();
    EXPECT_THAT(alerts, SizeIs(1));
    replies[0](false);
    settle();
    EXPECT_THAT(alerts, SizeIs(1));
}

TEST_F(PostponedRelaunchTest, neverRestartsARunThatBeganUnderTheQuestion) {
    postponeDuringARun();
    endRun();
    beginRun();
    replies[0](true);
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_TRUE(controller->gate().pendingInstall);
    endRun();
    ASSERT_THAT(replies, SizeIs(2));
    replies[1](true);
    EXPECT_THAT(installed, ElementsAre("2.0"));
}

TEST_F(PostponedRelaunchTest, takesALaterUnderANewRunAtItsWord) {
    postponeDuringARun();
    endRun();
    beginRun();
    replies[0](false);
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
}

TEST_F(PostponedRelaunchTest, asksAnewWhereANewerUpdateCameUnderTheQuestion) {
    postponeDuringARun();
    endRun();
    beginRun();
    relaunch("2.1");
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
    replies[0](true);
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_THAT(alerts, ElementsAre(offerOf("2.0"), offerOf("2.1")));
    replies[1](true);
    EXPECT_THAT(installed, ElementsAre("2.1"));
}

TEST_F(PostponedRelaunchTest, waitsForTheNextRunThatFollowsAtOnce) {
    postponeDuringARun();
    setPhase(RunPhase::finished(true));
    beginRun();
    settle();
    EXPECT_THAT(alerts, IsEmpty());
    endRun();
    EXPECT_THAT(alerts, SizeIs(1));
}

TEST_F(PostponedRelaunchTest, toleratesAnAnswerThatComesAfterTheEnd) {
    postponeDuringARun();
    endRun();
    controller.reset();
    replies[0](true);
    EXPECT_THAT(installed, IsEmpty());
}

} // namespace
} // namespace ostrella::test
