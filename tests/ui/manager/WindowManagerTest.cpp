// The application's window among others, where a window manager keeps them.

#include "ManagedDesktop.h"

#include "run/support/ToolScripts.h"
#include "support/XServer.h"
#include "ui/application/StartedApplication.h"

#include <QRasterWindow>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* hidden = "_NET_WM_STATE_HIDDEN";
constexpr const char* fullScreen = "_NET_WM_STATE_FULLSCREEN";
constexpr const char* maximised = "_NET_WM_STATE_MAXIMIZED_VERT";

class WindowManagerTest : public testing::Test {
protected:
    /// The window in front, with its size and place settled.
    void open() {
        ASSERT_NO_FATAL_FAILURE(application_.openSphere());
        ASSERT_TRUE(desktop_.waitForFront(window()));
        ASSERT_TRUE(waitUntil([this] {
            return desktop_.workArea().contains(desktop_.frame(window()));
        })) << desktop_.frame(window()).width()
            << " by " << desktop_.frame(window()).height();
    }
    std::uint32_t window() const { return application_.window().id(); }

    /// A window of another program comes before it.
    void openAnother() {
        another_.setGeometry(100, 100, 600, 400);
        another_.show();
        desktop_.bringToFront(static_cast<std::uint32_t>(another_.winId()));
        ASSERT_TRUE(desktop_.waitForFront(static_cast<std::uint32_t>(another_.winId())));
    }
    void startAgain() {
        BatchProcess second(application_.program());
        second.setVariable("XDG_RUNTIME_DIR", application_.session().string());
        EXPECT_EQ(second.run({}), 0);
    }
    void press(Qt::Key key, bool withControl = false) {
        XServer server(window());
        if (withControl) {
            server.key(Qt::Key_Control, true);
        }
        server.key(key, true);
        server.key(key, false);
        if (withControl) {
            server.key(Qt::Key_Control, false);
        }
    }
    bool waitForState(const char* state, bool isSet) {
        return waitUntil([&] { return desktop_.hasState(window(), state) == isSet; });
    }

    ManagedDesktop desktop_;
    StartedApplication application_;

private:
    QRasterWindow another_;
};

TEST_F(WindowManagerTest, ItOpensInFrontAndWhollyOnTheScreen) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_GE(desktop_.content(window()).width(), 1200);
    EXPECT_GE(desktop_.content(window()).height(), 800);
}

TEST_F(WindowManagerTest, ASecondStartBringsItToTheFront) {
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_NO_FATAL_FAILURE(openAnother());
    startAgain();
    EXPECT_TRUE(desktop_.waitForFront(window()));
}

TEST_F(WindowManagerTest, ASecondStartBringsItBackAsItWas) {
    ASSERT_NO_FATAL_FAILURE(open());
    desktop_.maximise(window());
    ASSERT_TRUE(waitForState(maximised, true));
    desktop_.minimise(window());
    ASSERT_TRUE(waitForState(hidden, true));
    startAgain();
    EXPECT_TRUE(desktop_.waitForFront(window()));
    EXPECT_FALSE(desktop_.hasState(window(), hidden));
    EXPECT_TRUE(desktop_.hasState(window(), maximised));
}

TEST_F(WindowManagerTest, ClosedByItsFrameWhileSolvingItEndsAndTheSolverWithIt) {
    const TemporaryDirectory directory;
    const fs::path note = directory.path() / "child";
    application_.package().script(
        "SU2_CFD", ToolScripts::writingHistory(5) + ToolScripts::deafNotingIn(note));
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_NO_FATAL_FAILURE(application_.run(note));
    desktop_.close(window());
    EXPECT_EQ(application_.process().finish(), 0) << application_.process().errors();
    EXPECT_TRUE(waitUntil([&] { return !isRunning(note); }));
}

TEST_F(WindowManagerTest, F11FillsTheScreenAndPutsItBack) {
    ASSERT_NO_FATAL_FAILURE(open());
    const QRect before = desktop_.frame(window());
    press(Qt::Key_F11);
    EXPECT_TRUE(waitForState(fullScreen, true));
    EXPECT_TRUE(waitUntil([&] { return desktop_.content(window()) == QRect(0, 0, 1400, 900); }));
    press(Qt::Key_F11);
    EXPECT_TRUE(waitForState(fullScreen, false));
    EXPECT_TRUE(waitUntil([&] { return desktop_.frame(window()) == before; }));
}

TEST_F(WindowManagerTest, F11PutsAMaximisedWindowBackAsSuch) {
    ASSERT_NO_FATAL_FAILURE(open());
    desktop_.maximise(window());
    ASSERT_TRUE(waitForState(maximised, true));
    press(Qt::Key_F11);
    ASSERT_TRUE(waitForState(fullScreen, true));
    press(Qt::Key_F11);
    EXPECT_TRUE(waitForState(fullScreen, false));
    EXPECT_TRUE(waitForState(maximised, true));
}

} // namespace
} // namespace ostrella::test
