#pragma once

#include "Models/PlatformWords.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// The fixed texts of the about window and of the acknowledgements.
namespace AboutText {

inline constexpr std::string_view windowTitle = "About Ostrella";
inline constexpr std::string_view title = "Ostrella";
/// "Native CFD for external aerodynamics on …".
std::string tagLine(const PlatformWords& words);

inline constexpr std::string_view solver = "Solver";
inline constexpr std::string_view mesher = "Mesher";
inline constexpr std::string_view renderer = "Renderer";
/// In the place of what is not known yet.
inline constexpr std::string_view unknown = "·";

inline constexpr std::string_view website = "Website";
inline constexpr std::string_view checkForUpdates = "Check for Updates…";
inline constexpr std::string_view acknowledgements = "Acknowledgements";
inline constexpr std::string_view done = "Done";

/// What is said of a tool that the application runs.
struct Notice {
    std::string heading;
    std::string text;
};

/// The tools as they are packaged.
struct Tools {
    /// Of SU2.
    std::string_view solverRelease;
    /// The built-in preview solver stands in SU2's place.
    bool solverIsStandIn = false;
    /// Nothing where gmsh doesn't tell.
    std::optional<std::string> mesherVersion = {};
};

/// The notices of SU2 and gmsh.
std::array<Notice, 2> notices(const Tools& tools, const PlatformWords& words);

/// Where the notices of the libraries are.
std::string librariesNote(const PlatformWords& words);

} // namespace AboutText

} // namespace ostrella
