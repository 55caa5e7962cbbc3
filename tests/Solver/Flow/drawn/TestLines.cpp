#include "TestLines.h"

#include <utility>

namespace ostrella::test {

Streamlines joined(const std::vector<Vec4>& vertices, std::vector<std::uint32_t> indices) {
    std::vector<float> interleaved;
    interleaved.reserve(4 * vertices.size());
    for (const Vec4& vertex : vertices)
        interleaved.insert(interleaved.end(), {vertex.x, vertex.y, vertex.z, vertex.w});
    Streamlines lines;
    lines.vertexCount = vertices.size();
    lines.indexCount = indices.size();
    lines.interleavedVertices = std::move(interleaved);
    lines.indices = std::move(indices);
    return lines;
}

Streamlines traced(const std::vector<std::uint32_t>& lengths) {
    std::vector<Vec4> vertices;
    std::vector<std::uint32_t> indices;
    for (const std::uint32_t length : lengths) {
        for (std::uint32_t k = 0; k < length; ++k) {
            const auto number = static_cast<std::uint32_t>(vertices.size());
            if (k > 0)
                indices.insert(indices.end(), {number - 1, number});
            const auto place = static_cast<float>(number);
            vertices.emplace_back(place, 0.0F, 0.0F, 0.5F * place);
        }
    }
    auto lines = joined(vertices, std::move(indices));
    lines.seedCount = lengths.size();
    return lines;
}

} // namespace ostrella::test
