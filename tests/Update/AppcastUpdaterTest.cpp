#include "Platform/PackageUse.h"
#include "Update/UpdaterFixture.h"

#include <set>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
namespace fs = std::filesystem;

class AppcastUpdaterTest : public UpdaterFixture {};

TEST_F(AppcastUpdaterTest, WithoutAFeedItStartsQuietlyAndAManualCheckTellsWhy) {
    information_.erase("SUFeedURL");
    AppcastUpdater& updater = make();
    EXPECT_FALSE(updater.canCheckForUpdates());
    EXPECT_EQ(updater.startUpdater(), std::nullopt);
    EXPECT_TRUE(updater.canCheckForUpdates());
    EXPECT_THAT(timers_.pending(), IsEmpty());
    EXPECT_THAT(log_, IsEmpty());
    updater.checkForUpdates();
    EXPECT_THAT(log_, ElementsAre("No update feed is configured for this copy of Ostrella."));
    EXPECT_FALSE(updater.sessionInProgress());
}

TEST_F(AppcastUpdaterTest, ACopyThatTellsNothingOfItselfHasNoFeed) {
    auto nothing = surroundings();
    nothing.information.reset();
    AppcastUpdater updater(nothing);
    EXPECT_EQ(updater.startUpdater(), std::nullopt);
    EXPECT_THAT(timers_.pending(), IsEmpty());
}

TEST_F(AppcastUpdaterTest, AFeedThatIsNotSafeDoesNotStart) {
    for (const std::string feed : {"http://example.org/feed.xml", "ftp://example.org/feed",
             "feed.xml", "https://", "https:///feed.xml", "rubbish \x01"}) {
        information_["SUFeedURL"] = feed;
        EXPECT_EQ(make().startUpdater(), "The address of the update feed is not one of HTTPS.")
            << feed;
        EXPECT_FALSE(updater_->canCheckForUpdates());
    }
    information_["SUFeedURL"] = "file://" + feed_.string();
    auto strict = surroundings();
    strict.allowsFileAddresses = false;
    EXPECT_EQ(AppcastUpdater(strict).startUpdater(),
        "The address of the update feed is not one of HTTPS.");
}

TEST_F(AppcastUpdaterTest, WithoutAKeyToCheckWithItDoesNotStart) {
    for (const std::string key : {"", "rubbish!", "c2hvcnQ="}) {
        information_["SUPublicEDKey"] = key;
        EXPECT_EQ(make().startUpdater(), "The key to check updates with is not 32 bytes in base64.")
            << key;
    }
    information_["SUPublicEDKey"] = key_.publicKey();
    EXPECT_EQ(make().startUpdater(), std::nullopt);
}

