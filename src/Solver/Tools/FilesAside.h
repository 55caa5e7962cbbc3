#pragma once

#include <filesystem>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella {

/// Files that lie aside, under other names in their own folder, while something else is tried under
/// their names. Unless they were dropped they are back at the end, each in the place of what lies
/// there by then.
class FilesAside {
public:
    /// Those of the named files that are there. Throws FileError, with all of them in their places.
    FilesAside(const std::filesystem::path& folder, std::span<const std::string_view> names);
    ~FilesAside();
    FilesAside(const FilesAside&) = delete;
    FilesAside& operator=(const FilesAside&) = delete;

    /// Throws FileError.
    void putBack();
    /// Removes them, for what has come in their place. Throws FileError; those left are then put
    /// back.
    void drop();

private:
    /// The name that each file had, and the one it has.
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> files_;
};

} // namespace ostrella
