#pragma once

#include "Models/PlatformWords.h"
#include "Models/RunState.h"
#include "Models/ViewPreset.h"

#include <glm/vec3.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella {

/// One row of a card over the viewport.
struct CardRowModel {
    enum class Tone { normal, success, warning };

    std::string label;
    std::string value;
    Tone tone = Tone::normal;

    bool operator==(const CardRowModel&) const = default;
};

/// "normal", "success" or "warning".
std::string_view rawValue(CardRowModel::Tone tone);

/// The texts and rules of the cards over the viewport.
namespace ViewportFormat {

/// `count` values from `max` down to `min`, evenly spread; `max` alone for a count below 2.
std::vector<float> legendTicks(float min, float max, int count);

/// The ticks with as many decimals as their span needs; across zero they all have a sign.
std::vector<std::string> legendTickLabels(float min, float max, int count);

/// How many ticks a bar of that height (points) has room for.
int legendTickCount(double barHeight);

/// A card in one line: its coefficients, or else its first row.
std::optional<std::string> collapsedSummary(const std::vector<CardRowModel>& rows);

/// "MESH FAILED"; "RUN FAILED" where the stage is blank.
std::string errorTitle(std::string_view stage);

CardRowModel waterTightRow(std::int64_t openEdges);

/// Rows of the solver card. There are always the same four: what is unknown is a middle dot.
std::vector<CardRowModel> solverRows(std::optional<double> rmsP, std::optional<double> cl,
    std::optional<double> cd, std::optional<double> secondsPerIteration);

struct ResultInput {
    /// Of the model.
    std::optional<std::string> fileName = {};
    std::optional<std::int64_t> cells = {};
    std::optional<RunSummary> summary = {};
    /// Least and greatest of the surface's scalar.
    std::optional<std::pair<float, float>> cpRange = {};
    /// Number of lines.
    std::optional<std::int64_t> streamlines = {};
};

std::vector<CardRowModel> resultRows(const ResultInput& input);

struct GeometryInput {
    std::optional<std::string> fileName = {};
    std::int64_t facets = 0;
    std::optional<std::string> boundingBoxText = {};
    /// Degrees.
    glm::dvec3 rotation{0.0};
    std::optional<std::int64_t> openEdges = {};
};

std::vector<CardRowModel> geometryRows(const GeometryInput& input);

/// The one card at the top left.
enum class TopLeftCard { none, error, solver, result, geometry };

TopLeftCard topLeftCard(const RunPhase& phase, bool hasResult, bool hasMesh);

/// Title of a card; empty for none and for the error card, whose title is errorTitle().
std::string_view cardTitle(TopLeftCard card);
/// Width of a card in points.
double cardWidth(TopLeftCard card);

/// The head of a card that can be collapsed to one line.
std::string_view collapseHelp(bool isCollapsed);
/// As it is read out.
std::string_view collapseValue(bool isCollapsed);
/// Name of the symbol.
std::string_view collapseSymbol(bool isCollapsed);

/// The colour scale on show.
struct Legend {
    float min = 0;
    float max = 1;
    std::string label;
    std::string unit = {};

    bool operator==(const Legend&) const = default;
};

/// That of the surface's colours, or else of the streamlines' speed; nothing where neither shows.
std::optional<Legend> legend(
    bool colormapEnabled, bool streamlinesEnabled, const std::optional<SimulationResult>& result);

/// "Cp", "p", "T", or the name that the file gives.
std::string legendLabel(std::string_view scalarName);

/// Name and value of the legend as they are read out.
std::string legendName(const Legend& legend);
std::string legendValue(const Legend& legend);

/// "Iso", "Front", "Side" or "Top".
std::string_view viewName(ViewPreset preset);
/// "Iso view", as it is read out.
std::string viewLabel(ViewPreset preset);
/// The digit of the preset's shortcut.
char viewShortcutKey(ViewPreset preset);
std::string viewHelp(ViewPreset preset, const PlatformWords& words);
std::string fitHelp(const PlatformWords& words);
std::string_view animateFlowHelp(bool hasStreamlines, bool isOn);

/// There is something to look at.
bool hasScene(bool hasMesh, bool hasResult);
/// There is nothing to look at, and nothing on its way.
bool showsWelcome(bool hasMesh, bool hasResult, const RunPhase& phase, bool isLoading);
/// The model may be turned.
bool canOrient(bool hasMesh, const RunPhase& phase, bool isLoading);

} // namespace ViewportFormat

} // namespace ostrella
