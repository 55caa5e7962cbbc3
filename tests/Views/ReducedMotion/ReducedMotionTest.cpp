#include "Views/ReducedMotion.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/desktop/DesktopBench.h"
#include "Views/ViewportItem/ItemWindow.h"

namespace ostrella::test {
namespace {

using namespace std::chrono_literals;

class ReducedMotion : public ItemWindow {
protected:
    void setReduced(bool isReduced) {
        portal_->say(QStringLiteral("org.freedesktop.appearance reduced-motion u %1")
                         .arg(isReduced ? 1 : 0));
        ASSERT_TRUE(waitUntil([&] { return appearance_.prefersReducedMotion() == isReduced; }));
    }

    /// The ribbons neither move nor ask for a frame.
    void expectStillness() {
        ASSERT_TRUE(waitUntil([&] { return !item->isAnimating(); }));
        EXPECT_TRUE(renderer().reduceMotion);
        EXPECT_TRUE(waitUntil([&] { return framesDuring(100ms) == 0; }));
        EXPECT_EQ(framesDuring(500ms), 0U);
        EXPECT_EQ(shown(), shown());
    }

    EnvironmentVariable noWord_{"OSTRELLA_REDUCED_MOTION", std::nullopt};
    PrivateBus bus_;
    std::unique_ptr<TalkingProgram> portal_ =
        startService(QStringLiteral("portal"), {QStringLiteral("all")});
    DesktopAppearance appearance_;
};

TEST_F(ReducedMotion, makesTheRibbonsStandStillAndLetsThemGoAgain) {
    followReducedMotion(*item->coordinator(), appearance_);
    clockRuns = true;
    loadBallWithResult();
    showWindow();
    ASSERT_TRUE(waitUntil([&] { return item->isAnimating(); }));
    ASSERT_TRUE(waitForFrames(5));

    setReduced(true);
    expectStillness();

    setReduced(false);
    ASSERT_TRUE(waitUntil([&] { return item->isAnimating(); }));
    EXPECT_TRUE(waitForFrames(5));
}

TEST_F(ReducedMotion, thatWasAskedForBeforeHoldsFromTheBeginning) {
    setReduced(true);
    followReducedMotion(*item->coordinator(), appearance_);
    clockRuns = true;
    loadBallWithResult();
    showWindow();
    expectStillness();
}

} // namespace
} // namespace ostrella::test
