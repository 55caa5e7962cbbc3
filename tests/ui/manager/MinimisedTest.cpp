// A minimised window draws nothing.

#include "ManagedDesktop.h"

#include "Views/Viewport/ViewportItem.h"
#include "ui/support/AppUnderTest.h"

#include <chrono>

namespace ostrella::test {
namespace {

/// The manager is there before the window, and goes after it.
struct WithManager {
    ManagedDesktop desktop;
};

class Minimised : protected WithManager, public AppUnderTest {
protected:
    /// One line from left to right along which the flow moves.
    void showFlow() {
        Streamlines lines;
        lines.interleavedVertices = std::vector<float>{0, 0, 0, 10, 1, 0, 0, 30};
        lines.indices = std::vector<std::uint32_t>{0, 1};
        lines.vertexCount = 2;
        lines.indexCount = 2;
        lines.magnitudeMin = 10;
        lines.magnitudeMax = 30;
        lines.boundingMax = Vec3(1, 0, 0);
        SimulationResult result;
        result.streamlines = lines;
        app->parameters.setLastRunResult(result);
        app->renderSettings.setStreamlinesEnabled(true);
        app->renderSettings.setFlowAnimation(true);
        ViewportCoordinator& viewport = *window->viewport().coordinator();
        viewport.prefersReducedMotion = [] { return false; };
        viewport.scheduleUpdate();
        ASSERT_TRUE(waitFor([this] { return window->viewport().isAnimating(); }));
    }
    /// How many are drawn from now on for as long.
    std::uint64_t framesDuring(std::chrono::milliseconds time) const {
        const std::uint64_t before = window->viewport().frameCount();
        waitUntil([] { return false; }, time);
        return window->viewport().frameCount() - before;
    }
};

TEST_F(Minimised, theFlowStandsStillUntilTheWindowIsBack) {
    using namespace std::chrono_literals;
    ASSERT_NO_FATAL_FAILURE(showFlow());
    const auto id = static_cast<std::uint32_t>(window->window().winId());
    desktop.minimise(id);
    ASSERT_TRUE(waitFor([&] { return desktop.hasState(id, "_NET_WM_STATE_HIDDEN"); }));
    ASSERT_TRUE(waitFor([this] { return !window->viewport().isAnimating(); }));
    framesDuring(100ms); // the one that was under way
    EXPECT_EQ(framesDuring(700ms), 0U);
    desktop.bringToFront(id);
    EXPECT_TRUE(waitFor([this] { return window->viewport().isAnimating(); }));
    EXPECT_TRUE(waitFor([this, before = window->viewport().frameCount()] {
        return window->viewport().frameCount() > before + 5;
    }));
}

} // namespace
} // namespace ostrella::test
