#include "Solver/Flow/vortex/TestSurfaces.h"

#include <glm/geometric.hpp>

#include <map>
#include <set>
#include <utility>

namespace ostrella::test {

namespace {

glm::dvec3 corner(const IsoSurface& surface, std::size_t at) {
    return glm::dvec3(surface.positions[surface.indices[at]]);
}

} // namespace

void appendStrip(TriangleSurface& surface, std::size_t triangles, float z) {
    const auto first = static_cast<std::uint32_t>(surface.positions.size());
    for (std::size_t i = 0; i < triangles + 2; ++i) {
        surface.positions.emplace_back(static_cast<float>(i / 2), static_cast<float>(i % 2), z);
        surface.normals.emplace_back(0.0F, 0.0F, 1.0F);
    }
    for (std::uint32_t i = 0; i < triangles; ++i) {
        const std::uint32_t flip = i % 2;
        surface.indices.insert(
            surface.indices.end(), {first + i, first + i + 1 + flip, first + i + 2 - flip});
    }
}

std::size_t unpairedEdges(std::span<const std::uint32_t> indices) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> uses;
    for (std::size_t i = 0; i < indices.size(); ++i)
        ++uses[{indices[i], indices[i % 3 == 2 ? i - 2 : i + 1]}];
    std::size_t unpaired = 0;
    for (const auto& [edge, count] : uses) {
        const auto back = uses.find({edge.second, edge.first});
        if (count != 1 || back == uses.end() || back->second != 1)
            ++unpaired;
    }
    return unpaired;
}

std::size_t pieces(std::span<const std::uint32_t> indices) {
    std::map<std::uint32_t, std::set<std::uint32_t>> neighbors;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const std::uint32_t next = indices[i % 3 == 2 ? i - 2 : i + 1];
        neighbors[indices[i]].insert(next);
        neighbors[next].insert(indices[i]);
    }
    std::size_t found = 0;
    std::set<std::uint32_t> seen;
    for (const auto& [start, direct] : neighbors) {
        if (!seen.insert(start).second)
            continue;
        ++found;
        std::vector<std::uint32_t> open{start};
        while (!open.empty()) {
            const std::uint32_t vertex = open.back();
            open.pop_back();
            for (const std::uint32_t next : neighbors[vertex]) {
                if (seen.insert(next).second)
                    open.push_back(next);
            }
        }
    }
    return found;
}

double area(const IsoSurface& surface) {
    double sum = 0;
    for (std::size_t at = 0; at < surface.indices.size(); at += 3) {
        const auto a = corner(surface, at);
        sum +=
            glm::length(glm::cross(corner(surface, at + 1) - a, corner(surface, at + 2) - a)) / 2;
    }
    return sum;
}

double enclosedVolume(const IsoSurface& surface) {
    double sum = 0;
    for (std::size_t at = 0; at < surface.indices.size(); at += 3)
        sum += glm::dot(corner(surface, at),
                   glm::cross(corner(surface, at + 1), corner(surface, at + 2))) /
               6;
    return sum;
}

} // namespace ostrella::test
