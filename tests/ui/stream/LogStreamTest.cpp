// The whole window with a log of a million lines and two thousand more a second, while the pulses
// of a result's streamlines travel through the viewport.

#include "Views/Panel/LogView.h"
#include "Views/Viewport/ViewportItem.h"
#include "ui/support/AppUnderTest.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>

#include <malloc.h>
#include <unistd.h>

namespace ostrella::test {
namespace {

constexpr int linesBefore = 1'000'000;
constexpr int linesASecond = 2'000;
constexpr double leastFramesASecond = 30;

// As the solver prints them.
const std::string lineText = " 118|  -3.731204|  -1.552310|  -1.640081|   0.168714|   0.038801|";

/// Memory of this process that is in use, in bytes.
double residentBytes() {
    malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    double size = 0;
    double resident = 0;
    file >> size >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// What a line takes by itself: the record, its text with the allocator's own word, rounded up to
/// 16 bytes, and the level that the panel keeps side by side, in an array that doubles as it grows.
double bytesOfALine() {
    const std::size_t text = (lineText.size() + 1 + 8 + 15) / 16 * 16;
    return static_cast<double>(sizeof(LogStore::Line) + text + 2 * sizeof(LogStore::Level));
}

class LogStream : public AppUnderTest {
protected:
    struct Rate {
        double seconds = 0;
        int lines = 0;
        int windowFrames = 0;
        int longestGap = 0; ///< ms
        std::uint64_t sceneFrames = 0;
        double processor = 0; ///< s, of all threads

        double windowRate() const { return windowFrames / seconds; }
        double sceneRate() const { return static_cast<double>(sceneFrames) / seconds; }
        void print(const char* what) const {
            std::printf("%s: %.1f frames of the window a second, none later than %d ms, %.1f of "
                        "the scene; %.0f lines a second, %.0f %% of a core\n",
                what, windowRate(), longestGap, sceneRate(), lines / seconds,
                100 * processor / seconds);
        }
    };

    void append(int count) {
        for (int i = 0; i < count; ++i) {
            app->logStore.append(lineText, LogStore::Level::su2);
        }
    }

    LogView& view() { return *window->window().findChild<LogView*>(); }

    /// A result with all its layers, and pulses that travel.
    void showFlow() {
        click("Load sample Sphere");
        waitForModel("sphere.stl");
        app->simulation.run();
        ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished));
        app->renderSettings.setColormapEnabled(true);
        app->renderSettings.setStreamlinesEnabled(true);
        app->renderSettings.setVortexEnabled(true);
        app->renderSettings.setFlowAnimation(true);
        auto& coordinator = *window->viewport().coordinator();
        coordinator.prefersReducedMotion = [] { return false; };
        coordinator.scheduleUpdate();
        ASSERT_TRUE(waitFor([this] { return window->viewport().isAnimating(); }));
        ASSERT_TRUE(coordinator.renderer().hasResult());
    }

    static void goOn(std::chrono::milliseconds time) {
        QEventLoop loop;
        QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /// What is drawn in so long a time while so many lines a second come, one by one.
    Rate measure(std::chrono::milliseconds time, int rate) {
        Rate out;
        QElapsedTimer all;
        QElapsedTimer sinceFrame;
        const QObject context;
        QObject::connect(&window->window(), &QQuickWindow::frameSwapped, &context, [&] {
            ++out.windowFrames;
            out.longestGap = std::max(out.longestGap, static_cast<int>(sinceFrame.restart()));
        });
        QTimer source;
        source.setTimerType(Qt::PreciseTimer);
        QObject::connect(&source, &QTimer::timeout, &context, [&] {
            const auto due = static_cast<int>(all.elapsed() * rate / 1000);
            append(due - out.lines);
            out.lines = due;
        });
        const std::uint64_t before = window->viewport().frameCount();
        const std::clock_t processor = std::clock();
        all.start();
        sinceFrame.start();
        source.start(2);
        goOn(time);
        out.seconds = static_cast<double>(all.elapsed()) / 1000;
        out.processor = static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
        out.sceneFrames = window->viewport().frameCount() - before;
        return out;
    }
};

// As during a run: the model stands, the log goes on.
TEST_F(LogStream, drawsThirtyFramesASecondBesideAModelAtRest) {
    using namespace std::chrono_literals;
    click("Load sample Sphere");
    waitForModel("sphere.stl");
    model().panel()->chooseTab(0);
    ASSERT_TRUE(waitFor([this] { return view().isVisible() && view().isFollowing(); }));
    append(linesBefore);
    goOn(1s);
    const Rate rate = measure(10s, linesASecond);
    rate.print("With a million lines and more coming, beside a model at rest");
    EXPECT_GE(rate.lines, 9.8 * linesASecond);
    EXPECT_GE(rate.windowRate(), leastFramesASecond);
    EXPECT_TRUE(view().isFollowing());
}

// How often a software rasteriser draws moving streamlines is its own affair; it is printed.
TEST_F(LogStream, growsByItsLinesOnlyBesideMovingStreamlines) {
    using namespace std::chrono_literals;
    showFlow();
    model().panel()->chooseTab(0);
    ASSERT_TRUE(waitFor([this] { return view().isVisible() && view().isFollowing(); }));
    goOn(1s);
    measure(5s, 0).print("Without lines");

    const double before = residentBytes();
    append(linesBefore);
    goOn(1s);
    const double perLine = (residentBytes() - before) / linesBefore;
    std::printf("%.0f bytes a line, %.0f of them its own\n", perLine, bytesOfALine());
    // The rest is the blocks of lists, and what drawing takes once.
    EXPECT_LT(perLine, bytesOfALine() + 16);

    const double atAMillion = residentBytes();
    const Rate rate = measure(10s, linesASecond);
    rate.print("With a million lines and more coming");
    EXPECT_GE(rate.lines, 9.8 * linesASecond);
    const double grown = residentBytes() - atAMillion;
    std::printf("%.1f MB grown with %d lines\n", grown / 1e6, rate.lines);
    EXPECT_LT(grown, rate.lines * (bytesOfALine() + 16) + 16e6);

    EXPECT_TRUE(view().isFollowing());
    model().panel()->lines()->takeIn();
    drawFrame();
    EXPECT_EQ(view().scroll().bottomRow(), view().lines()->size() - 1);
    EXPECT_EQ(app->logStore.lines().back().text, lineText);
}

} // namespace
} // namespace ostrella::test
