#include "Views/ViewportItem/ItemWindow.h"
#include "golden/GoldenBodies.h"
#include "support/Wait.h"

#include <QRasterWindow>
#include <QScreen>

#include <ctime>
#include <thread>

namespace ostrella::test {
namespace {

using namespace std::chrono_literals;

class ItemFrames : public ItemWindow {
protected:
    /// Streamlines whose pulses travel.
    void showFlow() {
        clockRuns = true;
        loadBallWithResult();
        showWindow();
        ASSERT_TRUE(waitUntil([&] { return item->isAnimating(); }));
    }

    /// No frame comes until `resume`, and then they do again.
    void expectRestUntil(const std::function<void()>& resume) {
        ASSERT_TRUE(waitUntil([&] { return !item->isAnimating(); }));
        EXPECT_FALSE(item->isShown());
        framesDuring(100ms); // the one that was under way
        EXPECT_EQ(framesDuring(700ms), 0U);
        resume();
        ASSERT_TRUE(waitUntil([&] { return item->isAnimating(); }));
        EXPECT_TRUE(item->isShown());
        EXPECT_TRUE(waitForFrames(5));
    }
};

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

TEST_F(ItemFrames, noneComeWhileNothingHappens) {
    parameters->setSTLURL("vehicle.stl");
    parameters->setMesh(golden::vehicle());
    showWindow();
    settle();
    int windowFrames = 0;
    QObject::connect(window.get(), &QQuickWindow::frameSwapped, item, [&] { ++windowFrames; });
    const double before = processorSeconds();
    EXPECT_EQ(framesDuring(10s), 0U);
    EXPECT_EQ(windowFrames, 0);
    // Of all threads, the driver's among them.
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_F(ItemFrames, areFineOnASlowDeviceOnceTheyAreToBe) {
    showFlow();
    QObject::connect(window.get(), &QQuickWindow::afterRendering, item,
        [] { std::this_thread::sleep_for(40ms); });
    ASSERT_TRUE(waitUntil([&] { return item->samples() == 1; }));
    item->drawFinely();
    ASSERT_TRUE(waitForFrames(ViewportDetail::slowFrames + 2));
    EXPECT_EQ(item->samples(), RhiTarget::preferredSamples);
}

TEST_F(ItemFrames, oneComesForAllThatIsSetInATurn) {
    showWindow();
    settle();
    const std::uint64_t before = item->frameCount();
    settings->setShowGrid(false);
    settings->setWireframe(true);
    parameters->setAlpha(5);
    parameters->setBeta(5);
    EXPECT_EQ(framesDuring(300ms), 1U);
    EXPECT_EQ(item->frameCount(), before + 1);
}

TEST_F(ItemFrames, anotherOneOfTheWindowLeavesTheSceneAsItIs) {
    showWindow();
    settle();
    int windowFrames = 0;
    QObject::connect(window.get(), &QQuickWindow::frameSwapped, item, [&] { ++windowFrames; });
    window->update();
    EXPECT_EQ(framesDuring(300ms), 0U);
    EXPECT_EQ(windowFrames, 1);
}

TEST_F(ItemFrames, atMostSixtyASecondComeOfAnAnimation) {
    window->resize(60, 40);
    showFlow();
    ASSERT_TRUE(waitForFrames(10));
    const auto start = std::chrono::steady_clock::now();
    const std::uint64_t frames = framesDuring(3s);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    // One that was due before, and came late, may be among them.
    EXPECT_LE(static_cast<double>(frames), 60 * time.count() + 1);
    EXPECT_GT(frames, 10U);
    RecordProperty("framesPerSecond", std::to_string(static_cast<double>(frames) / time.count()));
    settings->setFlowAnimation(false);
    ASSERT_TRUE(waitUntil([&] { return !item->isAnimating(); }));
    framesDuring(100ms);
    EXPECT_EQ(framesDuring(500ms), 0U);
}

TEST_F(ItemFrames, anAnimationMoves) {
    showFlow();
    const QImage first = shown();
    EXPECT_TRUE(waitUntil([&] { return shown() != first; }));
}

TEST_F(ItemFrames, restWhileTheWindowIsHidden) {
    showFlow();
    window->hide();
    expectRestUntil([&] { window->show(); });
}

TEST_F(ItemFrames, restWhileTheItemIsHidden) {
    showFlow();
    item->setVisible(false);
    expectRestUntil([&] { item->setVisible(true); });
}

TEST_F(ItemFrames, restWhileTheWindowIsMinimised) {
    showFlow();
    window->showMinimized();
    expectRestUntil([&] { window->showNormal(); });
}

TEST_F(ItemFrames, restWhileAnotherWindowCoversAll) {
    showFlow();
    QRasterWindow other;
    other.setFlags(Qt::FramelessWindowHint);
    other.setGeometry(window->geometry().adjusted(-20, -20, 20, 20));
    other.show();
    expectRestUntil([&] { other.setPosition(other.position() + QPoint(200, 0)); });
    // A part of it can be seen now, and all of it once more.
    other.setPosition(other.position() - QPoint(200, 0));
    expectRestUntil([&] { other.hide(); });
}

TEST_F(ItemFrames, restInAWindowThatWasCoveredFromTheStart) {
    QRasterWindow other;
    other.setFlags(Qt::FramelessWindowHint);
    other.setGeometry(other.screen()->geometry());
    other.show();
    ASSERT_TRUE(waitUntil([&] { return other.isExposed(); }));
    showFlow();
    other.raise();
    expectRestUntil([&] { other.lower(); });
}

TEST_F(ItemFrames, pulsesGoOnAsIfTheyHadBeenSeen) {
    loadBallWithResult();
    showWindow();
    ASSERT_TRUE(waitForFrames(3));
    window->hide();
    now += 40; // ten times their period, s
    showWindow();
    ASSERT_TRUE(waitForFrames(2));
    expectPicture();
    const QImage before = shown();
    window->hide();
    now += 1.3;
    showWindow();
    ASSERT_TRUE(waitForFrames(2));
    EXPECT_NE(shown(), before);
    expectPicture();
}

} // namespace
} // namespace ostrella::test
