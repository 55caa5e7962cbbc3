// The exchange of two versions, and every moment at which it can be cut short.

#include "Platform/PackageUse.h"
#include "Update/InstallerFixture.h"

#include <utility>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using testing::StartsWith;
namespace fs = std::filesystem;

/// Both ways: in one step of the file system, and in two.
class UpdateExchangeTest : public InstallerFixture, public testing::WithParamInterface<bool> {
protected:
    UpdateInstaller subject(std::function<void()> halfWay = {}) {
        return installer(
            {.atomically = GetParam(), .halfWay = std::move(halfWay), .timers = &timers_});
    }

    /// Version 1.1.0 in place, not come up yet, by a process that has ended.
    void exchangeElsewhere() {
        inProcessThatEnds([this] {
            UpdateInstaller other = subject();
            stage(other);
            other.exchange();
            endProcess();
        });
        ASSERT_EQ(installed(), "1.1.0");
        ASSERT_EQ(UpdateInstaller::version(previous_), "1.0.0");
    }

    /// Nothing is left to do, and another update can begin.
    void expectSettled(const std::string& version) {
        EXPECT_EQ(installed(), version);
        UpdateInstaller next = subject();
        const auto recovery = next.recover();
        EXPECT_EQ(recovery.failedVersion, "");
        EXPECT_FALSE(recovery.startInstead);
        next.discard();
        EXPECT_EQ(beside(), Names{"ostrella"});
        makeArchive(archive_, copyEntries("2.0"));
        next.stage(archive_, item("2.0"), version);
        next.exchange();
        EXPECT_EQ(installed(), "2.0");
    }
};

INSTANTIATE_TEST_SUITE_P(Ways, UpdateExchangeTest, testing::Bool(),
    [](const auto& way) { return way.param ? "OneStep" : "TwoSteps"; });

TEST_P(UpdateExchangeTest, TheNewVersionComesUpAndTheOldOneGoes) {
    exchangeElsewhere();
    UpdateInstaller next = subject();
    auto recovery = next.recover();
    EXPECT_EQ(recovery.failedVersion, "");
    EXPECT_FALSE(recovery.startInstead);
    EXPECT_TRUE(next.confirmStarted("1.1.0", std::move(recovery.claim)));
    next.removePrevious();
    EXPECT_EQ(beside(), Names{"ostrella"});
    expectSettled("1.1.0");
}

TEST_P(UpdateExchangeTest, AVersionThatCameUpIsKeptThoughTheProcessEndsBeforeTheOldOneIsRemoved) {
    exchangeElsewhere();
    inProcessThatEnds([this] {
        UpdateInstaller first = subject();
        auto recovery = first.recover();
        first.confirmStarted("1.1.0", std::move(recovery.claim));
        endProcess();
    });
    EXPECT_FALSE(fs::exists(previous_));
    const auto second = subject().recover();
    EXPECT_EQ(second.failedVersion, "");
    EXPECT_FALSE(second.startInstead);
    expectSettled("1.1.0");
}

TEST_P(UpdateExchangeTest, WhileTheOldVersionIsRemovedNobodyBeginsAnother) {
    exchangeElsewhere();
    UpdateInstaller first = subject();
    auto recovery = first.recover();
    ASSERT_TRUE(first.confirmStarted("1.1.0", std::move(recovery.claim)));
    makeArchive(archive_, copyEntries("2.0"));
    EXPECT_EQ(InstallerFixture::refusal([&] { subject().stage(archive_, item("2.0"), "1.1.0"); }),
        "Update refused · Another Ostrella of this folder is updating it already.");
    first.removePrevious();
    expectSettled("1.1.0");
}

TEST_P(UpdateExchangeTest, AnotherVersionThanTheOneInPlaceDoesNotConfirmIt) {
    exchangeElsewhere();
    UpdateInstaller old = subject();
    auto recovery = old.recover();
    EXPECT_FALSE(old.confirmStarted("1.0.0", std::move(recovery.claim)));
    old.removePrevious();
    EXPECT_EQ(UpdateInstaller::version(previous_), "1.0.0");
    EXPECT_EQ(subject().recover().failedVersion, "1.1.0") << "it has been started, in vain";
}

TEST_P(UpdateExchangeTest, WhatTheUserHasPutIntoTheFolderIsNeverTaken) {
    UpdateInstaller subject = this->subject();
    stage(subject);
    writeFile(root_ / "results/mine.csv", "mine");
    EXPECT_EQ(InstallerFixture::refusal([&] { subject.exchange(); }),
        "Update refused · Cannot replace " + root_.string() + ": it shares its folder with " +
            (root_ / "results").string() + ".");
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_EQ(readFile(root_ / "results/mine.csv"), "mine");
}

