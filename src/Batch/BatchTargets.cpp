#include "Batch/BatchTargets.h"

#include "Batch/BatchReport.h"
#include "Batch/UsageError.h"
#include "Models/FileError.h"
#include "Solver/Tools/TextFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
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

bool isSameFolder(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return fs::equivalent(one, other, error) && !error;
}

/// Every PNG file begins so; ours name their program among what stands ahead of the pixels.
constexpr std::string_view pngBeginning = "\x89PNG\r\n\x1a\n";
constexpr std::string_view pngMark{"Software\0Ostrella", 17};
constexpr std::size_t pngHeadSize = 8192;

/// One of the files that a run can be asked to write.
struct FileTarget {
    std::string_view option;
    const std::optional<fs::path>& file;
    /// By which an earlier file of the kind is known.
    std::string_view beginning;
    /// What a file of that name is not, if it is no earlier one.
    std::string_view kind;
    /// What an earlier one holds within `pngHeadSize` bytes besides; may be empty.
    std::string_view mark;
};

std::array<FileTarget, 5> fileTargets(const BatchOptions& options) {
    return {{{"json", options.jsonFile, reportBeginning, "report", {}},
        {"write-surface", options.surfaceFile, surfaceBeginning, "surface", {}},
        {"write-streamlines", options.streamlinesFile, streamlinesBeginning, "streamlines file",
            {}},
        {"write-vortex", options.vortexFile, vortexBeginning, "vortex file", {}},
        {"image", options.imageFile, pngBeginning, "picture", pngMark}}};
}

bool isEarlier(const FileTarget& target) {
    std::ifstream stream(*target.file, std::ios::binary);
    std::string head(
        std::max(target.beginning.size(), target.mark.empty() ? 0 : pngHeadSize), '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head.empty() ||
           (head.starts_with(target.beginning) && head.find(target.mark) != head.npos);
}

std::optional<std::string> fileProblem(const FileTarget& target) {
    const fs::path& file = *target.file;
    std::error_code error;
    const auto type = fs::status(file, error).type();
    if (type == fs::file_type::directory) {
        return fmt::format("--{} wants a file: {} is a folder.", target.option, file.string());
    }
    if (type == fs::file_type::regular && !isEarlier(target)) {
        return fmt::format("--{} {}: the file is there already and is no {} of an earlier run. "
                           "Name another file.",
            target.option, file.string(), target.kind);
    }
    if (type != fs::file_type::regular && type != fs::file_type::not_found) {
        return std::nullopt;
    }
    const fs::path folder = fs::absolute(file, error).parent_path();
    if (!fs::is_directory(folder, error)) {
        return fmt::format("--{} {}: there is no folder {}. Make it first.", target.option,
            file.string(), folder.string());
    }
    if (!mayWriteIn(folder)) {
        return fmt::format("--{} {}: {} may not be written. Choose another folder.", target.option,
            file.string(), folder.string());
    }
    return std::nullopt;
}

/// True if both names lead to one place on the disk; a device takes as many texts as are wanted.
bool isSameFile(const fs::path& one, const fs::path& other) {
    std::error_code error;
    if (fs::exists(one, error) && !fs::is_regular_file(one, error)) {
        return false;
    }
    return fs::weakly_canonical(fs::absolute(one, error), error) ==
           fs::weakly_canonical(fs::absolute(other, error), error);
}

std::optional<std::string> filesProblem(const BatchOptions& options) {
    const auto targets = fileTargets(options);
    for (auto target = targets.begin(); target != targets.end(); ++target) {
        if (!target->file) {
            continue;
        }
        if (auto problem = fileProblem(*target)) {
            return problem;
        }
        if (options.model && isSameFile(*options.model, *target->file)) {
            return fmt::format("--{} names the model itself, {}. Name another file.",
                target->option, target->file->string());
        }
        for (auto earlier = targets.begin(); earlier != target; ++earlier) {
            if (earlier->file && isSameFile(*earlier->file, *target->file)) {
                return fmt::format("--{} and --{} name one file, {}. Name two.", earlier->option,
                    target->option, target->file->string());
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> resultsProblem(const BatchOptions& options) {
    const fs::path& folder = *options.resultsFolder;
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        return fmt::format("--results wants a folder: {} is none.", folder.string());
    }
    if (access(folder.c_str(), R_OK | X_OK) != 0) {
        return fmt::format("--results {}: the folder may not be read.", folder.string());
    }
    if (options.exportFolder && isSameFolder(*options.exportFolder, folder)) {
        return fmt::format("--export names the folder of --results, {}, which is only read. Choose "
                           "another folder.",
            folder.string());
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> problem(const BatchOptions& options) {
    std::optional<std::string> found;
    if (options.resultsFolder) {
        found = resultsProblem(options);
    }
    if (!found && options.prepareFolder) {
        found = prepareProblem(*options.prepareFolder);
    }
    if (!found && options.exportFolder) {
        found = folderProblem("export", *options.exportFolder);
    }
    return found ? found : filesProblem(options);
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

void writeFile(const fs::path& file, const std::string& text) {
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
