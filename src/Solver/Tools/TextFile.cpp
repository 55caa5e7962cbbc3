#include "Solver/Tools/TextFile.h"

#include "Models/OrdinaryFile.h"
#include "Models/UTF8.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <span>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

FileError failure(std::string_view verb, const fs::path& path, std::error_code reason,
    std::string_view elsewhere = {}) {
    return {fmt::format("Cannot {} {}", verb, path.string()), path, reason, elsewhere};
}

/// A new file beside the one that it is to replace. Removed at the end unless it was kept.
class PartialFile {
public:
    explicit PartialFile(const fs::path& beside) {
        static std::atomic<unsigned> count = 0;
        do {
            name_ = fmt::format("{}.{}-{}.part", beside.string(), getpid(), ++count);
            descriptor_ = open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        } while (descriptor_ < 0 && errno == EEXIST);
        exists_ = descriptor_ >= 0;
    }
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;
    ~PartialFile() {
        closeNow();
        if (exists_) {
            unlink(name_.c_str());
        }
    }

    bool exists() const { return exists_; }

    bool write(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = ::write(descriptor_, text.data(), text.size());
            if (count < 0 && errno != EINTR) {
                return false;
            }
            text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return true;
    }

    /// Closes the file and gives it its final name.
    bool keepAs(const fs::path& path) {
        // Some file systems tell only now that there was no room.
        if (!closeNow() || rename(name_.c_str(), path.c_str()) != 0) {
            return false;
        }
        exists_ = false;
        return true;
    }

private:
    bool closeNow() { return descriptor_ < 0 || close(std::exchange(descriptor_, -1)) == 0; }

    std::string name_;
    int descriptor_ = -1;
    bool exists_ = false;
};

} // namespace

std::string readText(const fs::path& path) {
    const OrdinaryFile file(path);
    std::string text(static_cast<std::size_t>(file.size()), '\0');
    text.resize(file.read(std::as_writable_bytes(std::span(text))));
    if (!UTF8::isValid(text)) {
        throw failure("read", path, std::make_error_code(std::errc::illegal_byte_sequence));
    }
    return text;
}

void writeTextAtomically(const fs::path& path, std::string_view text) {
    PartialFile file(path);
    if (!file.exists() || !file.write(text) || !file.keepAs(path)) {
        throw failure("write", path, lastError(), elsewhereForRuns);
    }
}

void removeFile(const fs::path& path) {
    std::error_code error;
    fs::remove(path, error);
    if (error) {
        throw failure("remove", path, error, elsewhereForRuns);
    }
}

} // namespace ostrella
