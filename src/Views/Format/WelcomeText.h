#pragma once

#include "Models/PlatformWords.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// The welcome card and its tiles.
namespace WelcomeText {

inline constexpr std::string_view title = "Ostrella";
inline constexpr std::string_view samplesHeading = "Try a sample";
inline constexpr std::string_view demoLink = "Run the NACA0012 demo";
inline constexpr std::string_view loadLink = "or Load your own STL…";

/// "Aerodynamic analysis on your Mac."
std::string tagLine(const PlatformWords& words);

/// Symbol of a sample's tile.
std::string_view sampleSymbol(std::string_view id);
/// "19 516 facets"; empty until the count is known.
std::string facetsText(std::optional<std::int64_t> count);
std::string sampleHelp(std::string_view name);
/// As it is read out.
std::string sampleLabel(std::string_view name);

} // namespace WelcomeText

} // namespace ostrella
