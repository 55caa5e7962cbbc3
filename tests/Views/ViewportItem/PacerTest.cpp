#include "Views/Viewport/ViewportPacer.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <vector>

namespace ostrella::test {
namespace {

using namespace std::chrono_literals;
using Clock = ViewportPacer::Clock;

/// A device whose frames take no time, unless a test says so.
class Pacer : public testing::Test {
protected:
    /// Serves events until so many frames have been asked for.
    bool waitForFrames(std::size_t count) {
        return waitUntil([&] { return asked.size() >= count; });
    }
    static double seconds(Clock::duration time) {
        return std::chrono::duration<double>(time).count();
    }

    std::vector<Clock::time_point> asked;
    bool draws = true;
    ViewportPacer pacer{[this] {
        asked.push_back(Clock::now());
        if (draws)
            pacer.frameWasDrawn();
    }};
};

TEST_F(Pacer, asksForSixtyFramesASecondAndNeverMore) {
    pacer.setRunning(true);
    ASSERT_TRUE(waitForFrames(121));
    // The first one is due at once, so that 120 intervals lie between it and the last: one that
    // came late itself has the others after it on time.
    const double lateness = seconds(ViewportPacer::interval);
    EXPECT_GE(seconds(asked[120] - asked[0]), 120.0 / 60 - lateness);
}

TEST_F(Pacer, letsNoFramesPileUpWhileTheDeviceIsSlow) {
    pacer.setRunning(true);
    ASSERT_TRUE(waitForFrames(3));
    draws = false;
    ASSERT_TRUE(waitForFrames(asked.size() + 1));
    const std::size_t before = asked.size();
    EXPECT_FALSE(waitUntil([&] { return asked.size() > before; }, 300ms)) << "it draws still";
    draws = true;
    pacer.frameWasDrawn();
    ASSERT_TRUE(waitForFrames(before + 31));
    // The lost time is not made up for.
    EXPECT_GE(seconds(asked[before + 30] - asked[before]), 29.0 / 60);
}

TEST_F(Pacer, asksForNothingUnlessItRuns) {
    EXPECT_FALSE(waitUntil([&] { return !asked.empty(); }, 100ms));
    pacer.setRunning(true);
    ASSERT_TRUE(waitForFrames(2));
    pacer.setRunning(false);
    const std::size_t before = asked.size();
    pacer.frameWasDrawn();
    EXPECT_FALSE(waitUntil([&] { return asked.size() > before; }, 200ms));
    pacer.setRunning(true);
    EXPECT_TRUE(waitForFrames(before + 1));
}

} // namespace
} // namespace ostrella::test
