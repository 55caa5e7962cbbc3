#pragma once

#include "Models/Clock.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Run directories and how long they stay. The pattern of the name, "Ostrella-" and 8 upper-case
/// hexadecimal digits, is the rule of safety: it is checked anew at every step, so that nothing but
/// a directory of this application's can ever be removed. Cleaning is best-effort and silent.
/// Nothing is held in memory; every function may run on any thread.
namespace RunDirectories {

struct Entry {
    std::string name;
    /// Creation; else last modification; else the most distant past.
    Date created;

    bool operator==(const Entry&) const = default;
};

bool isRunDirectoryName(std::string_view name);

/// A name that has not been used before.
std::string makeName();

/// Makes a directory with a fresh name, and the folders that lead to it. Throws
/// std::filesystem::filesystem_error with a text for the user.
std::filesystem::path create(const std::filesystem::path& parent);

/// The run directories in a directory; links and files of such a name are none.
std::vector<Entry> entries(const std::filesystem::path& directory);

/// Which entries have to go: the discarded, in their order, then all but the `keepRecent` newest
/// others, newest first. The shown one always stays and does not count.
std::vector<std::string> namesToDelete(const std::vector<Entry>& entries,
    const std::optional<std::string>& shown, const std::set<std::string>& discarded,
    int keepRecent);

/// Removes what has to go; the locations that were removed.
std::vector<std::filesystem::path> prune(const std::filesystem::path& directory,
    const std::optional<std::filesystem::path>& shown,
    const std::set<std::filesystem::path>& discarded, int keepRecent);

/// Removes one run directory with all it holds; its location, or nothing if it stays.
std::optional<std::filesystem::path> remove(
    std::string_view name, const std::filesystem::path& directory);

/// The last component of a location that lies directly in `directory`, links resolved; else
/// nothing.
std::optional<std::string> name(
    const std::optional<std::filesystem::path>& location, const std::filesystem::path& directory);

} // namespace RunDirectories

} // namespace ostrella
