#include "Models/LargeBuffer.h"
#include "Models/Precondition.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/STLRecord.h"

#include <cerrno>
#include <cstring>
#include <limits>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella {

namespace {

std::uint32_t facetNumber(const TriangleMesh& mesh) {
    precondition(mesh.facetCount() <= std::numeric_limits<std::uint32_t>::max(),
        "a binary STL holds at most 4294967295 facets");
    return static_cast<std::uint32_t>(mesh.facetCount());
}

/// Fills room of STLRecord::fileSize(facets) bytes; the head is zeros.
void fillBinarySTL(const TriangleMesh& mesh, std::uint32_t facets, std::byte* bytes) {
    std::memset(bytes, 0, STLRecord::headerSize);
    std::memcpy(bytes + STLRecord::headerSize, &facets, sizeof facets);
    std::byte* record = bytes + STLRecord::preambleSize;
    constexpr std::size_t vertices = STLRecord::normalSize;
    constexpr std::size_t attribute = vertices + STLRecord::verticesSize;
    for (std::size_t i = 0; i < facets; ++i, record += STLRecord::facetSize) {
        std::memcpy(record, &mesh.normals()[3 * i], STLRecord::normalSize);
        std::memcpy(record + vertices, &mesh.positions()[3 * i], STLRecord::verticesSize);
        std::memset(record + attribute, 0, STLRecord::facetSize - attribute);
    }
}

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
    throw std::filesystem::filesystem_error(
        "the model could not be written", path, std::error_code(error, std::generic_category()));
}

/// Writes all of `bytes`; gives the error number, 0 for none.
int writeAll(int file, const LargeBuffer<std::byte>& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const auto written = ::write(file, bytes.data() + done, bytes.size() - done);
        if (written >= 0)
            done += static_cast<std::size_t>(written);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

void writeBinarySTL(const TriangleMesh& mesh, const std::filesystem::path& path) {
    const std::uint32_t facets = facetNumber(mesh);
    LargeBuffer<std::byte> bytes(STLRecord::fileSize(facets));
    fillBinarySTL(mesh, facets, bytes.data());
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0)
        fail(path, errno);
    const int error = writeAll(file, bytes);
    const int closing = ::close(file) == 0 || errno == EINTR ? 0 : errno;
    if (error != 0 || closing != 0)
        fail(path, error != 0 ? error : closing);
}

std::string binarySTL(const TriangleMesh& mesh, std::string_view title) {
    precondition(title.size() <= STLRecord::headerSize && !title.starts_with("solid"),
        "a title fits into the head of a binary STL and does not begin as a text");
    const std::uint32_t facets = facetNumber(mesh);
    std::string bytes(STLRecord::fileSize(facets), '\0');
    fillBinarySTL(mesh, facets, reinterpret_cast<std::byte*>(bytes.data()));
    title.copy(bytes.data(), title.size());
    return bytes;
}

} // namespace ostrella
