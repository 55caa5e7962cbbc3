// The application quits while a run is under way: nobody waits for the worker, and the worker waits
// for no loop that has ended.

#include "../Package.h"
#include "Models/MainThread.h"
#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"
#include "Solver/Tools/Background.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <latch>
#include <memory>
#include <optional>
#include <string>

#include <fcntl.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

std::size_t threadCount() {
    const auto count =
        std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
    return static_cast<std::size_t>(count);
}

/// The threads that serve chores stay for good. Two chores that wait for each other bring all of
/// them up.
void fillPool() {
    const auto both = std::make_shared<std::latch>(2);
    const auto first = Background::run([both] { both->arrive_and_wait(); });
    const auto second = Background::run([both] { both->arrive_and_wait(); });
    first.wait();
    second.wait();
}

/// The thread that starts programs stays for good, too.
void startAProgram() {
    ChildProcess child;
    const FileDescriptor output(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    child.start({"/bin/true", {}, std::nullopt}, output.get());
    EXPECT_EQ(child.wait(), 0);
}

class Quitting : public testing::Test {
protected:
    Quitting() {
        fillPool();
        startAProgram();
        before_ = threadCount();
    }

    /// Starts the demo, serves the main loop until `until` holds, and takes application and main
    /// loop away.
    void quitDuringDemo(const std::function<bool(OstrellaApp&)>& until) {
        auto mainThread = std::make_unique<MainThread>();
        MemoryPreferences preferences;
        auto app = std::make_unique<OstrellaApp>(
            RunEnvironment{package_.bundle(), directory_.path() / "runs",
                &PlatformWords::freedesktop(), &clock_, &timers_},
            preferences, LogStore::BootFacts(), [](const std::string&, const std::string&) {});
        app->start();
        app->simulation.runDemo();
        ASSERT_TRUE(waitUntil([&] { return until(*app); }));
        app.reset();
        mainThread.reset();
    }

    void expectWorkersEnd() const {
        EXPECT_TRUE(waitUntil([this] { return threadCount() == before_; }))
            << "from " << before_ << " to " << threadCount() << " threads";
        EXPECT_TRUE(timers_.pending().empty()) << "a timer is left behind";
        EXPECT_EQ(clock_.now(), Date());
    }

    TemporaryDirectory directory_;
    Package package_{directory_.path() / "package"};
    ManualClock clock_;
    ManualTimers timers_;
    std::size_t before_ = 0;
};

bool isReady(const OstrellaApp& app) {
    return app.logStore.lines().back().text == "ready";
}

TEST_F(Quitting, whileTheSolverRunsLeavesItAloneAndTheWorkerEndsWithIt) {
    package_.setSolver("echo ready\n" + package_.waitAtGate() + Script::goodSolver);
    quitDuringDemo(isReady);
    ASSERT_EQ(package_.starts("SU2_CFD").size(), 1U);
    EXPECT_TRUE(processExists(package_.starts("SU2_CFD").front()));
    package_.openGate();
    expectWorkersEnd();
    EXPECT_FALSE(processExists(package_.starts("SU2_CFD").front()));
}

TEST_F(Quitting, whileTheSolverFloodsTheLogEndsTheWorker) {
    package_.setSolver("echo ready\nexec yes\n");
    quitDuringDemo([](OstrellaApp& app) { return app.logStore.lines().size() > 1000; });
    ::kill(package_.starts("SU2_CFD").front(), SIGTERM);
    expectWorkersEnd();
}

TEST_F(Quitting, whileTheHistoryIsPolledEndsThePoller) {
    package_.setSolver(
        Script::history + "echo ready\n" + package_.waitAtGate() + Script::goodSolver);
    quitDuringDemo(isReady);
    ASSERT_TRUE(waitUntil([this] { return !timers_.pending().empty(); }));
    timers_.advance(0.25);
    package_.openGate();
    expectWorkersEnd();
}

TEST_F(Quitting, beforeTheSolverStartsEndsTheWorker) {
    quitDuringDemo([](OstrellaApp& app) { return app.simulation.phase().isActive(); });
    expectWorkersEnd();
}

TEST_F(Quitting, afterACancelStopsTheChildAllTheSame) {
    package_.setSolver(Script::deaf);
    bool cancelled = false;
    quitDuringDemo([&cancelled](OstrellaApp& app) {
        if (!cancelled && isReady(app)) {
            cancelled = true;
            app.simulation.cancel();
        }
        return cancelled;
    });
    timers_.advance(3);
    expectWorkersEnd();
    EXPECT_FALSE(processExists(package_.starts("SU2_CFD").front()));
}

} // namespace
} // namespace ostrella::test