TEST_F(AppcastUpdaterTest, NothingNewer) {
    writeFeed({publish("1.0.0", copyEntries("1.0.0"))});
    started();
    updater_->checkForUpdates();
    EXPECT_EQ(updater_->session().stage, Stage::checking);
    EXPECT_TRUE(updater_->session().userInitiated);
    EXPECT_TRUE(updater_->sessionInProgress());
    ASSERT_TRUE(comesTo(Stage::upToDate));
    updater_->acknowledge();
    EXPECT_EQ(updater_->session().stage, Stage::idle);
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(AppcastUpdaterTest, TheNewestOfTheFeedIsOffered) {
    writeFeed({itemOf("1.1.0", ""), itemOf("1.10.0", ""), itemOf("0.9", ""), itemOf("1.9", "")});
    started();
    search(Stage::found);
    EXPECT_EQ(updater_->session().item.version, "1.10.0");
    EXPECT_THAT(delegate_.calls, ElementsAre("found 1.10.0", "show"));
}

TEST_F(AppcastUpdaterTest, AFeedOfOlderVersionsIsRefusedWithALine) {
    writeFeed({publish("0.9.0", copyEntries("0.9.0"))});
    started();
    search(Stage::upToDate);
    EXPECT_THAT(
        log_, ElementsAre("Update refused · Version 0.9.0 of the feed is older than 1.0.0."));
}

TEST_F(AppcastUpdaterTest, AFeedThatCannotBeReadIsOneLineAndAFailureThatIsAcknowledged) {
    for (const std::string text : {"rubbish", "", "<rss", "<!DOCTYPE a [<!ENTITY b 'c'>]><rss/>"}) {
        log_.clear();
        writeFile(feed_, text);
        started();
        search(Stage::failed);
        ASSERT_EQ(log_.size(), 1U) << text;
        EXPECT_EQ(log_.front(), "Update refused · " + updater_->session().text);
        updater_->acknowledge();
        EXPECT_FALSE(updater_->sessionInProgress());
    }
}

TEST_F(AppcastUpdaterTest, FromTheCheckToTheNewVersionAtQuit) {
    offerNext();
    started();
    prepareNext();
    EXPECT_EQ(updater_->session().item.version, "1.1.0");
    updater_->remindLater();
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_EQ(installed(), "1.0.0");

    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_EQ(quits_, 0);
    EXPECT_THAT(log_, IsEmpty());
    EXPECT_TRUE(fs::is_empty(directory_.path() / "cache"));
}

TEST_F(AppcastUpdaterTest, WhatLiesReadyIsShownAgainWithoutTheFeed) {
    offerNext();
    started();
    prepareNext();
    updater_->remindLater();
    fs::remove(feed_);
    updater_->checkForUpdates();
    EXPECT_EQ(updater_->session().stage, Stage::ready);
    EXPECT_EQ(updater_->session().item.version, "1.1.0");
}

TEST_F(AppcastUpdaterTest, ANewerOneTakesThePlaceOfWhatLiesReady) {
    offerNext();
    started();
    prepareNext();
    updater_->remindLater();
    clock_.advance(6 * 3600);
    scheduledCheck();
    EXPECT_FALSE(updater_->sessionInProgress()) << "the same version again is nothing new";

    writeFeed({publish("1.2.0", copyEntries("1.2.0"))});
    clock_.advance(6 * 3600);
    scheduledCheck();
    ASSERT_EQ(updater_->session().stage, Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::ready)) << updater_->session().text;
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.2.0");
}

TEST_F(AppcastUpdaterTest, TheRestartPutsItInPlaceAndEndsTheApplication) {
    offerNext();
    started();
    prepareNext();
    updater_->installAndRestart();
    EXPECT_EQ(quits_, 1);
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_FALSE(updater_->sessionInProgress());
}

TEST_F(AppcastUpdaterTest, ARestartThatCannotBeDoneIsAFailureAndTheApplicationGoesOn) {
    offerNext();
    started();
    prepareNext();
    fs::remove_all(root_.parent_path() / ".ostrella.ostrella-update");
    updater_->installAndRestart();
    EXPECT_EQ(quits_, 0);
    EXPECT_EQ(updater_->session().stage, Stage::failed);
    EXPECT_THAT(
        log_, ElementsAre("Update refused · The update that lay ready is not there any more."));
    updater_->acknowledge();
    updater_->installAtQuit();
    expectNothingInstalled();
}

