#include "Solver/Flow/LineChains.h"

namespace ostrella {

LineChains LineChains::of(const Streamlines& streamlines) {
    const auto& indices = streamlines.indices;
    const std::size_t vertexCount = streamlines.interleavedVertices.size() / 4;
    LineChains chains;
    chains.vertices.reserve(indices.size() / 2 + streamlines.seedCount);
    for (std::size_t i = 0; i + 1 < indices.size(); i += 2) {
        const std::uint32_t from = indices[i];
        const std::uint32_t to = indices[i + 1];
        if (from >= vertexCount || to >= vertexCount)
            continue;
        if (chains.vertices.empty() || chains.vertices.back() != from) {
            if (!chains.vertices.empty())
                chains.starts.push_back(chains.vertices.size());
            chains.vertices.push_back(from);
        }
        chains.vertices.push_back(to);
    }
    if (!chains.vertices.empty())
        chains.starts.push_back(chains.vertices.size());
    return chains;
}

} // namespace ostrella
