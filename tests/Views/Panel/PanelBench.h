#pragma once

#include "Models/PlatformWords.h"
#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Views/Panel/BottomPanelModel.h"
#include "Views/SharedObjects.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cstdint>
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
};

} // namespace ostrella

namespace ostrella::test {

/// The shared objects of the application with the panel's model on top.
class PanelBench {
public:
    using Level = LogStore::Level;

    PanelBench()
        : app({AppBundle(directory_.path()), directory_.path(), &PlatformWords::freedesktop()},
              preferences_, {}, [](const std::string&, const std::string&) {}),
          panel({app.parameters, app.renderSettings, app.logStore, app.historyStore,
              app.appSettings, app.simulation, app.notifications, app.importer, app.samples}) {}

    void setPhase(RunPhase phase) {
        SimulationControllerProbe::setPhase(app.simulation, std::move(phase));
    }
    void setSummary(std::optional<std::int64_t> iterations) {
        RunSummary summary;
        summary.iterations = iterations;
        SimulationControllerProbe::setSummary(app.simulation, summary);
    }
    /// Rows of the solver from 0 on, as a flush lays them into the store: two residuals and two
    /// coefficients, `P` from -1 down by a thousandth an iteration.
    void flushHistory(int rows) {
        HistoryStore::Points residuals;
        HistoryStore::Points coefficients;
        for (int i = 0; i < rows; ++i) {
            residuals.push_back({"P", i, -1 - i / 1000.0});
            residuals.push_back({"U", i, -2 - i / 500.0});
            coefficients.push_back({"CD", i, 0.25});
            coefficients.push_back({"CL", i, 0.5 + i / 1000.0});
        }
        app.historyStore.setResiduals(std::move(residuals));
        app.historyStore.setCoefficients(std::move(coefficients));
        app.historyStore.setResidualLabels({"P", "U"});
        app.historyStore.setCoefficientLabels({"CD", "CL"});
        app.historyStore.setHasData(rows > 0);
    }
    void log(const std::string& text, Level level = Level::info) {
        app.logStore.append(text, level);
    }
    /// `count` lines with the texts "line 0", "line 1" …
    void logLines(int count, Level level = Level::su2) {
        for (int i = 0; i < count; ++i) {
            log("line " + std::to_string(i), level);
        }
        panel.lines()->takeIn();
    }

private:
    TemporaryDirectory directory_;
    MemoryPreferences preferences_;

public:
    OstrellaApp app;
    BottomPanelModel panel;
};

} // namespace ostrella::test
