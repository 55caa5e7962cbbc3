#pragma once

#include "Models/RunState.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// The panel under the viewport.
namespace PanelText {

enum class Tab { log, convergence };

inline constexpr std::array allTabs{Tab::log, Tab::convergence};

/// "Log" or "Convergence".
std::string_view title(Tab tab);

/// What stands at the right of the header.
struct HeaderInput {
    Tab tab = Tab::log;
    /// Lines on show.
    std::int64_t lineCount = 0;
    bool isFollowingLog = true;
    RunPhase phase;
    std::optional<RunSummary> summary;
    std::optional<std::int64_t> latestIteration;
};

std::string rightText(const HeaderInput& input);

/// The same, and then with one part less each: what matters least goes first.
std::vector<std::string> rightForms(const HeaderInput& input);

/// In place of the charts until there is data.
inline constexpr std::string_view emptyText =
    "Residuals and force coefficients appear here once a simulation starts.";
inline constexpr std::string_view emptySymbol = "chart.xyaxis.line";

inline constexpr std::string_view residualsTitle = "Residuals";
inline constexpr std::string_view residualsNote = "log₁₀(rms)";
/// The residuals' axis as it is read out.
inline constexpr std::string_view residualsAxisName = "log10(rms)";
inline constexpr std::string_view coefficientsTitle = "Force coefficients";
/// Names of what a chart plots, as they are read out.
inline constexpr std::string_view iterationName = "Iter";
inline constexpr std::string_view seriesName = "Series";

} // namespace PanelText

} // namespace ostrella
