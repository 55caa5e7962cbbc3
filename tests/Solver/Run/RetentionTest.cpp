// What becomes of the directories of runs.

#include "RunFixture.h"
#include "Solver/Tools/Background.h"

#include <latch>
#include <memory>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Retention : public RunTest {
protected:
    Retention() {
        finishChores(); // The start's own prune would count what a test makes.
        placeCube();
    }

    /// A run that ends well; its directory, which is on show.
    fs::path succeed() {
        package_.setSolver(Script::goodSolver);
        runToEnd();
        return app_->parameters.lastRunResult()->runDirectory;
    }
    fs::path fail() {
        package_.setSolver("exit 1\n");
        runToEnd();
        return app_->simulation.discardedRunDirectory().value_or("");
    }
    /// Waits for the chores that were started so far: two more that meet one another need both
    /// threads of their pool.
    static void finishChores() {
        const auto meeting = std::make_shared<std::latch>(2);
        const auto meet = [meeting] { meeting->arrive_and_wait(); };
        const auto first = Background::run(meet);
        const auto second = Background::run(meet);
        ASSERT_TRUE(waitUntil([&] { return first.isDone() && second.isDone(); }));
    }
    void loadModel() { app_->notifications.post(Notifications::geometryLoaded, &app_->parameters); }
};

TEST_F(Retention, atTheStartLeavesTheTwoNewest) {
    const TemporaryDirectory other;
    for (const char* digits : {"00000001", "00000002", "00000003", "00000004"}) {
        fs::create_directory(other.path() / (std::string("Ostrella-") + digits));
    }
    fs::create_directory(other.path() / "Ostrella-notours");
    RunEnvironment elsewhere = environment();
    elsewhere.temporaryDirectory = other.path();
    OstrellaApp second(elsewhere, preferences_, LogStore::BootFacts(),
        [](const std::string&, const std::string&) {});
    second.start();
    EXPECT_TRUE(waitUntil([&] {
        return !fs::exists(other.path() / "Ostrella-00000001") &&
               !fs::exists(other.path() / "Ostrella-00000002");
    }));
    EXPECT_TRUE(fs::exists(other.path() / "Ostrella-00000003"));
    EXPECT_TRUE(fs::exists(other.path() / "Ostrella-00000004"));
    EXPECT_TRUE(fs::exists(other.path() / "Ostrella-notours"));
}

TEST_F(Retention, ofTheShownRunEndsWithTheThirdRunAfterIt) {
    const fs::path first = succeed();
    const fs::path second = succeed();
    const fs::path third = succeed();
    EXPECT_TRUE(fs::exists(first));
    const fs::path fourth = succeed();
    EXPECT_TRUE(fs::exists(first)) << "the newest two beside the shown one";
    const fs::path fifth = succeed();
    EXPECT_FALSE(fs::exists(first));
    EXPECT_THAT(runDirectoryNames(), UnorderedElementsAre(second.filename(), third.filename(),
                                         fourth.filename(), fifth.filename()));
}

TEST_F(Retention, keepsTheShownRunHoweverManyAreNewer) {
    const fs::path shown = succeed();
    makeOldRun("FFFFFFF0");
    makeOldRun("FFFFFFF1");
    makeOldRun("FFFFFFF2");
    package_.setMesher(Script::hang);
    runUntilReady();
    EXPECT_TRUE(fs::exists(shown));
}

TEST_F(Retention, ofAFailedRunEndsWithTheNext) {
    const fs::path failed = fail();
    EXPECT_TRUE(fs::exists(failed));
    const fs::path next = succeed();
    EXPECT_FALSE(fs::exists(failed));
    EXPECT_TRUE(fs::exists(next));
    EXPECT_FALSE(app_->simulation.discardedRunDirectory());
}

TEST_F(Retention, ofACancelledRunEndsWithTheNext) {
    package_.setSolver(Script::hang);
    runUntilReady();
    const auto active = app_->simulation.activeRunDirectory();
    ASSERT_TRUE(active);
    cancelToEnd();
    EXPECT_EQ(app_->simulation.discardedRunDirectory(), active);
    succeed();
    EXPECT_FALSE(fs::exists(*active));
}

TEST_F(Retention, ofAFailedRunEndsAtOnceWithANewModel) {
    const fs::path failed = fail();
    loadModel();
    EXPECT_FALSE(app_->simulation.discardedRunDirectory());
    EXPECT_TRUE(waitUntil([&] { return !fs::exists(failed); }));
}

TEST_F(Retention, ofASuccessfulRunDoesNotEndWithANewModel) {
    const fs::path shown = succeed();
    loadModel();
    EXPECT_EQ(phase(), RunPhase::idle());
    finishChores(); // Its chore, had there been one, is done now.
    EXPECT_TRUE(fs::exists(shown));
}

TEST_F(Retention, doesNotTouchTheRunUnderWayWhenAModelIsLoaded) {
    const fs::path failed = fail();
    package_.setSolver(Script::hang);
    runUntilReady();
    const auto active = app_->simulation.activeRunDirectory();
    loadModel();
    cancelToEnd();
    EXPECT_TRUE(fs::exists(*active));
    EXPECT_FALSE(fs::exists(failed));
}

TEST_F(Retention, leavesAFailureAheadOfTheDirectoryWithNothingToDiscard) {
    fs::remove(package_.tool("SU2_CFD"));
    runToEnd();
    EXPECT_FALSE(app_->simulation.discardedRunDirectory());
    EXPECT_THAT(runDirectoryNames(), IsEmpty());
}

TEST_F(Retention, prunesBeforeTheNewRunMakesItsOwn) {
    makeOldRun("00000001");
    makeOldRun("00000002");
    makeOldRun("00000003");
    const fs::path first = succeed();
    EXPECT_EQ(runDirectoryNames().size(), 3U) << "two of the old, and the new one";
    EXPECT_TRUE(fs::exists(first));
    EXPECT_FALSE(fs::exists(runs_ / "Ostrella-00000001"));
}

} // namespace
} // namespace ostrella::test
