#pragma once

#include "Views/Format/SteppedValue.h"

#include <array>
#include <optional>
#include <string_view>

namespace ostrella {

/// A tab of the settings window.
enum class SettingsTab { solver, streamlines };

/// The fixed texts of the settings window, and what its controls may set.
namespace SettingsText {

inline constexpr std::array allTabs{SettingsTab::solver, SettingsTab::streamlines};

/// As it is stored.
std::string_view rawValue(SettingsTab tab);
std::optional<SettingsTab> tab(std::string_view rawValue);
std::string_view title(SettingsTab tab);
std::string_view symbol(SettingsTab tab);

inline constexpr std::string_view windowTitle = "Settings";
inline constexpr std::string_view restoreDefaults = "Restore defaults";

inline constexpr std::string_view iterations = "Iterations";
inline constexpr std::string_view maxIterations = "Max iterations";
inline constexpr SteppedValue::Counts maxIterationsRange{50, 50000, 50};
inline constexpr std::string_view iterationsCaption =
    "How many inner iterations SU2 runs before stopping. Lower = faster preview, higher = better "
    "convergence for stiff cases. 200 is a good default for incompressible RANS-SA.";

inline constexpr std::string_view updates = "Updates";
inline constexpr std::string_view currentVersion = "Current version";
inline constexpr std::string_view checkAutomatically = "Check for updates automatically";
inline constexpr std::string_view checkNow = "Check Now";
inline constexpr std::string_view updatesCaption =
    "Ostrella looks for a new version every 6 hours and asks before installing. An update never "
    "installs while a simulation is running.";

inline constexpr std::string_view window = "Window around the body";
inline constexpr std::string_view inletOffset = "Inlet offset";
inline constexpr SteppedValue::Factors inletOffsetRange{0.1, 3.0, 0.05};
inline constexpr std::string_view wakeLength = "Wake length";
inline constexpr SteppedValue::Factors wakeLengthRange{0.5, 10.0, 0.1};
inline constexpr std::string_view windowCaption =
    "Where streamline seeds spawn upstream of the leading edge, and how far past the trailing edge "
    "they continue, both as a multiple of body length along the flow direction. Defaults: 0.5 × c "
    "upstream, 2.0 × c downstream.";

inline constexpr std::string_view density = "Density";
inline constexpr std::string_view seedCount = "Seed count";
inline constexpr SteppedValue::Counts seedCountRange{20, 500, 10};
inline constexpr std::string_view densityCaption =
    "Number of streamlines released from the inlet seed rake. More seeds = denser visualization, "
    "slower generation.";

} // namespace SettingsText

} // namespace ostrella
