#include "Solver/Flow/SmallComponents.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace ostrella {

namespace {

/// Which vertices hang together: a forest of parents, with path halving.
class Components {
public:
    explicit Components(std::size_t vertices) : parents_(vertices) {
        std::iota(parents_.begin(), parents_.end(), 0U);
    }

    std::uint32_t root(std::uint32_t vertex) {
        while (parents_[vertex] != vertex) {
            parents_[vertex] = parents_[parents_[vertex]];
            vertex = parents_[vertex];
        }
        return vertex;
    }

    void unite(std::uint32_t a, std::uint32_t b) { parents_[root(a)] = root(b); }

private:
    std::vector<std::uint32_t> parents_;
};

/// The triangles of each component, counted at its root.
std::vector<std::uint32_t> triangleCounts(const TriangleSurface& surface, Components& components) {
    std::vector<std::uint32_t> counts(surface.positions.size());
    for (std::size_t at = 0; at + 2 < surface.indices.size(); at += 3)
        ++counts[components.root(surface.indices[at])];
    return counts;
}

/// The triangles for which `isKept` holds, with the vertices that they use.
template <class IsKept>
TriangleSurface kept(const TriangleSurface& surface, const IsKept& isKept) {
    constexpr std::uint32_t unused = 0xFFFFFFFFU;
    TriangleSurface result;
    std::vector<std::uint32_t> numbers(surface.positions.size(), unused);
    result.indices.reserve(surface.indices.size());
    for (std::size_t at = 0; at + 2 < surface.indices.size(); at += 3) {
        if (!isKept(surface.indices[at]))
            continue;
        for (std::size_t corner = at; corner < at + 3; ++corner) {
            const std::uint32_t vertex = surface.indices[corner];
            if (numbers[vertex] == unused) {
                numbers[vertex] = static_cast<std::uint32_t>(result.positions.size());
                result.positions.push_back(surface.positions[vertex]);
                result.normals.push_back(surface.normals[vertex]);
            }
            result.indices.push_back(numbers[vertex]);
        }
    }
    return result;
}

} // namespace

TriangleSurface filterSmallComponents(TriangleSurface surface) {
    const auto& indices = surface.indices;
    if (indices.size() < 3)
        return surface;
    Components components(surface.positions.size());
    for (std::size_t at = 0; at + 2 < indices.size(); at += 3) {
        components.unite(indices[at], indices[at + 1]);
        components.unite(indices[at + 1], indices[at + 2]);
    }
    const auto counts = triangleCounts(surface, components);
    const std::uint32_t largest = *std::max_element(counts.begin(), counts.end());
    const std::uint32_t threshold = largest < 200 ? 10 : largest / 20;
    if (largest < threshold)
        return surface;
    return kept(surface,
        [&](std::uint32_t vertex) { return counts[components.root(vertex)] >= threshold; });
}

} // namespace ostrella
