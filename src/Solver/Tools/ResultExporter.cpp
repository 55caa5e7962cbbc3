#include "Solver/Tools/ResultExporter.h"

#include "Models/FileError.h"
#include "Models/NumberFormatting.h"
#include "Platform/ExclusiveCopy.h"

#include <fmt/format.h>

#include <cstdint>
#include <system_error>

namespace ostrella::ResultExporter {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> sources(const SimulationResult& result) {
    std::vector<fs::path> files{result.surfaceVTK, result.flowVTK};
    if (result.historyCSV) {
        files.push_back(*result.historyCSV);
    }
    files.push_back(result.configFile.value_or(result.runDirectory / "run.cfg"));
    std::erase_if(files, [](const fs::path& file) {
        std::error_code error;
        return !fs::exists(file, error);
    });
    return files;
}

/// A link that leads nowhere occupies its name as well.
bool isTaken(const fs::path& location) {
    std::error_code error;
    return fs::symlink_status(location, error).type() != fs::file_type::not_found;
}

} // namespace

std::vector<fs::path> exportResult(const SimulationResult& result, const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw FileError(
            "Cannot make the folder " + folder.string(), folder, error, "choose another folder");
    }
    std::vector<fs::path> copies;
    for (const fs::path& source : sources(result)) {
        const fs::path destination = freeDestination(source.filename().string(), folder);
        copyExclusively(source, destination);
        copies.push_back(destination);
    }
    return copies;
}

fs::path freeDestination(std::string_view name, const fs::path& folder) {
    fs::path destination = folder / name;
    std::string extension = fs::path(name).extension().string();
    if (extension == ".") {
        extension.clear();
    }
    const std::string_view stem = name.substr(0, name.size() - extension.size());
    for (std::uint64_t number = 2; isTaken(destination); ++number) {
        destination = folder / fmt::format("{} {}{}", stem, number, extension);
    }
    return destination;
}

std::string successMessage(std::size_t fileCount, const fs::path& folder) {
    if (fileCount == 0) {
        return "Nothing exported · the run folder had no result files";
    }
    if (fileCount == 1) {
        return "Exported 1 file to " + folder.string();
    }
    return fmt::format("Exported {} files to {}",
        NumberFormatting::grouped(static_cast<std::int64_t>(fileCount)), folder.string());
}

} // namespace ostrella::ResultExporter
