#include "ProcessRun.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>

#include <sys/wait.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using test::program;

std::ptrdiff_t entryCount(const char* folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

/// Descriptors, threads and children that the process has.
class HygieneTest : public testing::Test {
protected:
    void SetUp() override {
#ifndef __linux__
        GTEST_SKIP() << "counts in /proc";
#endif
        // What libraries open once for all is open now.
        test::ProcessRun(log, timers, program("say"), {"x\\n"}).finish();
        waitForOneThread();
        descriptors_ = entryCount("/proc/self/fd");
        threads_ = entryCount("/proc/self/task");
    }

    void TearDown() override {
        EXPECT_EQ(entryCount("/proc/self/fd"), descriptors_);
        EXPECT_TRUE(test::waitUntil([&] { return entryCount("/proc/self/task") <= threads_; }));
        errno = 0;
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
        EXPECT_EQ(errno, ECHILD);
    }

    /// The consumer's thread ends a moment after its forwarder.
    static void waitForOneThread() {
        std::ptrdiff_t last = 0;
        test::waitUntil([&last] {
            const std::ptrdiff_t now = entryCount("/proc/self/task");
            return std::exchange(last, now) == now;
        });
    }

    LogStore log;
    test::ManualTimers timers;

private:
    std::ptrdiff_t descriptors_ = 0;
    std::ptrdiff_t threads_ = 0;
};

TEST_F(HygieneTest, leavesNothingBehindAfterAThousandStarts) {
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(test::ProcessRun(log, timers, program("say"), {"line\\n"}).finish().status, 0);
    }
    EXPECT_EQ(log.count(), 1001);
}

TEST_F(HygieneTest, leavesNothingBehindAfterRefusedStarts) {
    for (int i = 0; i < 100; ++i) {
        ASSERT_THROW(test::ProcessRun(log, timers, program("nothing")).finish(), std::system_error);
    }
}

TEST_F(HygieneTest, leavesNothingBehindAfterCancelledRuns) {
    for (int i = 0; i < 100; ++i) {
        const CancellationSource source;
        test::ProcessRun run(log, timers, program("slow"), {}, source.token());
        source.cancel();
        ASSERT_THROW(run.finish(), CancellationError);
    }
}

} // namespace
} // namespace ostrella
