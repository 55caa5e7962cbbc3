#include "Update/FileSteps.h"

#include "Platform/FileDescriptor.h"
#include "Update/UpdateRefusal.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstddef>
#include <fstream>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella::FileSteps {

namespace fs = std::filesystem;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

bool isThere(const fs::path& place) {
    struct stat facts {};
    return ::lstat(place.c_str(), &facts) == 0;
}

bool isOwnFolder(const fs::path& place) {
    struct stat facts {};
    return ::lstat(place.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           facts.st_uid == ::geteuid() && (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::error_code moveTo(const fs::path& from, const fs::path& to) {
    return ::rename(from.c_str(), to.c_str()) == 0 ? std::error_code() : lastError();
}

std::error_code swapNames(const fs::path& one, const fs::path& other) {
#ifdef RENAME_EXCHANGE
    if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) {
        return {};
    }
    // A file system that lacks it calls it an invalid argument.
    return errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP
               ? std::make_error_code(std::errc::function_not_supported)
               : lastError();
#else
    return std::make_error_code(std::errc::function_not_supported);
#endif
}

void clear(const fs::path& place) {
    std::error_code ignored;
    fs::remove_all(place, ignored);
}

void settle(const fs::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0) {
#ifdef __linux__
        ::syncfs(descriptor.get());
#else
        ::fsync(descriptor.get());
#endif
    }
}

void settleNames(const fs::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0) {
        ::fsync(descriptor.get());
    }
}

void write(const fs::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << text;
    stream.close();
    const FileDescriptor written(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!stream || ::fsync(written.get()) != 0) {
        throw UpdateRefusal(
            fmt::format("Cannot write {}: {}.", file.string(), lastError().message()));
    }
}

std::vector<std::string> words(const fs::path& file) {
    constexpr std::size_t most = 2;
    std::ifstream stream(file);
    std::vector<std::string> all;
    for (std::string word; all.size() < most && stream >> word;) {
        all.push_back(word);
    }
    return all;
}

} // namespace ostrella::FileSteps
