#pragma once

#include "Platform/AppBundle.h"

#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// The two programs that stand beside the application in its package.
enum class BundledTool { gmsh, su2 };

namespace BundledTools {

/// "gmsh" or "SU2_CFD".
std::string_view executableName(BundledTool tool);

/// Where a developer's own build of the tool may lie, in the order of preference.
std::array<std::string, 2> developerFallbacks(BundledTool tool);

/// A regular file (or a link to one) that this user may execute.
bool isExecutableFile(const std::string& path);

/// The tool in the package's tools directory, else, if allowed, the first fallback there is.
std::optional<std::filesystem::path> locate(BundledTool tool, const AppBundle& bundle,
    bool allowFallback = false,
    const std::function<bool(const std::string& path)>& isExecutable = isExecutableFile);

} // namespace BundledTools

} // namespace ostrella
