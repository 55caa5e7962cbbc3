#pragma once

#include "Views/Panel/BottomPanelModel.h"
#include "support/ViewBench.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace ostrella::test {

/// The shared objects of the application with the panel's model on top.
class PanelBench : public ViewBench {
public:
    using Level = LogStore::Level;

    PanelBench() : panel(shared()) {}

    void setPhase(RunPhase phase) { Probe::setPhase(app.simulation, std::move(phase)); }
    void setSummary(std::optional<std::int64_t> iterations) {
        RunSummary summary;
        summary.iterations = iterations;
        Probe::setSummary(app.simulation, summary);
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

    BottomPanelModel panel;
};

} // namespace ostrella::test
