// A user without a home directory: everything works, and nothing is kept.

#include "StartedApplication.h"

#include "run/support/ToolScripts.h"
#include "support/XServer.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

class NoHomeTest : public testing::Test {
protected:
    NoHomeTest() {
        // Nobody can make a folder there, not even the machine's administrator.
        writeFile(file_, "no folder");
        application_.process().setVariable("HOME", (file_ / "home").string());
        for (const char* const name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                 "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_DIRS"}) {
            application_.process().removeVariable(name);
        }
    }
    bool opensSettings() {
        XServer server(application_.window().id());
        application_.window().focus();
        server.key(Qt::Key_Control, true);
        server.key(Qt::Key_Comma, true);
        server.key(Qt::Key_Comma, false);
        server.key(Qt::Key_Control, false);
        return waitUntil(
            [this] {
                return ForeignWindow::ofProcess(application_.process().number(), "Settings")
                    .has_value();
            },
            std::chrono::milliseconds(500));
    }

    TemporaryDirectory directory_;
    fs::path file_ = directory_.path() / "file";
    StartedApplication application_;
};

TEST_F(NoHomeTest, TheWindowComesWithTheModelAndTheSettings) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    EXPECT_TRUE(waitUntil([this] { return opensSettings(); }))
        << application_.process().output() << application_.process().errors();
    application_.window().askToClose();
    EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
    EXPECT_EQ(readFile(file_), "no folder");
}

TEST_F(NoHomeTest, ARunWorks) {
    const fs::path note = directory_.path() / "child";
    application_.package().script(
        "gmsh", "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::deafNotingIn(note));
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    ASSERT_NO_FATAL_FAILURE(application_.run(note));
    EXPECT_TRUE(isRunning(note));
    application_.window().askToClose();
    EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
    EXPECT_TRUE(waitUntil([&] { return !isRunning(note); }));
}

} // namespace
} // namespace ostrella::test