TEST_F(AppcastUpdaterTest, TheDelegatePostponesTheRestart) {
    offerNext();
    started();
    prepareNext();
    delegate_.isRunning = true;
    updater_->installAndRestart();
    EXPECT_EQ(quits_, 0);
    EXPECT_EQ(updater_->session().stage, Stage::idle);
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_EQ(installed(), "1.0.0");

    delegate_.isRunning = false;
    delegate_.postponed();
    EXPECT_EQ(quits_, 1);
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(AppcastUpdaterTest, WhatWasPostponedIsInstalledAtQuit) {
    offerNext();
    started();
    prepareNext();
    delegate_.isRunning = true;
    updater_->installAndRestart();
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
    updater_.reset();
    delegate_.postponed();
    EXPECT_EQ(quits_, 0);
}

/// Each of them is published, but is not what it should be.
TEST_F(AppcastUpdaterTest, WhatDoesNotDeserveTrustIsRefused) {
    const auto good = copyEntries("1.1.0");
    AppcastItem wrongKey = publish("1.1.0", good);
    const SigningKey stranger;
    wrongKey.signature = stranger.sign(readFile(archive_));
    AppcastItem unsigned_ = wrongKey;
    unsigned_.signature.clear();
    AppcastItem shortSignature = wrongKey;
    shortSignature.signature = "c2hvcnQ=";
    AppcastItem shorter = itemOf("1.1.0", readFile(archive_));
    shorter.archiveLength -= 1;
    AppcastItem longer = itemOf("1.1.0", readFile(archive_));
    longer.archiveLength += 1;
    const AppcastItem otherVersion = itemOf("1.2.0", readFile(archive_));
    for (const AppcastItem& item :
        {wrongKey, unsigned_, shortSignature, shorter, longer, otherVersion}) {
        log_.clear();
        writeFeed({item});
        started();
        search(Stage::found);
        updater_->install();
        ASSERT_TRUE(comesTo(Stage::failed));
        ASSERT_EQ(log_.size(), 1U);
        EXPECT_EQ(log_.front(), "Update refused · " + updater_->session().text);
        updater_->acknowledge();
        updater_->installAtQuit();
        expectNothingInstalled();
    }
}

TEST_F(AppcastUpdaterTest, AChangedArchiveIsRefused) {
    offerNext();
    std::string bytes = readFile(archive_);
    bytes[bytes.size() / 2] ^= 1;
    writeFile(archive_, bytes);
    started();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::failed));
    EXPECT_THAT(
        log_, ElementsAre("Update refused · The signature of the update archive is wrong."));
    expectNothingInstalled();
    EXPECT_TRUE(fs::is_empty(directory_.path() / "cache"));
}

TEST_F(AppcastUpdaterTest, AManagedCopyIsOnlyToldOfTheUpdate) {
    writeFile(root_ / "readme.txt", "somebody else's");
    offerNext();
    started();
    search(Stage::noticeOnly);
    EXPECT_THAT(updater_->session().text,
        StartsWith("This copy is not replaced: it shares its folder with "));
    updater_->install();
    EXPECT_EQ(updater_->session().stage, Stage::noticeOnly);
    updater_->acknowledge();
    EXPECT_FALSE(updater_->sessionInProgress());

    clock_.advance(6 * 3600);
    scheduledCheck();
    EXPECT_FALSE(updater_->sessionInProgress()) << "a notice is not shown twice";
    search(Stage::noticeOnly);
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.0.0");
}

TEST_F(AppcastUpdaterTest, AReleaseWithoutAnArchiveIsOnlyToldOf) {
    AppcastItem item;
    item.version = "2.0";
    writeFeed({item});
    started();
    search(Stage::noticeOnly);
    EXPECT_EQ(updater_->session().item.infoAddress, "https://example.org/news");
}

TEST_F(AppcastUpdaterTest, PreparingCanBeLeft) {
    writeFeed({publish(
        "1.1.0", copyEntries("1.1.0", "#!/bin/sh\nwhile :; do read x </dev/zero; done\n"))});
    started();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::preparing));
    updater_->cancel();
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_THAT(log_, IsEmpty());

    // Another can come; it waits until the one before has let go.
    offerNext();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::ready)) << updater_->session().text;
}

TEST_F(AppcastUpdaterTest, AnswersThatDoNotFitTheStageDoNothing) {
    started();
    const auto answerAll = [this] {
        updater_->install();
        updater_->remindLater();
        updater_->skipVersion();
        updater_->cancel();
        updater_->acknowledge();
        updater_->installAndRestart();
    };
    answerAll();
    EXPECT_FALSE(updater_->sessionInProgress());
    updater_->installAtQuit();
    EXPECT_EQ(quits_, 0);
    expectNothingInstalled();
    EXPECT_EQ(preferences_.value("Ostrella.updates.skipped"), std::nullopt);
}

TEST_F(AppcastUpdaterTest, AnUpdateOnShowIsBroughtToTheFront) {
    offerNext();
    started();
    search(Stage::found);
    int attention = 0;
    QObject::connect(updater_.get(), &AppcastUpdater::attentionRequested, updater_.get(),
        [&attention] { ++attention; });
    updater_->checkForUpdates();
    EXPECT_EQ(attention, 1);
    EXPECT_EQ(updater_->session().stage, Stage::found);
}

