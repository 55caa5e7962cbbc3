#include "Platform/ExclusiveCopy.h"

#include "Models/FileError.h"
#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t chunkSize = std::size_t{1} << 20;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

FileError readError(const fs::path& from) {
    return {"Cannot read " + from.string(), from, lastError()};
}

FileError writeError(const fs::path& to) {
    return {"Cannot write " + to.string(), to, lastError(), "choose another folder"};
}

/// Removes the copy unless it is told that the copy is whole.
class Unfinished {
public:
    explicit Unfinished(const fs::path& file) : file_(&file) {}
    ~Unfinished() {
        if (file_) {
            ::unlink(file_->c_str());
        }
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;
    void keep() { file_ = nullptr; }

private:
    const fs::path* file_;
};

void writeWhole(int output, const std::byte* bytes, std::size_t count, const fs::path& to) {
    while (count > 0) {
        const ssize_t written = ::write(output, bytes, count);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            throw writeError(to);
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

} // namespace

void copyExclusively(const fs::path& from, const fs::path& to) {
    const FileDescriptor input(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (input.get() < 0 || ::fstat(input.get(), &status) != 0) {
        throw readError(from);
    }
    FileDescriptor output(::open(
        to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, (status.st_mode & 0777) | S_IWUSR));
    if (output.get() < 0) {
        throw writeError(to);
    }
    Unfinished unfinished(to);
    std::vector<std::byte> buffer(chunkSize);
    while (true) {
        const ssize_t count = ::read(input.get(), buffer.data(), buffer.size());
        if (count == 0) {
            break;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw readError(from);
        }
        writeWhole(output.get(), buffer.data(), static_cast<std::size_t>(count), to);
    }
    // Some file systems report a full disk only here.
    if (::close(output.release()) != 0) {
        throw writeError(to);
    }
    unfinished.keep();
}

} // namespace ostrella
