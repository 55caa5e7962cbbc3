#include "Solver/Geometry/STLParser.h"

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/ASCIISTL.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Geometry/STLRecord.h"

#include <cstring>
#include <utility>

namespace ostrella::STLParser {

namespace {

TriangleMesh parseBinary(std::span<const std::byte> data, std::size_t facets) {
    LargeBuffer<Vec3> positions(3 * facets);
    LargeBuffer<Vec3> normals(3 * facets);
    const std::byte* record = data.data() + STLRecord::preambleSize;
    for (std::size_t i = 0; i < facets; ++i, record += STLRecord::facetSize) {
        Vec3 normal;
        std::memcpy(&normal, record, STLRecord::normalSize);
        std::memcpy(&positions[3 * i], record + STLRecord::normalSize, STLRecord::verticesSize);
        for (std::size_t corner = 0; corner < 3; ++corner)
            normals[3 * i + corner] = normal;
    }
    return {std::move(positions), std::move(normals)};
}

} // namespace

TriangleMesh parse(std::span<const std::byte> data) {
    if (data.empty())
        throw STLParseError::empty();
    if (const auto facets = STLRecord::facetCount(data, data.size()))
        return parseBinary(data, *facets);
    return ASCIISTL::parse({reinterpret_cast<const char*>(data.data()), data.size()});
}

TriangleMesh parse(const std::filesystem::path& path) {
    const auto bytes = readModelFile(path);
    return parse(std::span(bytes.data(), bytes.size()));
}

} // namespace ostrella::STLParser
