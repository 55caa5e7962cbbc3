#include "Models/MainThread.h"

#include "support/Wait.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

/// A program of its own, since here the tests claim the main thread themselves, to see what becomes
/// of workers when the main loop ends.
namespace ostrella {
namespace {

TEST(MainThreadEnd, releasesAWorkerThatWaits) {
    auto mainThread = std::make_unique<MainThread>();
    std::atomic<bool> asking = false;
    bool released = false;
    bool performed = false;
    std::thread worker([&] {
        asking = true;
        try {
            MainThread::run([&] { performed = true; });
        } catch (const CancellationError&) {
            released = true;
        }
    });
    while (!asking) {
        std::this_thread::yield();
    }
    mainThread.reset(); // No event has been served since the worker asked.
    worker.join();
    EXPECT_TRUE(released);
    EXPECT_FALSE(performed);
}

TEST(MainThreadEnd, refusesARunThatComesLater) {
    std::make_unique<MainThread>().reset();
    bool refused = false;
    std::thread([&] {
        try {
            MainThread::run([] {});
        } catch (const CancellationError&) {
            refused = true;
        }
    }).join();
    EXPECT_TRUE(refused);
    EXPECT_FALSE(MainThread::isCurrent());
}

TEST(MainThreadEnd, dropsWhatWasPosted) {
    const auto held = std::make_shared<int>(1);
    auto mainThread = std::make_unique<MainThread>();
    bool performed = false;
    MainThread::post([&performed, held] { performed = true; });
    EXPECT_EQ(held.use_count(), 2);
    mainThread.reset();
    MainThread::post([&performed] { performed = true; });
    EXPECT_EQ(held.use_count(), 1) << "the dropped work is still held";
    const MainThread next;
    bool later = false;
    MainThread::post([&later] { later = true; });
    EXPECT_TRUE(test::waitUntil([&later] { return later; }));
    EXPECT_FALSE(performed);
}

TEST(MainThreadDeathTest, isClaimedOnceAtATime) {
    const MainThread first;
    EXPECT_DEATH(MainThread(), "claimed once");
}

} // namespace
} // namespace ostrella

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
