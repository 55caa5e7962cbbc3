// Nothing blocks: the main thread's turns stay short while the application works and the user goes
// on working with the window.

#include "MainThreadWatchdog.h"

#include "ui/support/AppUnderTest.h"

#include <QUrl>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <numbers>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using Duration = MainThreadWatchdog::Duration;

constexpr Duration longestTurn{50};

/// A closed sphere of at least so many facets, by latitude and longitude, as a binary STL file.
void writeSphere(const fs::path& file, int facets) {
    const int rings = static_cast<int>(std::ceil(std::sqrt(facets / 4.0))) + 1;
    const int sectors = 2 * rings;
    const auto point = [&](int ring, int sector, float* to) {
        const double polar = std::numbers::pi * ring / rings;
        const double around = 2 * std::numbers::pi * (sector % sectors) / sectors;
        const bool isPole = ring == 0 || ring == rings;
        const double across = isPole ? 0 : std::sin(polar);
        to[0] = static_cast<float>(across * std::cos(around));
        to[1] = static_cast<float>(std::cos(polar));
        to[2] = static_cast<float>(across * std::sin(around));
    };
    std::string body;
    std::uint32_t count = 0;
    const auto add = [&](int r0, int s0, int r1, int s1, int r2, int s2) {
        float numbers[12] = {};
        point(r0, s0, numbers + 3);
        point(r1, s1, numbers + 6);
        point(r2, s2, numbers + 9);
        body.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
        body.append(2, '\0');
        ++count;
    };
    for (int ring = 0; ring < rings; ++ring) {
        for (int sector = 0; sector < sectors; ++sector) {
            if (ring > 0) {
                add(ring, sector, ring, sector + 1, ring + 1, sector);
            }
            if (ring + 1 < rings) {
                add(ring + 1, sector, ring, sector + 1, ring + 1, sector + 1);
            }
        }
    }
    std::ofstream stream(file, std::ios::binary);
    stream << std::string(80, '\0');
    stream.write(reinterpret_cast<const char*>(&count), sizeof count);
    stream.write(body.data(), static_cast<std::streamsize>(body.size()));
}

class Watchdog : public AppUnderTest {
protected:
    Watchdog() { watchdog().leaveAsideFrames(window->window()); }

    static MainThreadWatchdog& watchdog() { return MainThreadWatchdog::instance(); }

    /// Resizes the window and types, into a field where that is allowed, time and again, until
    /// `condition` holds.
    bool workUntil(const std::function<bool()>& condition, std::chrono::seconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        for (int i = 0; !condition(); ++i) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            window->window().resize(1300 + 20 * (i % 5), 820 + 10 * (i % 4));
            if (app->simulation.phase().isActive()) {
                user->type(Qt::Key_Tab);
            } else {
                fill("Velocity", std::to_string(40 + i % 10));
            }
            waitUntil(condition, std::chrono::milliseconds(50));
        }
        return true;
    }

    static void report(const char* what) {
        std::printf("%s: %d turns of the event loop, the longest\n", what, watchdog().turnCount());
        for (const auto& turn : watchdog().longest()) {
            std::printf("  %8.1f ms  %s\n", turn.busy.count(), turn.event.c_str());
        }
        std::printf("  %8.1f ms  drawing, aside\n", watchdog().longestDrawing().count());
        EXPECT_LT(watchdog().worst().count(), longestTurn.count()) << what;
    }
};

TEST_F(Watchdog, WhileALargeModelLoads) {
    const char* const wanted = std::getenv("OSTRELLA_WATCHDOG_FACETS");
    const fs::path file = directory() / "large.stl";
    writeSphere(file, wanted ? std::atoi(wanted) : 200'000);
    item("Velocity");
    waitUntil([] { return false; }, std::chrono::milliseconds(300));
    watchdog().reset();
    app->openURL(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    EXPECT_TRUE(workUntil(
        [this] {
            return app->parameters.mesh() && !app->parameters.loadingFileName() &&
                   app->parameters.openEdgeCount();
        },
        std::chrono::seconds(200)));
    report("Load");
    watchdog().reset();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    EXPECT_TRUE(workUntil(
        [end] { return std::chrono::steady_clock::now() > end; }, std::chrono::seconds(200)));
    report("With the model on show");
}

TEST_F(Watchdog, WhileARunAndAnExportGoOn) {
    click("Load sample Sphere");
    waitForModel("sphere.stl");
    waitUntil([] { return false; }, std::chrono::milliseconds(300));
    watchdog().reset();
    app->simulation.run();
    EXPECT_TRUE(workUntil(
        [this] { return !app->simulation.phase().isActive(); }, std::chrono::seconds(200)));
    EXPECT_EQ(phase(), RunPhase::Kind::finished);
    report("Run");

    const fs::path folder = directory() / "export";
    fs::create_directory(folder);
    watchdog().reset();
    click("Export Results");
    model().files()->accept(QUrl::fromLocalFile(QString::fromStdString(folder.string())));
    EXPECT_TRUE(workUntil(
        [this, &folder] {
            return logs("Exported 4 files to " + folder.string(), LogStore::Level::ok);
        },
        std::chrono::seconds(60)));
    report("Export");
}

} // namespace
} // namespace ostrella::test
