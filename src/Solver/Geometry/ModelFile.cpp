#include "Solver/Geometry/ModelFile.h"

#include "Solver/Geometry/ModelScreen.h"
#include "Solver/Geometry/STLParser.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <span>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace {

using Reason = ModelLoadError::Reason;

class FileHandle {
public:
    explicit FileHandle(int file) : file_(file) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() {
        if (file_ >= 0)
            ::close(file_);
    }
    int get() const { return file_; }

private:
    int file_;
};

/// "'part.stl'", or the whole path where it has no last component.
std::string quotedName(const std::filesystem::path& path) {
    const auto name = path.filename();
    return "'" + (name.empty() ? path : name).string() + "'";
}

[[noreturn]] void failWithSystemError(const std::filesystem::path& path, int error) {
    const auto name = quotedName(path);
    if (error == ENOENT || error == ENOTDIR)
        throw ModelLoadError(
            Reason::missing, name + " does not exist. Check its name and folder, and try again.");
    if (error == EACCES || error == EPERM)
        throw ModelLoadError(Reason::notPermitted,
            name + " may not be read. Change its permissions, or copy it to a folder of yours.");
    throw ModelLoadError(Reason::unreadable,
        fmt::format("{} could not be read: {}. Copy it to another place, and try again.", name,
            std::generic_category().message(error)));
}

/// Throws unless `status` is that of an ordinary file within the limit.
void requireOrdinaryFile(
    const std::filesystem::path& path, const struct stat& status, std::uint64_t limit) {
    const auto name = quotedName(path);
    if (S_ISDIR(status.st_mode))
        throw ModelLoadError(
            Reason::folder, name + " is a folder. Choose the STL file of one model.");
    if (!S_ISREG(status.st_mode))
        throw ModelLoadError(Reason::notAFile,
            name + " is a device, a pipe or a socket. Choose an STL file on disk.");
    if (static_cast<std::uint64_t>(status.st_size) > limit)
        throw ModelLoadError(Reason::tooLarge,
            fmt::format("{} is too large: {:.1f} GB, and at most {:.1f} GB can be loaded. Export "
                        "the model with fewer facets.",
                name, static_cast<double>(status.st_size) * 1e-9,
                static_cast<double>(limit) * 1e-9));
}

/// Fills `bytes` from the file, and cuts them off where it ends sooner.
void readAll(int file, LargeBuffer<std::byte>& bytes, const std::filesystem::path& path) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        constexpr std::size_t portion = std::size_t{1} << 30; // systems refuse more at a time
        const auto got = ::read(file, bytes.data() + done, std::min(portion, bytes.size() - done));
        if (got == 0)
            break;
        if (got > 0)
            done += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            failWithSystemError(path, errno);
    }
    bytes.truncate(done);
}

[[noreturn]] void failForMemory(const std::filesystem::path& path) {
    throw ModelLoadError(Reason::outOfMemory,
        "There is not enough memory to load " + quotedName(path) +
            ". Close other applications, or export the model with fewer facets.");
}

} // namespace

LargeBuffer<std::byte> readModelFile(const std::filesystem::path& path, std::uint64_t limit) {
    struct stat status {};
    // Looked at before it is opened, since opening alone can set a device going; and once more
    // behind it, since the name may stand for something else by then.
    if (::stat(path.c_str(), &status) != 0)
        failWithSystemError(path, errno);
    requireOrdinaryFile(path, status, limit);
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0)
        failWithSystemError(path, errno);
    requireOrdinaryFile(path, status, limit);
    try {
        LargeBuffer<std::byte> bytes(static_cast<std::size_t>(status.st_size));
        readAll(file.get(), bytes, path);
        return bytes;
    } catch (const std::bad_alloc&) {
        failForMemory(path);
    }
}

TriangleMesh loadModelFile(const std::filesystem::path& path) {
    try {
        TriangleMesh mesh = STLParser::parse(path);
        screenModel(mesh);
        return mesh;
    } catch (const std::bad_alloc&) {
        failForMemory(path);
    }
}

} // namespace ostrella
