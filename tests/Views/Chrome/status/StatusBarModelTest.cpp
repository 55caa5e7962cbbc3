#include "Views/Chrome/StatusBarModel.h"

#include "support/ViewBench.h"

#include <gtest/gtest.h>

#include <memory>
#include <mutex>

namespace ostrella {
namespace {

using test::Probe;

/// Answers for the system, and keeps what it was asked. Shared with the queries under way, which
/// may outlive a test.
struct Machine {
    std::mutex lock;
    std::int64_t freeBytes = 5000;
    std::vector<std::filesystem::path> asked;

    static StatusBarModel::MachineQueries queries(const std::shared_ptr<Machine>& machine) {
        return {[machine](const std::filesystem::path& directory) {
                    const std::lock_guard guard(machine->lock);
                    machine->asked.push_back(directory);
                    return std::optional(machine->freeBytes);
                },
            [] { return std::optional<std::string>("A Chip"); }};
    }
    void setFreeBytes(std::int64_t bytes) {
        const std::lock_guard guard(lock);
        freeBytes = bytes;
    }
    std::vector<std::filesystem::path> questions() {
        const std::lock_guard guard(lock);
        return asked;
    }
};

class StatusBarModelTest : public testing::Test, protected test::ViewBench {
protected:
    std::string text() {
        turn();
        return bar.text().toStdString();
    }
    std::string tone() {
        turn();
        return bar.tone().toStdString();
    }
    std::string counters() {
        turn();
        std::string all;
        for (const QVariant& counter : bar.counters()) {
            const QVariantMap map = counter.toMap();
            all += map.value(QStringLiteral("text")).toString().toStdString() +
                   (map.value(QStringLiteral("mono")).toBool() ? " (mono) " : " ");
        }
        return all;
    }
    void finish() {
        RunSummary summary;
        summary.elapsedSeconds = 12.34;
        summary.cells = 4321;
        summary.cl = 0.25;
        SimulationResult result;
        result.runDirectory = "/runs/last";
        app.parameters.setLastRunResult(result);
        Probe::setSummary(app.simulation, summary);
        Probe::setPhase(app.simulation, RunPhase::finished(true));
    }

    std::shared_ptr<Machine> machine = std::make_shared<Machine>();
    StatusBarModel bar{shared(), "/runs", Machine::queries(machine)};
};

TEST_F(StatusBarModelTest, BeginsIdle) {
    EXPECT_EQ(bar.text().toStdString(), "Idle");
    EXPECT_EQ(bar.tone().toStdString(), "idle");
    EXPECT_TRUE(bar.counters().isEmpty());
}

TEST_F(StatusBarModelTest, ALoadedModel) {
    placeModel();
    EXPECT_EQ(text(), "Ready · 1 facets");
    EXPECT_EQ(tone(), "ok");
    EXPECT_EQ(counters(), "");
}

TEST_F(StatusBarModelTest, ARun) {
    placeModel();
    Probe::setMaxIterations(app.simulation, 2000);
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_EQ(text(), "Meshing…");
    EXPECT_EQ(tone(), "run");
    EXPECT_EQ(counters(), "1 facets ");
    Probe::setMeshCells(app.simulation, 315292);
    Probe::setPhase(app.simulation, RunPhase::solving());
    EXPECT_EQ(text(), "Solving…");
    EXPECT_EQ(counters(), "315\u00A0292 cells ");
    setLatestIteration(1117);
    EXPECT_EQ(text(), "Solving · iter 1\u00A0118 / 2\u00A0000");
    finish();
    EXPECT_EQ(text(), "Converged · 12.3 s");
    EXPECT_EQ(tone(), "ok");
    EXPECT_EQ(counters(), "315\u00A0292 cells CL 0.2500 (mono) ");
    Probe::setMeshCells(app.simulation, std::nullopt);
    EXPECT_EQ(counters(), "4\u00A0321 cells CL 0.2500 (mono) ");
}

TEST_F(StatusBarModelTest, AnotherModelAfterARunMakesItsOutcomeStale) {
    Probe::setPhase(app.simulation, RunPhase::solving());
    finish();
    EXPECT_EQ(text(), "Converged · 12.3 s");
    placeModel();
    EXPECT_EQ(text(), "Ready · 1 facets");
    EXPECT_EQ(tone(), "ok");
    EXPECT_EQ(counters(), "");
    // The next change of phase ends that; the same phase again is no change.
    Probe::setPhase(app.simulation, RunPhase::finished(true));
    EXPECT_EQ(text(), "Ready · 1 facets");
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    EXPECT_EQ(text(), "Cancelled");
}

TEST_F(StatusBarModelTest, AModelThatComesDuringARunDoesNotCount) {
    Probe::setPhase(app.simulation, RunPhase::solving());
    placeModel();
    EXPECT_EQ(text(), "Solving…");
    finish();
    EXPECT_EQ(text(), "Converged · 12.3 s");
}

TEST_F(StatusBarModelTest, TellsTheMachineAsItAppears) {
    EXPECT_TRUE(
        test::waitUntil([this] { return bar.machine().toStdString() == "5.0 KB free · A Chip"; }));
    EXPECT_EQ(machine->questions(), std::vector<std::filesystem::path>{"/runs"});
}

TEST_F(StatusBarModelTest, AsksForTheFreeSpaceAgainAfterARunWhereItsFilesLie) {
    ASSERT_TRUE(test::waitUntil([this] { return !bar.machine().isEmpty(); }));
    Probe::setPhase(app.simulation, RunPhase::meshing());
    Probe::setPhase(app.simulation, RunPhase::solving());
    EXPECT_EQ(machine->questions().size(), 1U);
    machine->setFreeBytes(1000);
    finish();
    EXPECT_TRUE(
        test::waitUntil([this] { return bar.machine().toStdString() == "1.0 KB free · A Chip"; }));
    EXPECT_EQ(machine->questions(), (std::vector<std::filesystem::path>{"/runs", "/runs/last"}));
    Probe::setPhase(app.simulation, RunPhase::idle());
    EXPECT_EQ(machine->questions().size(), 2U);
}

TEST_F(StatusBarModelTest, NotifiesOnceATurn) {
    ASSERT_TRUE(test::waitUntil([this] { return !bar.machine().isEmpty(); }));
    int changes = 0;
    QObject::connect(&bar, &StatusBarModel::changed, [&changes] { ++changes; });
    placeModel();
    setLatestIteration(3);
    setLatestIteration(4);
    EXPECT_EQ(changes, 0);
    turn();
    EXPECT_EQ(changes, 1);
}

TEST(StatusBarMachine, WhatTheSystemDoesNotTellIsLeftOut) {
    test::ViewBench bench;
    StatusBarModel bar(bench.shared(), bench.directory(),
        {[](const std::filesystem::path&) { return std::nullopt; },
            [] { return std::optional<std::string>("A Chip"); }});
    EXPECT_TRUE(test::waitUntil([&bar] { return bar.machine().toStdString() == "A Chip"; }));
}

TEST(StatusBarMachine, TheSystemsOwnAnswers) {
    const auto queries = StatusBarModel::MachineQueries::system();
    const test::TemporaryDirectory directory;
    EXPECT_TRUE(queries.availableCapacity(directory.path()));
    EXPECT_EQ(queries.availableCapacity(directory.path() / "no such folder"), std::nullopt);
    EXPECT_EQ(queries.chipName(), queries.chipName());
}

} // namespace
} // namespace ostrella
