#include "Solver/Tools/FilesAside.h"

#include "Solver/Tools/TextFile.h"

#include <system_error>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

void renameFile(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) {
        throw FileError("Cannot rename " + from.string(), from, error, elsewhereForRuns);
    }
}

} // namespace

FilesAside::FilesAside(const fs::path& folder, std::span<const std::string_view> names) {
    for (const std::string_view name : names) {
        const fs::path file = folder / name;
        const fs::path aside = folder / (std::string(name) + ".aside");
        if (!fs::exists(file)) {
            continue;
        }
        try {
            renameFile(file, aside);
        } catch (const FileError&) {
            putBack();
            throw;
        }
        files_.emplace_back(file, aside);
    }
}

FilesAside::~FilesAside() {
    for (const auto& [file, aside] : files_) {
        std::error_code error;
        fs::rename(aside, file, error);
    }
}

void FilesAside::putBack() {
    while (!files_.empty()) {
        renameFile(files_.back().second, files_.back().first);
        files_.pop_back();
    }
}

void FilesAside::drop() {
    while (!files_.empty()) {
        removeFile(files_.back().second);
        files_.pop_back();
    }
}

} // namespace ostrella
