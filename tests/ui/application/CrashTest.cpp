// An end that nobody could prepare: the tools of a run go with the application.

#include "StartedApplication.h"

#include "run/support/ToolScripts.h"

#include <gmock/gmock.h>

#include <csignal>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

class CrashTest : public testing::Test {
protected:
    void runUntil(const char* tool, const std::string& script) {
        application_.package().script(tool, script);
        ASSERT_NO_FATAL_FAILURE(application_.openSphere());
        ASSERT_NO_FATAL_FAILURE(application_.run(note_));
        ASSERT_TRUE(isRunning(note_));
    }
    void expectNothingLeftAfter(int signal) {
        application_.process().signal(signal);
        EXPECT_EQ(application_.process().finish(), 1000 + signal);
        EXPECT_TRUE(waitUntil([this] { return !isRunning(note_); }));
    }
    std::string meshing() const {
        return "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::deafNotingIn(note_);
    }
    std::string solving() const {
        return ToolScripts::writingHistory(5) + ToolScripts::deafNotingIn(note_);
    }

    TemporaryDirectory directory_;
    fs::path note_ = directory_.path() / "child";
    StartedApplication application_;
};

TEST_F(CrashTest, KilledWhileMeshing) {
    ASSERT_NO_FATAL_FAILURE(runUntil("gmsh", meshing()));
    expectNothingLeftAfter(SIGKILL);
}

TEST_F(CrashTest, KilledWhileSolving) {
    ASSERT_NO_FATAL_FAILURE(runUntil("SU2_CFD", solving()));
    expectNothingLeftAfter(SIGKILL);
}

TEST_F(CrashTest, AbortedWhileSolving) {
    ASSERT_NO_FATAL_FAILURE(runUntil("SU2_CFD", solving()));
    expectNothingLeftAfter(SIGABRT);
}

} // namespace
} // namespace ostrella::test
