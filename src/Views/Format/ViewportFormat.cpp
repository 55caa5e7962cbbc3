#include "Views/Format/ViewportFormat.h"

#include "Models/LogStore.h"
#include "Views/Format/Blanks.h"
#include "Views/Format/OrientControls.h"
#include "Views/Format/Ratio.h"
#include "Views/Format/SettingsFormat.h"
#include "Views/Format/SidebarFormat.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ostrella {

std::string_view rawValue(CardRowModel::Tone tone) {
    switch (tone) {
    case CardRowModel::Tone::normal:
        return "normal";
    case CardRowModel::Tone::success:
        return "success";
    case CardRowModel::Tone::warning:
        return "warning";
    }
    return {};
}

namespace ViewportFormat {

namespace {

using SidebarFormat::fixed;

std::string rangeText(float min, float max) {
    return fmt::format(
        "[{}, {}]", fixed(static_cast<double>(min), 2), fixed(static_cast<double>(max), 2));
}

std::string solveText(const RunSummary& summary) {
    std::string text = fmt::format("{} s", fixed(summary.elapsedSeconds, 1));
    if (summary.iterations) {
        text += fmt::format(" · {} iter", *summary.iterations);
    }
    return text;
}

} // namespace

std::optional<std::string> collapsedSummary(const std::vector<CardRowModel>& rows) {
    std::string summary;
    for (const CardRowModel& row : rows) {
        if (row.label == "CL" || row.label == "CD") {
            summary += fmt::format("{}{} {}", summary.empty() ? "" : " · ", row.label, row.value);
        }
    }
    if (summary.empty() && !rows.empty()) {
        summary = fmt::format("{} {}", rows.front().label, rows.front().value);
    }
    return rows.empty() ? std::nullopt : std::optional(summary);
}

std::string errorTitle(std::string_view stage) {
    const QString whole = QString::fromUtf8(stage.data(), static_cast<qsizetype>(stage.size()));
    const QStringView name = trimmed(whole, isBlank);
    const QString title =
        (name.isEmpty() ? QStringLiteral("Run") : name.toString()) + QLatin1String(" failed");
    return title.toUpper().toStdString();
}

CardRowModel waterTightRow(std::int64_t openEdges) {
    if (openEdges < 1) {
        return {"Water-tight", "✓", CardRowModel::Tone::success};
    }
    return {"Water-tight",
        fmt::format("{} open {}", LogStore::grouped(openEdges), openEdges == 1 ? "edge" : "edges"),
        CardRowModel::Tone::warning};
}

std::vector<CardRowModel> solverRows(std::optional<double> rmsP, std::optional<double> cl,
    std::optional<double> cd, std::optional<double> secondsPerIteration) {
    const auto text = [](std::optional<double> value, int digits) {
        return value ? fixed(*value, digits) : "·";
    };
    return {
        {"rms[P]", text(rmsP, 2)},
        {"CL", text(cl, 4)},
        {"CD", text(cd, 4)},
        {"dt", secondsPerIteration ? text(secondsPerIteration, 3) + " s" : "·"},
    };
}

std::vector<CardRowModel> resultRows(const ResultInput& input) {
    std::vector<CardRowModel> rows;
    const auto& summary = input.summary;
    if (input.fileName) {
        rows.push_back({"File", *input.fileName});
    }
    if (const auto cells = input.cells || !summary ? input.cells : summary->cells) {
        rows.push_back({"Cells", LogStore::grouped(*cells)});
    }
    if (summary) {
        rows.push_back({"Solve", solveText(*summary)});
        if (summary->cl) {
            rows.push_back({"CL", fixed(*summary->cl, 4)});
        }
        if (summary->cd) {
            rows.push_back({"CD", fixed(*summary->cd, 4)});
        }
        if (const auto ratio = liftToDragText(*summary)) {
            rows.push_back({"CL / CD", *ratio});
        }
    }
    if (input.cpRange) {
        rows.push_back({"Cp", rangeText(input.cpRange->first, input.cpRange->second)});
    }
    if (input.streamlines) {
        rows.push_back({"Streams", LogStore::grouped(*input.streamlines)});
    }
    return rows;
}

std::vector<CardRowModel> geometryRows(const GeometryInput& input) {
    std::vector<CardRowModel> rows;
    if (input.fileName) {
        rows.push_back({"File", *input.fileName});
    }
    rows.push_back({"Facets", SettingsFormat::count(input.facets)});
    if (input.boundingBoxText) {
        rows.push_back({"Bounding box", *input.boundingBoxText});
    }
    rows.push_back({"Orientation", OrientControls::compactAngles(input.rotation)});
    if (input.openEdges) {
        rows.push_back(waterTightRow(*input.openEdges));
    }
    return rows;
}

TopLeftCard topLeftCard(const RunPhase& phase, bool hasResult, bool hasMesh) {
    if (phase.kind == RunPhase::Kind::failed) {
        return TopLeftCard::error;
    }
    if (phase.isActive()) {
        return TopLeftCard::solver;
    }
    if (hasResult) {
        return TopLeftCard::result;
    }
    return hasMesh ? TopLeftCard::geometry : TopLeftCard::none;
}

std::string_view cardTitle(TopLeftCard card) {
    switch (card) {
    case TopLeftCard::solver:
        return "Solver";
    case TopLeftCard::result:
        return "Result";
    case TopLeftCard::geometry:
        return "Geometry";
    case TopLeftCard::none:
    case TopLeftCard::error:
        break;
    }
    return {};
}

double cardWidth(TopLeftCard card) {
    switch (card) {
    case TopLeftCard::solver:
        return 240;
    case TopLeftCard::result:
        return 280;
    case TopLeftCard::geometry:
    case TopLeftCard::error:
        return 320;
    case TopLeftCard::none:
        break;
    }
    return 0;
}

std::string_view collapseHelp(bool isCollapsed) {
    return isCollapsed ? "Show details" : "Collapse to one line";
}

std::string_view collapseValue(bool isCollapsed) {
    return isCollapsed ? "Collapsed" : "Expanded";
}

std::string_view collapseSymbol(bool isCollapsed) {
    return isCollapsed ? "chevron.down" : "chevron.up";
}

std::vector<float> legendTicks(float min, float max, int count) {
    if (count < 2) {
        return {max};
    }
    std::vector<float> ticks(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        ticks[i] = max - static_cast<float>(i) * (max - min) / static_cast<float>(count - 1);
    }
    return ticks;
}

std::vector<std::string> legendTickLabels(float min, float max, int count) {
    const float span = std::abs(max - min);
    const int digits = span >= 1000 ? 0 : span >= 10 ? 1 : 2;
    const bool isSigned = min < 0 && max > 0;
    std::vector<std::string> labels;
    for (const float tick : legendTicks(min, max, count)) {
        std::string label = fixed(static_cast<double>(tick), digits);
        if (isSigned && !label.starts_with('-')) {
            label.insert(0, 1, '+');
        }
        labels.push_back(std::move(label));
    }
    return labels;
}

int legendTickCount(double barHeight) {
    return barHeight < 140 ? 3 : 5;
}

std::string legendLabel(std::string_view scalarName) {
    if (scalarName == "Pressure_Coefficient") {
        return "Cp";
    }
    if (scalarName == "Pressure") {
        return "p";
    }
    if (scalarName == "Temperature") {
        return "T";
    }
    return std::string(scalarName);
}

std::optional<Legend> legend(
    bool colormapEnabled, bool streamlinesEnabled, const std::optional<SimulationResult>& result) {
    if (!result) {
        return std::nullopt;
    }
    if (colormapEnabled && result->surfaceField) {
        const SurfaceField& field = *result->surfaceField;
        return Legend{field.scalarMin, field.scalarMax, legendLabel(field.scalarName), ""};
    }
    if (streamlinesEnabled && result->streamlines) {
        return Legend{
            result->streamlines->magnitudeMin, result->streamlines->magnitudeMax, "|V|", "m/s"};
    }
    return std::nullopt;
}

std::string legendName(const Legend& legend) {
    return legend.label + " legend";
}

std::string legendValue(const Legend& legend) {
    return rangeText(legend.min, legend.max) + (legend.unit.empty() ? "" : " ") + legend.unit;
}

std::string_view viewName(ViewPreset preset) {
    switch (preset) {
    case ViewPreset::iso:
        return "Iso";
    case ViewPreset::front:
        return "Front";
    case ViewPreset::side:
        return "Side";
    case ViewPreset::top:
        return "Top";
    }
    return {};
}

std::string viewLabel(ViewPreset preset) {
    return fmt::format("{} view", viewName(preset));
}

char viewShortcutKey(ViewPreset preset) {
    const auto place = std::find(allViewPresets.begin(), allViewPresets.end(), preset);
    return static_cast<char>('1' + (place - allViewPresets.begin()));
}

std::string viewHelp(ViewPreset preset, const PlatformWords& words) {
    return fmt::format(
        "{} view · {}{}", viewName(preset), words.viewShortcutPrefix, viewShortcutKey(preset));
}

std::string fitHelp(const PlatformWords& words) {
    return fmt::format("Fit to view · {}", words.originalSizeShortcut);
}

std::string_view animateFlowHelp(bool hasStreamlines, bool isOn) {
    if (!hasStreamlines) {
        return "Turn on Streams to animate the flow";
    }
    return isOn ? "Stop the flow animation" : "Animate the flow along the streamlines";
}

bool hasScene(bool hasMesh, bool hasResult) {
    return hasMesh || hasResult;
}

bool showsWelcome(bool hasMesh, bool hasResult, const RunPhase& phase, bool isLoading) {
    return !hasScene(hasMesh, hasResult) && !phase.isActive() && !isLoading;
}

bool canOrient(bool hasMesh, const RunPhase& phase, bool isLoading) {
    return hasMesh && !phase.isActive() && !isLoading;
}

} // namespace ViewportFormat

} // namespace ostrella
