#pragma once

#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Package.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

/// Reaches what the controller keeps to itself.
class SimulationControllerProbe {
public:
    using Outcome = SimulationController::Outcome;

    static void apply(
        SimulationController& controller, const SolverRunner::Event& event, std::int64_t runID) {
        controller.apply(event, runID);
    }
    static void complete(SimulationController& controller, std::int64_t runID, Outcome outcome,
        const SimulationInputs& inputs = {}) {
        controller.complete(
            runID, std::move(outcome), inputs, controller.startedAt().value_or(Date()));
    }
    static std::optional<Date> cancelRequestedAt(const SimulationController& controller) {
        return controller.cancelRequestedAt_;
    }
    static std::size_t observerCount(const SimulationController& controller) {
        return controller.observers_.size();
    }
    /// Puts the controller into the midst of a run that has no worker; gives its number.
    static std::int64_t pretendRun(SimulationController& controller) {
        controller.setPhase(RunPhase::solving());
        controller.parameters_->setIsRunning(true);
        return ++controller.runID_;
    }
};

/// How a failed expectation shows a phase.
inline void PrintTo(const RunPhase& phase, std::ostream* stream) {
    constexpr std::array names{
        "idle", "meshing", "solving", "postProcessing", "finished", "failed", "cancelled"};
    *stream << names[static_cast<std::size_t>(phase.kind)] << "(" << phase.converged << ", "
            << phase.stage << ", " << phase.message << ")";
}

} // namespace ostrella

namespace ostrella::test {

using Probe = SimulationControllerProbe;
using testing::ElementsAre;

/// A line of the log without its date and identity.
using TextLine = std::pair<std::string, LogStore::Level>;

/// The whole application around a package with child programs of the test's own. Its time stands
/// still and its run directories lie in a folder of its own.
class RunTest : public testing::Test {
protected:
    using Level = LogStore::Level;

    RunTest();
    ~RunTest() override;

    /// Lays a closed cube of side 1 m from the origin, as if it had been loaded.
    void placeCube();
    /// Presses Run and waits until the run is over.
    void runToEnd();
    void runDemoToEnd();
    /// Presses Run and waits until a child program says "ready".
    void runUntilReady();
    void runDemoUntilReady();
    [[nodiscard]] bool waitForEnd();
    void waitForLine(const std::string& text);
    /// A cancel, and the wait for the run's end.
    void cancelToEnd();

    RunPhase phase() const { return app_->simulation.phase(); }
    /// Lines since the application's start.
    std::vector<TextLine> lines() const;
    std::vector<std::string> texts() const;
    TextLine lastLine() const { return lines().back(); }
    /// The one run directory there is.
    std::filesystem::path runDirectory() const;
    std::vector<std::string> runDirectoryNames() const;
    /// Makes an old run directory.
    std::filesystem::path makeOldRun(const std::string& digits) const;
    /// Expects that every child that was ever started is gone.
    void expectNoChildLeft() const;

    RunEnvironment environment();

    TemporaryDirectory directory_;
    std::filesystem::path runs_ = directory_.path() / "runs";
    Package package_{directory_.path() / "package"};
    ManualClock clock_;
    ManualTimers timers_;
    MemoryPreferences preferences_;
    std::vector<std::pair<std::string, std::string>> alerts_;
    std::unique_ptr<OstrellaApp> app_;
    /// Every phase that the controller announced.
    std::vector<RunPhase> phases_;

private:
    std::size_t bootLineCount_ = 0;
};

/// The soup of a cube of side 1 m from the origin, 12 facets, without the last `missing` of them.
TriangleMesh cube(std::size_t missing = 0);

/// Calls `action` once when the controller announces `wanted`.
void whenPhase(
    SimulationController& controller, const RunPhase& wanted, std::function<void()> action);

} // namespace ostrella::test
