#include "Platform/FileAttributes.h"

#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>

namespace ostrella {

namespace {

Date date(std::int64_t seconds, std::int64_t nanoseconds) {
    return Date(std::chrono::duration_cast<Date::duration>(
        std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds)));
}

} // namespace

#ifdef __linux__

std::optional<FileAttributes> FileAttributes::read(const std::filesystem::path& path) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_MTIME | STATX_BTIME,
            &status) != 0 ||
        (status.stx_mask & STATX_TYPE) == 0) {
        return std::nullopt;
    }
    FileAttributes attributes;
    attributes.isSymbolicLink = S_ISLNK(status.stx_mode);
    attributes.isDirectory = S_ISDIR(status.stx_mode);
    if ((status.stx_mask & STATX_BTIME) != 0) {
        attributes.created = date(status.stx_btime.tv_sec, status.stx_btime.tv_nsec);
    }
    if ((status.stx_mask & STATX_MTIME) != 0) {
        attributes.modified = date(status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec);
    }
    return attributes;
}

#else

std::optional<FileAttributes> FileAttributes::read(const std::filesystem::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    FileAttributes attributes;
    attributes.isSymbolicLink = S_ISLNK(status.st_mode);
    attributes.isDirectory = S_ISDIR(status.st_mode);
    attributes.created = date(status.st_birthtimespec.tv_sec, status.st_birthtimespec.tv_nsec);
    attributes.modified = date(status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec);
    return attributes;
}

#endif

} // namespace ostrella
