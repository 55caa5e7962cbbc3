#include "Models/OrdinaryFile.h"

#include "Models/FileError.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, std::error_code reason) {
    throw FileError("Cannot read " + path.string(), path, reason);
}

[[noreturn]] void failWithLastError(const std::filesystem::path& path) {
    fail(path, {errno, std::generic_category()});
}

/// Throws unless `status` is that of an ordinary file within the limit.
void requireOrdinary(
    const std::filesystem::path& path, const struct stat& status, std::uint64_t limit) {
    if (S_ISDIR(status.st_mode))
        fail(path, std::make_error_code(std::errc::is_a_directory));
    if (!S_ISREG(status.st_mode))
        fail(path, std::make_error_code(std::errc::not_supported));
    if (static_cast<std::uint64_t>(status.st_size) > limit)
        fail(path, std::make_error_code(std::errc::file_too_large));
}

} // namespace

OrdinaryFile::OrdinaryFile(const std::filesystem::path& path, std::uint64_t limit) : path_(path) {
    struct stat status {};
    // Looked at before it is opened, since opening alone can set a device going; and once more
    // behind it, since the name may stand for something else by then.
    if (::stat(path.c_str(), &status) != 0)
        failWithLastError(path);
    requireOrdinary(path, status, limit);
    const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        failWithLastError(path);
    try {
        if (::fstat(file, &status) != 0)
            failWithLastError(path);
        requireOrdinary(path, status, limit);
    } catch (...) {
        ::close(file);
        throw;
    }
    descriptor_ = file;
    size_ = static_cast<std::uint64_t>(status.st_size);
}

OrdinaryFile::~OrdinaryFile() {
    ::close(descriptor_);
}

std::size_t OrdinaryFile::read(std::span<std::byte> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        constexpr std::size_t portion = std::size_t{1} << 30; // systems refuse more at a time
        const auto got =
            ::read(descriptor_, bytes.data() + done, std::min(portion, bytes.size() - done));
        if (got == 0)
            break;
        if (got > 0)
            done += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            failWithLastError(path_);
    }
    return done;
}

} // namespace ostrella
