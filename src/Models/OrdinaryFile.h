#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <span>

namespace ostrella {

/// An ordinary file on disk, open to be read from its start. Folders, pipes, devices and sockets
/// are refused, and never waited for.
class OrdinaryFile {
public:
    /// Throws FileError, "Cannot read NAME: REASON". Besides the system's own reasons there are
    /// is_a_directory for folders, not_supported for what is no ordinary file either, and
    /// file_too_large beyond `limit` bytes.
    explicit OrdinaryFile(const std::filesystem::path& path,
        std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());
    OrdinaryFile(const OrdinaryFile&) = delete;
    OrdinaryFile& operator=(const OrdinaryFile&) = delete;
    ~OrdinaryFile();

    /// Bytes of the file when it was opened.
    std::uint64_t size() const { return size_; }

    /// Fills `bytes` with what follows in the file, and gives their number: fewer only where the
    /// file ends sooner. Throws FileError.
    std::size_t read(std::span<std::byte> bytes) const;

private:
    std::filesystem::path path_;
    int descriptor_ = -1;
    std::uint64_t size_ = 0;
};

} // namespace ostrella
