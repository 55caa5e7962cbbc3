#include "Solver/Tools/BundledTool.h"

#include <system_error>

#include <unistd.h>

namespace ostrella::BundledTools {

namespace fs = std::filesystem;

std::string_view executableName(BundledTool tool) {
    return tool == BundledTool::gmsh ? "gmsh" : "SU2_CFD";
}

std::array<std::string, 2> developerFallbacks(BundledTool tool) {
    const std::string name(executableName(tool));
    return {"/opt/homebrew/bin/" + name, "/usr/local/bin/" + name};
}

bool isExecutableFile(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<fs::path> locate(BundledTool tool, const AppBundle& bundle, bool allowFallback,
    const std::function<bool(const std::string& path)>& isExecutable) {
    fs::path packaged = bundle.toolsDirectory() / executableName(tool);
    if (isExecutable(packaged.string())) {
        return packaged;
    }
    if (allowFallback) {
        for (const std::string& fallback : developerFallbacks(tool)) {
            if (isExecutable(fallback)) {
                return fs::path(fallback);
            }
        }
    }
    return std::nullopt;
}

} // namespace ostrella::BundledTools
