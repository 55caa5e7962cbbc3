#pragma once

#include "Models/PlatformWords.h"
#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Views/SharedObjects.h"
#include "support/Wait.h"

#include <QCoreApplication>
#include <QObject>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

/// Puts the controller into states that a run would bring about.
class SimulationControllerProbe {
public:
    static void setPhase(SimulationController& controller, RunPhase phase) {
        controller.setPhase(std::move(phase));
    }
    static void setSummary(SimulationController& controller, std::optional<RunSummary> summary) {
        controller.setSummary(std::move(summary));
    }
    static void setMeshCells(SimulationController& controller, std::optional<std::int64_t> cells) {
        controller.setMeshCells(cells);
    }
    static void setStartedAt(SimulationController& controller, Date date) {
        controller.setStartedAt(date);
    }
    static void setMaxIterations(SimulationController& controller, int iterations) {
        controller.setMaxIterations(iterations);
    }
};

} // namespace ostrella

namespace ostrella::test {

using Probe = SimulationControllerProbe;

/// The shared objects of the application, for a view model on top of them. Header only, so that it
/// costs nobody a link.
class ViewBench {
public:
    ViewBench()
        : app({AppBundle(directory_.path()), directory_.path(), &PlatformWords::freedesktop()},
              preferences_, {}, [](const std::string&, const std::string&) {}) {
        app.simulation.configure(
            app.parameters, app.logStore, app.renderSettings, app.historyStore, app.appSettings);
    }

    SharedObjects shared() {
        return {app.parameters, app.renderSettings, app.logStore, app.historyStore, app.appSettings,
            app.simulation, app.notifications, app.importer, app.samples};
    }

    const std::filesystem::path& directory() const { return directory_.path(); }

    /// A triangle of 1 m along x and 2 m along y, as if it had been loaded from "wing.stl".
    void placeModel() {
        const Vec3 up(0, 0, 1);
        app.parameters.setSTLURL("/models/wing.stl");
        app.parameters.setMesh(TriangleMesh(
            std::vector<Vec3>{{0, 0, 0}, {1, 0, 0}, {0, 2, 0}}, std::vector<Vec3>{up, up, up}));
    }

    /// A history whose newest iteration is this one; nothing for an empty one.
    void setLatestIteration(std::optional<std::int64_t> latest) {
        HistoryStore::Points points;
        if (latest) {
            points.push_back({"P", *latest, -3});
        }
        app.historyStore.setResiduals(points);
        app.historyStore.setHasData(latest.has_value());
    }

    /// Ends this turn of the event loop.
    static void turn() { QCoreApplication::processEvents(); }

private:
    TemporaryDirectory directory_;
    MemoryPreferences preferences_;

public:
    OstrellaApp app;
};

} // namespace ostrella::test