TEST_P(UpdateExchangeTest, NothingChangesWhileARunUsesTheFolder) {
    UpdateInstaller subject = this->subject();
    stage(subject);
    {
        const PackageUse one(root_);
        const PackageUse another(root_);
        EXPECT_EQ(InstallerFixture::refusal([&] { subject.exchange(); }),
            "Update refused · A run uses " + root_.string() + ".");
        EXPECT_EQ(installed(), "1.0.0");
        EXPECT_TRUE(subject.isStaged());
    }
    subject.exchange();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_P(UpdateExchangeTest, AVersionBeforeThatHoldsSomethingOfTheUsersIsNotRemoved) {
    exchangeElsewhere();
    writeFile(previous_ / "mine.csv", "mine");
    UpdateInstaller next = subject();
    auto recovery = next.recover();
    EXPECT_TRUE(next.confirmStarted("1.1.0", std::move(recovery.claim)));
    next.removePrevious();
    EXPECT_EQ(beside(), (Names{"ostrella", "ostrella.previous"}));
    EXPECT_EQ(readFile(previous_ / "mine.csv"), "mine");
    EXPECT_EQ(subject().recover().failedVersion, "");
}

TEST_P(UpdateExchangeTest, ANewerVersionThatWasUnpackedByHandMeanwhileStays) {
    UpdateInstaller subject = this->subject();
    stage(subject);
    fs::remove_all(root_);
    makeCopy(root_, "2.0");
    EXPECT_EQ(InstallerFixture::refusal([&] { subject.exchange(); }),
        "Update refused · Version 1.1.0 is not newer than 2.0.");
    EXPECT_EQ(installed(), "2.0");
}

TEST_P(UpdateExchangeTest, WhatOthersCanWriteBesideIsNotBelieved) {
    exchangeElsewhere();
    writeFile(work_ / "installing", "1.1.0\nstarted\n");
    fs::permissions(work_, fs::perms(0777));
    UpdateInstaller next = subject();
    EXPECT_FALSE(next.recover().startInstead);
    EXPECT_FALSE(next.confirmStarted("1.1.0"));
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_EQ(UpdateInstaller::version(previous_), "1.0.0");
    fs::permissions(work_, fs::perms(0700));
    EXPECT_EQ(subject().recover().failedVersion, "1.1.0");
}

TEST_P(UpdateExchangeTest, TheWayBack) {
    UpdateInstaller both = subject();
    stage(both);
    both.exchange();
    both.rollBack();
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_FALSE(fs::exists(previous_));
    EXPECT_EQ(readFile(root_ / "libexec/ostrella/SU2_CFD"), "a solver");

    UpdateInstaller next = subject();
    const auto recovery = next.recover();
    EXPECT_EQ(recovery.failedVersion, "1.1.0");
    EXPECT_FALSE(recovery.startInstead);
}

TEST_P(UpdateExchangeTest, AfterTheWayBackAnotherUpdateCanCome) {
    inProcessThatEnds([this] {
        UpdateInstaller both = subject();
        stage(both);
        both.exchange();
        both.rollBack();
        endProcess();
    });
    UpdateInstaller(root_).recover();
    expectSettled("1.0.0");
}

TEST_P(UpdateExchangeTest, AVersionThatDoesNotComeUpTwiceIsTakenBack) {
    exchangeElsewhere();
    {
        const auto first = subject().recover();
        EXPECT_EQ(first.failedVersion, "");
        EXPECT_FALSE(first.startInstead);
        EXPECT_EQ(installed(), "1.1.0");
    }
    const auto second = subject().recover();
    EXPECT_EQ(second.failedVersion, "1.1.0");
    EXPECT_EQ(second.startInstead, root_ / "bin/ostrella");

    // The version before, which that process becomes, is the one to tell of it.
    const auto third = subject().recover();
    EXPECT_EQ(third.failedVersion, "1.1.0");
    EXPECT_FALSE(third.startInstead);
    expectSettled("1.0.0");
}

TEST_P(UpdateExchangeTest, WhileOneStartTriesNoOtherTakesItBack) {
    exchangeElsewhere();
    auto slow = subject().recover();
    const auto impatient = subject().recover();
    EXPECT_EQ(impatient.failedVersion, "");
    EXPECT_FALSE(impatient.startInstead);
    EXPECT_EQ(installed(), "1.1.0");

    slow.claim.close();
    EXPECT_EQ(subject().recover().failedVersion, "1.1.0");
    EXPECT_EQ(installed(), "1.0.0");
}

TEST_P(UpdateExchangeTest, EndedBetweenTheStepsOfTheExchange) {
    inProcessThatEnds([this] {
        UpdateInstaller other = subject(endProcess);
        stage(other);
        other.exchange();
    });
    if (GetParam()) {
        EXPECT_EQ(installed(), "1.1.0");
        UpdateInstaller next = subject();
        auto recovery = next.recover();
        EXPECT_FALSE(recovery.startInstead);
        EXPECT_EQ(UpdateInstaller::version(previous_), "1.0.0");
        EXPECT_TRUE(next.confirmStarted("1.1.0", std::move(recovery.claim)));
        next.removePrevious();
        expectSettled("1.1.0");
    } else {
        // Nothing is where it was: only the old version can be started, from where it lies now.
        ASSERT_FALSE(fs::exists(root_));
        const auto recovery = UpdateInstaller(previous_).recover();
        EXPECT_EQ(recovery.startInstead, root_ / "bin/ostrella");
        expectSettled("1.0.0");
    }
}

TEST_P(UpdateExchangeTest, EndedBetweenTheStepsOfTheWayBack) {
    exchangeElsewhere();
    inProcessThatEnds([this] { subject(endProcess).rollBack(); });
    if (GetParam()) {
        EXPECT_EQ(installed(), "1.0.0");
        EXPECT_EQ(subject().recover().failedVersion, "1.1.0");
    } else {
        ASSERT_FALSE(fs::exists(root_));
        const auto recovery = UpdateInstaller(previous_).recover();
        EXPECT_EQ(recovery.startInstead, root_ / "bin/ostrella");
    }
    expectSettled("1.0.0");
}

TEST_P(UpdateExchangeTest, EndedJustBeforeTheExchange) {
    inProcessThatEnds([this] {
        UpdateInstaller other = subject();
        stage(other);
        writeFile(work_ / "installing", "1.1.0\n");
        endProcess();
    });
    EXPECT_EQ(subject().recover().failedVersion, "");
    expectSettled("1.0.0");
}

TEST_P(UpdateExchangeTest, EndedWhileTheOldVersionWasRemoved) {
    exchangeElsewhere();
    fs::rename(previous_, work_ / "obsolete");
    const auto recovery = subject().recover();
    EXPECT_EQ(recovery.failedVersion, "");
    EXPECT_FALSE(recovery.startInstead);
    expectSettled("1.1.0");
}

TEST_P(UpdateExchangeTest, ARecordOfRubbishIsNone) {
    writeFile(work_ / "installing", std::string(100'000, 'x') + "\n");
    EXPECT_FALSE(subject().recover().startInstead);
    EXPECT_EQ(installed(), "1.0.0");
    fs::remove_all(work_);
    fs::create_directories(work_ / "installing");
    EXPECT_FALSE(subject().recover().startInstead);
    EXPECT_EQ(installed(), "1.0.0");
}

TEST_F(InstallerFixture, AnExchangeThatFailsHalfWayIsUndone) {
    UpdateInstaller subject =
        installer({.atomically = false, .halfWay = [this] { fs::remove_all(work_ / "ready"); }});
    stage(subject);
    EXPECT_THAT(
        refusal([&] { subject.exchange(); }), StartsWith("Update refused · Cannot rename "));
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_FALSE(fs::exists(previous_));
    subject.discard();
    EXPECT_EQ(beside(), Names{"ostrella"});
}

TEST_P(UpdateExchangeTest, WithoutTheVersionBeforeThereIsNoWayBack) {
    exchangeElsewhere();
    fs::remove_all(previous_);
    EXPECT_EQ(InstallerFixture::refusal([&] { subject().rollBack(); }),
        "Update refused · There is no previous version to go back to.");
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_P(UpdateExchangeTest, AFolderThatHasBecomeReadOnlyKeepsItsVersion) {
    makeArchive(archive_, copyEntries("1.1.0"));
    const OrdinaryUser user(root_.parent_path());
    UpdateInstaller both = subject();
    both.stage(archive_, item("1.1.0"), "1.0.0");
    fs::permissions(root_.parent_path(), fs::perms(0555));
    EXPECT_THAT(InstallerFixture::refusal([&] { both.exchange(); }),
        StartsWith("Update refused · Cannot "));
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_FALSE(fs::exists(previous_));
    fs::permissions(root_.parent_path(), fs::perms(0755));
    both.exchange();
    EXPECT_EQ(installed(), "1.1.0");
}

} // namespace
