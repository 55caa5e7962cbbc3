// The X server goes away under the application, as at the end of a session or of a remote desktop.

#include "Platform/desktop/DesktopBench.h"
#include "run/support/ToolScripts.h"
#include "ui/application/StartedApplication.h"

#include <gmock/gmock.h>

#include <optional>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

/// A screen of the test's own to open the window on, until it is switched off.
class Screen {
public:
    Screen() {
        const auto number = server_.waitForLine(QString());
        EXPECT_TRUE(number) << "the X server does not come up";
        variable_.emplace("DISPLAY", ":" + number.value_or(QString()).toUtf8());
    }
    void switchOff() {
        server_.kill();
        variable_.reset();
    }

private:
    TalkingProgram server_{QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
            QStringLiteral("0"), QStringLiteral("1400x900x24"), QStringLiteral("-nolisten"),
            QStringLiteral("tcp"), QStringLiteral("-noreset")}};
    std::optional<EnvironmentVariable> variable_;
};

class LostDisplayTest : public testing::Test {
protected:
    void runUntil(const char* tool, const std::string& script) {
        application_.package().script(tool, script);
        ASSERT_NO_FATAL_FAILURE(application_.openSphere());
        ASSERT_NO_FATAL_FAILURE(application_.run(note_));
    }
    void expectOrderlyEnd() {
        screen_.switchOff();
        EXPECT_EQ(application_.process().finish(std::chrono::seconds(10)), 1)
            << application_.process().errors();
        EXPECT_TRUE(waitUntil([this] { return !isRunning(note_); }));
    }

    TemporaryDirectory directory_;
    fs::path note_ = directory_.path() / "child";
    Screen screen_;
    StartedApplication application_;
};

TEST_F(LostDisplayTest, WhileMeshingItEndsAndTheMesherWithIt) {
    ASSERT_NO_FATAL_FAILURE(
        runUntil("gmsh", "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::deafNotingIn(note_)));
    expectOrderlyEnd();
}

TEST_F(LostDisplayTest, WhileSolvingItEndsAndTheSolverWithIt) {
    ASSERT_NO_FATAL_FAILURE(
        runUntil("SU2_CFD", ToolScripts::writingHistory(50) + ToolScripts::deafNotingIn(note_)));
    expectOrderlyEnd();
}

TEST_F(LostDisplayTest, TheNextStartIsAsAnyOther) {
    const auto samples = BatchProcess::contents(application_.package().resources() / "samples");
    ASSERT_NO_FATAL_FAILURE(
        runUntil("SU2_CFD", ToolScripts::writingHistory(50) + ToolScripts::deafNotingIn(note_)));
    expectOrderlyEnd();
    EXPECT_EQ(BatchProcess::contents(application_.package().resources() / "samples"), samples);
    application_.process().setVariable("DISPLAY", qgetenv("DISPLAY").toStdString());
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    application_.window().askToClose();
    EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
}

} // namespace
} // namespace ostrella::test
