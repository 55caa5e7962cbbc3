#include "Solver/Tools/RunDirectories.h"

#include "Models/FileError.h"
#include "Platform/FileAttributes.h"

#include <QUuid>

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <tuple>

namespace ostrella::RunDirectories {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "Ostrella-";
constexpr std::size_t digitCount = 8;

/// A directory itself, known not to be a link to one.
bool isRealDirectory(const std::optional<FileAttributes>& attributes) {
    return attributes && !attributes->isSymbolicLink && attributes->isDirectory;
}

/// Absolute and without links, as far as the path exists; nothing if the system refuses to say.
std::optional<fs::path> resolved(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error) {
        return std::nullopt;
    }
    fs::path canonical = fs::weakly_canonical(absolute, error);
    if (error) {
        return std::nullopt;
    }
    return canonical.has_filename() ? canonical : canonical.parent_path();
}

FileError creationError(const fs::path& parent, std::error_code reason) {
    return {"Cannot make a run directory in " + parent.string(), parent, reason,
        "set TMPDIR to another folder and start Ostrella again"};
}

} // namespace

bool isRunDirectoryName(std::string_view name) {
    if (!name.starts_with(prefix)) {
        return false;
    }
    const std::string_view digits = name.substr(prefix.size());
    return digits.size() == digitCount && std::all_of(digits.begin(), digits.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
}

std::string makeName() {
    const QString identity = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return std::string(prefix) + identity.left(static_cast<qsizetype>(digitCount)).toStdString();
}

fs::path create(const fs::path& parent) {
    std::error_code error;
    fs::create_directories(parent, error);
    if (error) {
        throw creationError(parent, error);
    }
    while (true) {
        fs::path directory = parent / makeName();
        if (fs::create_directory(directory, error)) {
            return directory;
        }
        // Without an error the name is taken, by chance; a run never shares a directory.
        if (error) {
            throw creationError(parent, error);
        }
    }
}

std::vector<Entry> entries(const fs::path& directory) {
    std::vector<Entry> found;
    std::error_code error;
    for (fs::directory_iterator item(directory, error), end; !error && item != end;
         item.increment(error)) {
        std::string itemName = item->path().filename().string();
        if (!isRunDirectoryName(itemName)) {
            continue;
        }
        const std::optional<FileAttributes> attributes = FileAttributes::read(item->path());
        if (!isRealDirectory(attributes)) {
            continue;
        }
        found.push_back({std::move(itemName), attributes->age()});
    }
    if (error) {
        return {};
    }
    return found;
}

std::vector<std::string> namesToDelete(const std::vector<Entry>& entries,
    const std::optional<std::string>& shown, const std::set<std::string>& discarded,
    int keepRecent) {
    std::vector<std::string> names;
    std::vector<Entry> others;
    for (const Entry& entry : entries) {
        if (!isRunDirectoryName(entry.name) || entry.name == shown) {
            continue;
        }
        if (discarded.contains(entry.name)) {
            names.push_back(entry.name);
        } else {
            others.push_back(entry);
        }
    }
    std::stable_sort(others.begin(), others.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.created, a.name) > std::tie(b.created, b.name);
    });
    const std::size_t kept =
        std::min(others.size(), static_cast<std::size_t>(std::max(keepRecent, 0)));
    for (std::size_t i = kept; i < others.size(); ++i) {
        names.push_back(others[i].name);
    }
    return names;
}

std::vector<fs::path> prune(const fs::path& directory, const std::optional<fs::path>& shown,
    const std::set<fs::path>& discarded, int keepRecent) {
    std::set<std::string> discardedNames;
    for (const fs::path& location : discarded) {
        if (auto discardedName = name(location, directory)) {
            discardedNames.insert(std::move(*discardedName));
        }
    }
    std::vector<fs::path> removed;
    for (const std::string& old :
        namesToDelete(entries(directory), name(shown, directory), discardedNames, keepRecent)) {
        if (auto location = remove(old, directory)) {
            removed.push_back(std::move(*location));
        }
    }
    return removed;
}

std::optional<fs::path> remove(std::string_view name, const fs::path& directory) {
    if (!isRunDirectoryName(name)) {
        return std::nullopt;
    }
    fs::path location = directory / name;
    if (!isRealDirectory(FileAttributes::read(location))) {
        return std::nullopt;
    }
    std::error_code error;
    fs::remove_all(location, error);
    if (error) {
        return std::nullopt;
    }
    return location;
}

std::optional<std::string> name(
    const std::optional<fs::path>& location, const fs::path& directory) {
    if (!location) {
        return std::nullopt;
    }
    // "a/b/" names b, as "a/b" does.
    const fs::path item = location->has_filename() ? *location : location->parent_path();
    const std::optional<fs::path> parent = resolved(item.parent_path());
    const std::optional<fs::path> here = resolved(directory);
    if (!parent || !here || *parent != *here) {
        return std::nullopt;
    }
    return item.filename().string();
}

} // namespace ostrella::RunDirectories
