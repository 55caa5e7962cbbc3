// What the menus do with the window itself.

#include "ManagedDesktop.h"

#include "ui/support/AppUnderTest.h"

namespace ostrella::test {
namespace {

/// The manager is there before the window, and goes after it.
struct WithManager {
    ManagedDesktop desktop;
};

class WindowMenu : protected WithManager, public AppUnderTest {
protected:
    void SetUp() override { ASSERT_TRUE(desktop.waitForFront(id())); }

    std::uint32_t id() const { return static_cast<std::uint32_t>(window->window().winId()); }
    bool becomes(const char* state, bool isSet = true) {
        return waitFor([&] { return desktop.hasState(id(), state) == isSet; });
    }
};

TEST_F(WindowMenu, fullScreenFillsTheScreenAndPutsItBack) {
    choose("View", "Full Screen");
    EXPECT_TRUE(becomes("_NET_WM_STATE_FULLSCREEN"));
    EXPECT_TRUE(waitFor([this] { return desktop.content(id()) == QRect(0, 0, 1400, 900); }));
    choose("View", "Full Screen");
    EXPECT_TRUE(becomes("_NET_WM_STATE_FULLSCREEN", false));
}

TEST_F(WindowMenu, zoomMaximisesAndPutsItBack) {
    choose("Window", "Zoom");
    EXPECT_TRUE(becomes("_NET_WM_STATE_MAXIMIZED_VERT"));
    choose("Window", "Zoom");
    EXPECT_TRUE(becomes("_NET_WM_STATE_MAXIMIZED_VERT", false));
}

TEST_F(WindowMenu, minimizePutsItAside) {
    choose("Window", "Minimize");
    EXPECT_TRUE(becomes("_NET_WM_STATE_HIDDEN"));
}

} // namespace
} // namespace ostrella::test
