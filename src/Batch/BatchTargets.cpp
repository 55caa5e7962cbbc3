#include "Batch/BatchTargets.h"

#include "Batch/BatchReport.h"
#include "Batch/UsageError.h"
#include "Models/FileError.h"
#include "Solver/Tools/TextFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

namespace ostrella::BatchTargets {

namespace fs = std::filesystem;

namespace {

bool mayWriteIn(const fs::path& folder) {
    return access(folder.c_str(), W_OK | X_OK) == 0;
}

/// The nearest part of the path that is there already.
fs::path existingPart(const fs::path& path) {
    std::error_code error;
    fs::path part = fs::absolute(path, error);
    while (!fs::exists(part, error) && part.has_parent_path() && part != part.parent_path()) {
        part = part.parent_path();
    }
    return part;
}

/// What keeps a folder, which may have to be made, from taking files.
std::optional<std::string> folderProblem(std::string_view option, const fs::path& folder) {
    const fs::path part = existingPart(folder);
    std::error_code error;
    if (!fs::is_directory(part, error)) {
        return fmt::format("--{} wants a folder: {} is none.", option, part.string());
    }
    if (!mayWriteIn(part)) {
        return fmt::format("--{} {}: {} may not be written. Choose another folder.", option,
            folder.string(), part.string());
    }
    return std::nullopt;
}

std::optional<std::string> prepareProblem(const fs::path& folder) {
    if (auto problem = folderProblem("prepare", folder)) {
        return problem;
    }
    std::error_code error;
    if (fs::exists(folder, error) && !fs::is_empty(folder, error)) {
        return fmt::format(
            "--prepare wants a new or empty folder: {} holds something already.", folder.string());
    }
    return std::nullopt;
}

bool isEarlierReport(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string beginning(reportBeginning.size(), '\0');
    stream.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    return stream.gcount() == 0 || beginning == reportBeginning;
}

std::optional<std::string> reportProblem(const fs::path& file) {
    std::error_code error;
    const auto type = fs::status(file, error).type();
    if (type == fs::file_type::directory) {
        return fmt::format("--json wants a file: {} is a folder.", file.string());
    }
    if (type == fs::file_type::regular && !isEarlierReport(file)) {
        return fmt::format("--json {}: the file is there already and is no report of an earlier "
                           "run. Name another file.",
            file.string());
    }
    if (type != fs::file_type::regular && type != fs::file_type::not_found) {
        return std::nullopt;
    }
    const fs::path folder = fs::absolute(file, error).parent_path();
    if (!fs::is_directory(folder, error)) {
        return fmt::format(
            "--json {}: there is no folder {}. Make it first.", file.string(), folder.string());
    }
    if (!mayWriteIn(folder)) {
        return fmt::format("--json {}: {} may not be written. Choose another folder.",
            file.string(), folder.string());
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> problem(const BatchOptions& options) {
    std::optional<std::string> found;
    if (options.prepareFolder) {
        found = prepareProblem(*options.prepareFolder);
    }
    if (!found && options.exportFolder) {
        found = folderProblem("export", *options.exportFolder);
    }
    if (!found && options.jsonFile) {
        found = reportProblem(*options.jsonFile);
    }
    return found;
}

fs::path temporaryDirectory() {
    for (const char* name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
        const char* const value = std::getenv(name);
        if (!value || *value == '\0') {
            continue;
        }
        std::error_code error;
        if (!fs::is_directory(value, error)) {
            throw UsageError(fmt::format("The temporary directory {} is no folder. Make it, or "
                                         "set {} to another one.",
                value, name));
        }
        return fs::absolute(value);
    }
    return "/tmp";
}

void writeReport(const fs::path& file, const std::string& text) {
    std::error_code error;
    const auto type = fs::status(file, error).type();
    if (type == fs::file_type::regular || type == fs::file_type::not_found) {
        const fs::path target = fs::weakly_canonical(file, error);
        writeTextAtomically(error ? file : target, text);
        return;
    }
    errno = 0;
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) {
        throw FileError("Cannot write " + file.string(), file,
            std::error_code(errno != 0 ? errno : EIO, std::generic_category()));
    }
}

} // namespace ostrella::BatchTargets
