// SIGINT, SIGTERM and the like at every stage: the child gone, the closing line written, status
// 130.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <csignal>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using Seconds = std::chrono::duration<double>;

class CancelTest : public testing::TestWithParam<int> {
protected:
    CancelTest() { package_.scriptGoodTools(); }

    /// Starts a run, waits until a tool has noted that it runs, and asks for the end. The time to
    /// that end.
    Seconds cancelled(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--json", json_.string()});
        batch_.start(arguments);
        EXPECT_TRUE(waitUntil([this] { return fs::exists(note_); })) << batch_.output();
        const auto asked = std::chrono::steady_clock::now();
        batch_.signal(GetParam());
        EXPECT_EQ(batch_.finish(), 130) << batch_.output();
        const Seconds taken = std::chrono::steady_clock::now() - asked;
        EXPECT_FALSE(isAlive(note_));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        EXPECT_EQ(nlohmann::json::parse(readFile(json_))["phase"], "cancelled");
        return taken;
    }

    TemporaryDirectory directory_;
    fs::path note_ = directory_.path() / "child";
    fs::path json_ = directory_.path() / "run.json";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_P(CancelTest, WhileMeshing) {
    package_.script("gmsh", "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::notingIn(note_) +
                                ToolScripts::waiting);
    EXPECT_LT(cancelled({"--sample", "sphere"}), Seconds(3));
    EXPECT_THAT(batch_.lines().back(), MatchesRegex("\\[WARN\\] Cancelled by user after [0-9]+ s"));
}

TEST_P(CancelTest, WhileSolving) {
    package_.script("SU2_CFD",
        ToolScripts::writingHistory(5) + ToolScripts::notingIn(note_) + ToolScripts::waiting);
    EXPECT_LT(cancelled({"--demo"}), Seconds(3));
    EXPECT_THAT(batch_.lines().back(), MatchesRegex("\\[WARN\\] Cancelled by user after [0-9]+ s"));
}

TEST_P(CancelTest, AToolThatDoesNotHearIsKilledAfterThreeSeconds) {
    package_.script("SU2_CFD", ToolScripts::deafNotingIn(note_));
    const Seconds taken = cancelled({"--sample", "sphere"});
    EXPECT_GE(taken, Seconds(2.9));
    EXPECT_LT(taken, Seconds(8));
}

TEST_P(CancelTest, ASolverThatThenSaysItConvergedIsCancelledAllTheSame) {
    package_.script("SU2_CFD",
        "trap 'echo All convergence criteria satisfied.; touch flow.vtk; exit 0' TERM INT\n" +
            ToolScripts::notingIn(note_) + "while :; do sleep 0.1; done\n");
    EXPECT_LT(cancelled({"--demo"}), Seconds(3));
    EXPECT_THAT(batch_.lines().back(), HasSubstr("Cancelled by user after"));
}

TEST_P(CancelTest, WhilePreparing) {
    package_.script("gmsh", "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::notingIn(note_) +
                                ToolScripts::waiting);
    const fs::path folder = directory_.path() / "case";
    EXPECT_LT(cancelled({"--sample", "sphere", "--prepare", folder.string()}), Seconds(3));
    EXPECT_EQ(batch_.lines().back(), "[WARN] Cancelled by user before the case was complete");
    EXPECT_FALSE(fs::exists(folder)) << "so that the same command can be given again";
}

TEST_P(CancelTest, MayBeAskedForAgainAndAgain) {
    package_.script("SU2_CFD", ToolScripts::deafNotingIn(note_));
    batch_.start({"--demo"});
    ASSERT_TRUE(waitUntil([this] { return fs::exists(note_); }));
    for (int i = 0; i < 20; ++i) {
        batch_.signal(GetParam());
    }
    EXPECT_EQ(batch_.finish(), 130);
    EXPECT_FALSE(isAlive(note_));
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(By, CancelTest, testing::Values(SIGINT, SIGTERM, SIGHUP),
    [](const auto& test) { return std::string(sigabbrev_np(test.param)); });

class EndOfTheOutput : public testing::Test {};

TEST_F(EndOfTheOutput, CancelsTheRunAsItEndsOtherPrograms) {
    const TemporaryDirectory directory;
    const fs::path note = directory.path() / "child";
    const Package package;
    package.scriptGoodTools();
    // It speaks now and then, as a solver does.
    package.script(
        "SU2_CFD", ToolScripts::notingIn(note) + "while :; do echo row; sleep 0.1; done\n");
    BatchProcess shell("/bin/bash");
    EXPECT_EQ(shell.run({"-c", "'" + package.program().string() +
                                   "' --demo | head -n 8; exit ${PIPESTATUS[0]}"}),
        130);
    EXPECT_FALSE(isAlive(note));
    EXPECT_THAT(BatchProcess::contents(shell.temporary()), IsEmpty());
}

TEST_F(EndOfTheOutput, ACancelRightAfterTheStartLeavesNothing) {
    const Package package;
    package.scriptGoodTools();
    package.script("SU2_CFD", ToolScripts::waiting);
    BatchProcess batch(package.program());
    batch.start({"--sample", "sphere"});
    ASSERT_TRUE(batch.waitForOutput("Awaiting geometry"));
    batch.signal(SIGTERM);
    EXPECT_EQ(batch.finish(), 130);
    EXPECT_THAT(batch.lines().back(), HasSubstr("[WARN] Cancelled by user "));
    EXPECT_THAT(BatchProcess::contents(batch.temporary()), IsEmpty());
}

} // namespace
} // namespace ostrella::test
