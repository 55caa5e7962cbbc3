// What a person at a terminal sees.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/TerminalRun.h"
#include "run/support/ToolScripts.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class TerminalTest : public testing::Test {
protected:
    TerminalTest() { package_.scriptGoodTools(); }

    TemporaryDirectory directory_;
    TemporaryDirectory temporary_;
    fs::path go_ = directory_.path() / "go";
    Package package_;
};

TEST_F(TerminalTest, OneLineTellsHowFarTheSolveIs) {
    // A row, and after a look at the progress another.
    package_.script("SU2_CFD", ToolScripts::writingHistory(2) + ToolScripts::waitingFor(go_) +
                                   ToolScripts::writingHistory(40) +
                                   ToolScripts::waitingFor(directory_.path() / "end") +
                                   ToolScripts::goodSolver);
    TerminalRun run(package_.program(), {"--demo", "--iterations", "80"}, temporary_.path(), 120);
    ASSERT_TRUE(run.waitForOutput("\r\x1b[KIter 2 / 80 · rms[P] -1.10 · CL 0.2500 · CD 0.5000 · "))
        << run.output();
    writeFile(go_, "");
    ASSERT_TRUE(run.waitForOutput("Iter 40 / 80 · rms[P] -1.39 · CL 0.2500 · CD 0.5000 · "))
        << run.output();
    ASSERT_TRUE(run.waitForOutput(" remaining")) << run.output();
    writeFile(directory_.path() / "end", "");
    EXPECT_EQ(run.finish(), 0);
    // The log is whole, and no progress is left beneath it.
    EXPECT_THAT(run.output(), HasSubstr("[SU2] All convergence criteria satisfied.\r\n"));
    EXPECT_THAT(run.output(), HasSubstr("[OK] Converged at iter 3"));
    EXPECT_THAT(run.output(), EndsWith("\r\x1b[K"));
}

TEST_F(TerminalTest, ANarrowTerminalHasNoLineThatWraps) {
    package_.script("SU2_CFD",
        ToolScripts::writingHistory(2) + ToolScripts::waitingFor(go_) + ToolScripts::goodSolver);
    TerminalRun run(package_.program(), {"--demo"}, temporary_.path(), 20);
    ASSERT_TRUE(run.waitForOutput("Iter 2 / 200 · rms[")) << run.output();
    writeFile(go_, "");
    EXPECT_EQ(run.finish(), 0);
    EXPECT_THAT(run.output(), Not(HasSubstr("Iter 2 / 200 · rms[P")));
}

TEST_F(TerminalTest, AMeshHasItsTimeShown) {
    package_.script("gmsh", ToolScripts::waitingFor(go_) + ToolScripts::goodMesher);
    TerminalRun run(package_.program(),
        {"--sample", "sphere", "--prepare", (directory_.path() / "case").string()},
        temporary_.path(), 80);
    ASSERT_TRUE(run.waitForOutput("Meshing… · 0 s elapsed")) << run.output();
    writeFile(go_, "");
    EXPECT_EQ(run.finish(), 0);
}

TEST_F(TerminalTest, NothingOfTheSortWherePiped) {
    package_.script("SU2_CFD",
        ToolScripts::writingHistory(2) + ToolScripts::waitingFor(go_) + ToolScripts::goodSolver);
    BatchProcess batch(package_.program());
    batch.setVariable("TERM", "xterm");
    batch.start({"--demo"});
    ASSERT_TRUE(batch.waitForOutput("Launching SU2_CFD…"));
    writeFile(go_, "");
    EXPECT_EQ(batch.finish(), 0);
    EXPECT_THAT(batch.output(), Not(HasSubstr("\x1b")));
    EXPECT_THAT(batch.output(), Not(HasSubstr("elapsed")));
}

TEST_F(TerminalTest, ControlCCancelsThoughTheChildHearsItToo) {
    // Half of these end by the terminal's own signal before the cancellation reaches them.
    for (const char* answer : {"trap 'exit 1' INT\n", "trap 'exit 0' INT\n", "", "trap '' INT\n"}) {
        const fs::path note = directory_.path() / "child";
        fs::remove(note);
        package_.script(
            "SU2_CFD", answer + ToolScripts::notingIn(note) + "while :; do sleep 0.05; done\n");
        TerminalRun run(package_.program(), {"--demo"}, temporary_.path(), 80);
        ASSERT_TRUE(waitUntil([&note] { return fs::exists(note); })) << run.output();
        run.type("\x03");
        EXPECT_EQ(run.finish(), 130) << answer << run.output();
        EXPECT_THAT(run.output(), HasSubstr("[WARN] Cancelled by user after "));
        EXPECT_FALSE(isAlive(note));
        EXPECT_THAT(BatchProcess::contents(temporary_.path()), IsEmpty());
    }
}

} // namespace
} // namespace ostrella::test