TEST_F(AppcastUpdaterTest, AVersionThatDidNotComeUpIsToldOfAndNotOfferedBySchedule) {
    offerNext();
    auto after = surroundings();
    after.failedVersion = "1.1.0";
    updater_ = std::make_unique<AppcastUpdater>(after);
    EXPECT_THAT(log_, ElementsAre("Update refused · Version 1.1.0 did not start; the version "
                                  "before is in place again."));
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    scheduledCheck();
    EXPECT_FALSE(updater_->sessionInProgress());
    search(Stage::found);
}

TEST_F(AppcastUpdaterTest, OnlyTheStartThatIsAwaitedConfirmsAnUpdate) {
    offerNext();
    started();
    prepareNext();
    updater_->remindLater();
    updater_->installAtQuit();
    ASSERT_EQ(installed(), "1.1.0");
    const auto previous = root_.parent_path() / "ostrella.previous";
    const auto confirm = [this](FileDescriptor claim) {
        bool isDone = false;
        make().confirmStarted(std::move(claim), [&isDone] { isDone = true; });
        ASSERT_TRUE(waitUntil([&] { return isDone; }));
    };
    information_["CFBundleShortVersionString"] = "1.1.0";
    confirm({});
    EXPECT_EQ(UpdateInstaller::version(previous), "1.0.0") << "nobody awaits this start";
    confirm(AppcastUpdater::recover(root_).claim);
    EXPECT_EQ(namesIn(root_.parent_path()), std::set<std::string>{"ostrella"});
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(AppcastUpdaterTest, ARunOfAnotherProcessPutsItOff) {
    offerNext();
    started();
    prepareNext();
    {
        const PackageUse run(root_);
        updater_->installAndRestart();
        EXPECT_EQ(quits_, 0);
        EXPECT_EQ(updater_->session().stage, Stage::failed);
        EXPECT_THAT(log_, ElementsAre("Update refused · A run uses " + root_.string() + "."));
        updater_->acknowledge();
    }
    EXPECT_EQ(installed(), "1.0.0");
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(AppcastUpdaterTest, AVersionBeforeThatIsKeptIsToldOf) {
    offerNext();
    started();
    prepareNext();
    updater_->installAtQuit();
    const auto previous = root_.parent_path() / "ostrella.previous";
    writeFile(previous / "mine.csv", "mine");
    information_["CFBundleShortVersionString"] = "1.1.0";
    auto recovery = AppcastUpdater::recover(root_);
    make().confirmStarted(std::move(recovery.claim));
    EXPECT_THAT(
        log_, ElementsAre("The version before stays in " + previous.string() +
                          ": it shares its folder with " + (previous / "mine.csv").string() + "."));
    EXPECT_EQ(readFile(previous / "mine.csv"), "mine");
}

TEST_F(AppcastUpdaterTest, WhatLayReadyWhenTheApplicationWasCutOffIsInstalledAtTheNextQuit) {
    offerNext();
    started();
    prepareNext();
    updater_->remindLater();
    updater_.reset();
    delegate_.readyVersion.clear();
    log_.clear();

    started();
    ASSERT_TRUE(waitUntil([this] { return delegate_.readyVersion == "1.1.0"; }));
    EXPECT_THAT(
        log_, ElementsAre("Update 1.1.0 lies ready since an earlier start. It installs at quit."));
    search(Stage::ready);
    EXPECT_EQ(updater_->session().item.version, "1.1.0");
    updater_->remindLater();
    EXPECT_EQ(installed(), "1.0.0");
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(AppcastUpdaterTest, WhatLayReadyButIsNotNewerAnyMoreIsCleared) {
    offerNext();
    started();
    prepareNext();
    updater_.reset();
    information_["CFBundleShortVersionString"] = "1.1.0";
    started();
    EXPECT_TRUE(waitUntil([this] { return namesIn(root_.parent_path()).size() == 1; }));
    EXPECT_EQ(installed(), "1.0.0");
}

TEST_F(AppcastUpdaterTest, LeftoversAreClearedAtTheStart) {
    writeFile(root_.parent_path() / ".ostrella.ostrella-update/ready/bin/ostrella", "old");
    started();
    EXPECT_TRUE(waitUntil([this] { return namesIn(root_.parent_path()).size() == 1; }));
}

} // namespace
