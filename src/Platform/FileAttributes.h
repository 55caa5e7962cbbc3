#pragma once

#include "Models/Clock.h"

#include <filesystem>
#include <optional>

namespace ostrella {

/// What the system tells of a file itself; a symbolic link is not followed.
struct FileAttributes {
    bool isSymbolicLink = false;
    bool isDirectory = false;
    /// Absent on file systems that do not record it.
    std::optional<Date> created;
    std::optional<Date> modified;

    /// Creation; else last modification; else the most distant past.
    Date age() const { return created.value_or(modified.value_or(Date::min())); }

    /// Nothing if the file is not there or may not be looked at.
    static std::optional<FileAttributes> read(const std::filesystem::path& path);
};

} // namespace ostrella
