// Quitting while a run is under way: at once, and nothing stays behind.

#include "StartedApplication.h"

#include "run/support/ToolScripts.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr Seconds longestEnd{2};

class QuitTest : public testing::Test {
protected:
    void runUntil(const char* tool, const std::string& script) {
        application_.package().script(tool, script);
        ASSERT_NO_FATAL_FAILURE(application_.openSphere());
        ASSERT_NO_FATAL_FAILURE(application_.run(note_));
        ASSERT_TRUE(isRunning(note_));
    }
    void expectEnd(steady_clock::time_point asked) {
        EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
        const Seconds taken = steady_clock::now() - asked;
        EXPECT_LT(taken, longestEnd);
        RecordProperty("seconds", std::to_string(taken.count()));
        EXPECT_TRUE(waitUntil([this] { return !isRunning(note_); }, std::chrono::seconds(1)));
        EXPECT_FALSE(application_.window().isShown());
    }
    void close() {
        const auto asked = steady_clock::now();
        application_.window().askToClose();
        expectEnd(asked);
    }
    void terminate() {
        const auto asked = steady_clock::now();
        application_.process().signal(SIGTERM);
        expectEnd(asked);
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

TEST_F(QuitTest, ClosedWhileMeshing) {
    ASSERT_NO_FATAL_FAILURE(runUntil("gmsh", meshing()));
    close();
}

TEST_F(QuitTest, ClosedWhileSolving) {
    ASSERT_NO_FATAL_FAILURE(runUntil("SU2_CFD", solving()));
    close();
}

TEST_F(QuitTest, ToldToEndWhileMeshing) {
    ASSERT_NO_FATAL_FAILURE(runUntil("gmsh", meshing()));
    terminate();
}

TEST_F(QuitTest, ToldToEndWhileSolving) {
    ASSERT_NO_FATAL_FAILURE(runUntil("SU2_CFD", solving()));
    terminate();
}

TEST_F(QuitTest, WithoutARun) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    const auto asked = steady_clock::now();
    application_.window().askToClose();
    EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
    EXPECT_LT(Seconds(steady_clock::now() - asked), longestEnd);
}

} // namespace
} // namespace ostrella::test
