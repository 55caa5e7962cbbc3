#pragma once

#include "Models/LogStore.h"
#include "Platform/SystemFacts.h"
#include "ScriptedUpdater.h"
#include "Solver/Run/SimulationController.h"
#include "Update/UpdateController.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

/// Sets what only a run sets.
class SimulationControllerProbe {
public:
    static void setPhase(SimulationController& simulation, const RunPhase& phase) {
        simulation.setPhase(phase);
    }
};

} // namespace ostrella

namespace ostrella::test {

/// A controller around a scripted updater and a simulation whose phase the test sets. Time stands
/// still until it is moved.
class UpdateControllerTest : public testing::Test {
protected:
    using Line = std::pair<std::string, LogStore::Level>;

    UpdateControllerTest() {
        auto made = std::make_unique<ScriptedUpdater>();
        updater = made.get();
        controller = std::make_unique<UpdateController>(std::move(made), timers,
            [this](const UpdateAlert& alert, std::function<void(bool)> reply) {
                alerts.push_back(alert);
                replies.push_back(std::move(reply));
            });
        item.displayVersionString = "2.0";
    }

    void attach() { controller->attach(*simulation, *log); }

    /// The updater started, as 10 seconds after launch.
    void start() {
        controller->startAfterLaunch();
        timers.advance(10);
        settle();
        ASSERT_TRUE(controller->isStarted());
    }

    void setPhase(const RunPhase& phase) {
        SimulationControllerProbe::setPhase(*simulation, phase);
    }
    void beginRun() { setPhase(RunPhase::meshing()); }
    void endRun() {
        setPhase(RunPhase::finished(true));
        settle();
    }

    /// Everything that is queued for the main thread, and what follows from it.
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    /// The updater wants to start the application anew; true if it was held back.
    bool relaunch(const std::string& version = "2.0") {
        item.displayVersionString = version;
        return updater->delegate->shouldPostponeRelaunch(
            item, [this, version] { installed.push_back(version); });
    }

    /// A check by schedule has found an update; true if the updater was to show it itself.
    bool findBySchedule() {
        const bool shows = updater->delegate->shouldHandleShowingScheduledUpdate(item, false);
        updater->delegate->willHandleShowingUpdate(shows, item);
        return shows;
    }

    std::vector<Line> lines() const {
        std::vector<Line> texts;
        for (const auto& line : log->lines()) {
            texts.emplace_back(line.text, line.level);
        }
        return texts;
    }

    ManualTimers timers;
    NotificationCenter notifications;
    std::unique_ptr<LogStore> log = std::make_unique<LogStore>();
    std::unique_ptr<SimulationController> simulation = std::make_unique<SimulationController>(
        RunEnvironment{AppBundle("package"), "runs", &SystemFacts::words()}, notifications);
    std::vector<UpdateAlert> alerts;
    std::vector<std::function<void(bool)>> replies;
    /// Versions that the application was started anew for.
    std::vector<std::string> installed;
    AppcastItem item;
    ScriptedUpdater* updater = nullptr;
    std::unique_ptr<UpdateController> controller;
};

} // namespace ostrella::test
