#include "Solver/Geometry/STLParser.h"

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/ASCIISTL.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Geometry/STLRecord.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella::STLParser {

namespace {

/// The facets of a binary file, put down one behind the other.
class BinaryMesh {
public:
    explicit BinaryMesh(std::size_t facets) : positions_(3 * facets), normals_(3 * facets) {}

    /// Takes so many more facets from as many records.
    void add(const std::byte* record, std::size_t facets) {
        for (const std::size_t end = count_ + facets; count_ < end;
             ++count_, record += STLRecord::facetSize) {
            Vec3 normal;
            std::memcpy(&normal, record, STLRecord::normalSize);
            std::memcpy(
                &positions_[3 * count_], record + STLRecord::normalSize, STLRecord::verticesSize);
            for (std::size_t corner = 0; corner < 3; ++corner)
                normals_[3 * count_ + corner] = normal;
        }
    }

    TriangleMesh finish() && { return {std::move(positions_), std::move(normals_)}; }

private:
    LargeBuffer<Vec3> positions_;
    LargeBuffer<Vec3> normals_;
    std::size_t count_ = 0;
};

/// The mesh of a binary file, in portions that stay in the cache: room for all its bytes would cost
/// more than to read them. Nothing for what is no binary file, or shrinks while it is read.
std::optional<TriangleMesh> parseBinary(const OrdinaryFile& file) {
    std::array<std::byte, STLRecord::preambleSize> preamble;
    if (file.read(preamble) < preamble.size())
        return std::nullopt;
    const auto facets = STLRecord::facetCount(preamble, file.size());
    if (!facets)
        return std::nullopt;
    constexpr std::size_t most = 16384;
    std::vector<std::byte> records(std::min<std::size_t>(most, *facets) * STLRecord::facetSize);
    BinaryMesh mesh(*facets);
    for (std::size_t left = *facets; left > 0;) {
        const std::size_t next = std::min(most, left);
        const std::span portion(records.data(), next * STLRecord::facetSize);
        if (file.read(portion) < portion.size())
            return std::nullopt;
        mesh.add(portion.data(), next);
        left -= next;
    }
    return std::move(mesh).finish();
}

} // namespace

TriangleMesh parse(std::span<const std::byte> data) {
    if (data.empty())
        throw STLParseError::empty();
    if (const auto facets = STLRecord::facetCount(data, data.size())) {
        BinaryMesh mesh(*facets);
        mesh.add(data.data() + STLRecord::preambleSize, *facets);
        return std::move(mesh).finish();
    }
    return ASCIISTL::parse({reinterpret_cast<const char*>(data.data()), data.size()});
}

TriangleMesh parse(const std::filesystem::path& path) {
    std::optional<TriangleMesh> binary;
    withModelFile(path, [&](const OrdinaryFile& file) { binary = parseBinary(file); });
    if (binary)
        return *std::move(binary);
    const auto bytes = readModelFile(path);
    return parse(std::span(bytes.data(), bytes.size()));
}

} // namespace ostrella::STLParser
