#include "Update/Installation.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

/// Where only package managers put programs. What an administrator keeps in /usr/local counts too.
constexpr std::array<std::string_view, 7> systemFolders = {
    "/usr", "/bin", "/sbin", "/lib", "/lib64", "/nix", "/gnu"};

bool isWithin(const fs::path& place, const fs::path& folder) {
    const auto [end, rest] =
        std::mismatch(folder.begin(), folder.end(), place.begin(), place.end());
    return end == folder.end();
}

bool isWritable(const fs::path& folder) {
    return ::faccessat(AT_FDCWD, folder.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

bool isOurs(std::string_view name) {
    return name.starts_with("ostrella") || name.starts_with("org.ostrella.");
}

/// Shared libraries and what they load, in a package that brings its own.
bool isLibrary(std::string_view name) {
    return name.starts_with("lib") && name.find(".so") != std::string_view::npos;
}

/// The first thing in `folder` that `belongs` does not know.
template <class Belongs>
std::optional<fs::path> stranger(const fs::path& folder, Belongs belongs) {
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); entry != fs::directory_iterator();
         entry.increment(error)) {
        if (error || !belongs(*entry)) {
            return entry->path();
        }
    }
    // An unreadable folder could hold anything.
    return error && error != std::errc::no_such_file_or_directory ? std::optional(folder)
                                                                  : std::nullopt;
}

/// Beside our own folder there are files of ours in folders that every application shares.
std::optional<fs::path> strangerInShare(const fs::path& share) {
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(share, error);
         entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (error) {
            return share;
        }
        if (entry.depth() == 0 && entry->path().filename() == "ostrella") {
            entry.disable_recursion_pending();
        } else if (!fs::is_directory(entry->symlink_status(error)) &&
                   !isOurs(entry->path().filename().string())) {
            return entry->path();
        }
    }
    return error && error != std::errc::no_such_file_or_directory ? std::optional(share)
                                                                  : std::nullopt;
}

std::optional<fs::path> strangerIn(const fs::path& root) {
    const auto name = [](const fs::directory_entry& entry) {
        return entry.path().filename().string();
    };
    std::error_code failure;
    constexpr std::array<std::string_view, 4> ofOurs = {"bin", "lib", "libexec", "share"};
    auto found = stranger(root, [&](const fs::directory_entry& entry) {
        return fs::is_directory(entry.symlink_status(failure)) &&
               std::find(ofOurs.begin(), ofOurs.end(), name(entry)) != ofOurs.end();
    });
    if (!found) {
        found = stranger(root / "bin", [&](const auto& entry) { return isOurs(name(entry)); });
    }
    if (!found) {
        found = stranger(root / "libexec", [&](const auto& entry) { return isOurs(name(entry)); });
    }
    if (!found) {
        found = stranger(root / "lib",
            [&](const auto& entry) { return isOurs(name(entry)) || isLibrary(name(entry)); });
    }
    return found ? found : strangerInShare(root / "share");
}

std::string reasonAgainst(const fs::path& root) {
    std::error_code error;
    for (const std::string_view folder : systemFolders) {
        if (isWithin(root, folder)) {
            return fmt::format("it lies in {}, which the system's package manager keeps", folder);
        }
    }
    if (root == root.root_path() || !fs::is_regular_file(root / "bin" / "ostrella", error)) {
        return fmt::format("there is no installation in {}", root.string());
    }
    if (!fs::is_regular_file(root / "share" / "ostrella" / "Info.json", error)) {
        return fmt::format("the installation in {} does not tell its version", root.string());
    }
    for (fs::path folder = root; folder != folder.root_path(); folder = folder.parent_path()) {
        if (fs::exists(folder / "CMakeCache.txt", error)) {
            return fmt::format("it lies in {}, where it was built", folder.string());
        }
    }
    for (const fs::path& folder : {root, root.parent_path()}) {
        if (!isWritable(folder)) {
            return fmt::format("the folder {} is not writable", folder.string());
        }
    }
    if (const auto found = strangerIn(root)) {
        return fmt::format("it shares its folder with {}", found->string());
    }
    return "";
}

} // namespace

Installation::Installation(fs::path root) {
    std::error_code error;
    // One who may replace a link is not one who may replace what it leads to.
    root_ = fs::canonical(root, error);
    if (error) {
        root_ = std::move(root);
        managedBecause_ = fmt::format("there is no installation in {}", root_.string());
        return;
    }
    managedBecause_ = reasonAgainst(root_);
}

} // namespace ostrella
