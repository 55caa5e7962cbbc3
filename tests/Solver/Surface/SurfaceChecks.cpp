#include "Solver/Surface/SurfaceChecks.h"

#include <fmt/format.h>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <set>
#include <tuple>

namespace ostrella::test {

IndexedSurface shared(const TriangleMesh& mesh) {
    IndexedSurface surface;
    std::map<std::tuple<float, float, float>, std::uint32_t> numbers;
    const auto numberOf = [&](const Vec3& corner) {
        const auto [place, isNew] = numbers.try_emplace(
            {corner.x, corner.y, corner.z}, static_cast<std::uint32_t>(surface.vertices.size()));
        if (isNew)
            surface.vertices.emplace_back(corner);
        return place->second;
    };
    const auto& corners = mesh.positions();
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        surface.triangles.push_back(
            {numberOf(corners[i]), numberOf(corners[i + 1]), numberOf(corners[i + 2])});
    return surface;
}

std::string manifoldDefect(const IndexedSurface& surface) {
    // Each directed edge once, and its opposite once.
    std::set<std::pair<std::uint32_t, std::uint32_t>> edges;
    // Around each vertex: from the next to the previous corner of its triangles.
    std::vector<std::map<std::uint32_t, std::uint32_t>> rings(surface.vertices.size());
    for (const Triangle& t : surface.triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const std::uint32_t from = t[i];
            const std::uint32_t to = t[(i + 1) % 3];
            if (from == to)
                return fmt::format("a triangle has vertex {} twice", from);
            if (!edges.emplace(from, to).second)
                return fmt::format("the edge from {} to {} is there twice", from, to);
            rings[from][to] = t[(i + 2) % 3];
        }
    }
    for (const auto& [from, to] : edges) {
        if (!edges.contains({to, from}))
            return fmt::format("the edge from {} to {} is open", from, to);
    }
    for (std::size_t vertex = 0; vertex < rings.size(); ++vertex) {
        const auto& ring = rings[vertex];
        if (ring.empty())
            return fmt::format("vertex {} has no triangle", vertex);
        std::size_t steps = 1;
        for (std::uint32_t at = ring.begin()->second; at != ring.begin()->first; at = ring.at(at))
            ++steps;
        if (steps != ring.size())
            return fmt::format("vertex {} has more than one ring of triangles", vertex);
    }
    return {};
}

std::vector<IndexedSurface> pieces(const IndexedSurface& surface) {
    std::vector<std::uint32_t> parents(surface.vertices.size());
    std::iota(parents.begin(), parents.end(), 0u);
    const auto find = [&](std::uint32_t vertex) {
        while (parents[vertex] != vertex)
            vertex = parents[vertex] = parents[parents[vertex]];
        return vertex;
    };
    for (const Triangle& t : surface.triangles) {
        parents[find(t[1])] = find(t[0]);
        parents[find(t[2])] = find(t[0]);
    }
    std::map<std::uint32_t, std::size_t> numbers;
    std::vector<IndexedSurface> parts;
    std::vector<std::uint32_t> places(surface.vertices.size());
    for (std::uint32_t vertex = 0; vertex < surface.vertices.size(); ++vertex) {
        const auto [number, isNew] = numbers.try_emplace(find(vertex), parts.size());
        if (isNew)
            parts.emplace_back();
        IndexedSurface& part = parts[number->second];
        places[vertex] = static_cast<std::uint32_t>(part.vertices.size());
        part.vertices.push_back(surface.vertices[vertex]);
    }
    for (const Triangle& t : surface.triangles)
        parts[numbers.at(find(t[0]))].triangles.push_back(
            {places[t[0]], places[t[1]], places[t[2]]});
    return parts;
}

int eulerCharacteristic(const IndexedSurface& surface) {
    std::set<std::pair<std::uint32_t, std::uint32_t>> edges;
    for (const Triangle& t : surface.triangles) {
        for (std::size_t i = 0; i < 3; ++i)
            edges.insert(std::minmax({t[i], t[(i + 1) % 3]}));
    }
    return static_cast<int>(surface.vertices.size()) - static_cast<int>(edges.size()) +
           static_cast<int>(surface.triangles.size());
}

double windingNumber(const IndexedSurface& surface, const DVec3& point) {
    double sum = 0;
    for (const Triangle& t : surface.triangles) {
        const DVec3 a = surface.vertices[t[0]] - point;
        const DVec3 b = surface.vertices[t[1]] - point;
        const DVec3 c = surface.vertices[t[2]] - point;
        const double la = glm::length(a);
        const double lb = glm::length(b);
        const double lc = glm::length(c);
        sum +=
            2 * std::atan2(glm::dot(a, glm::cross(b, c)),
                    la * lb * lc + glm::dot(a, b) * lc + glm::dot(b, c) * la + glm::dot(c, a) * lb);
    }
    return sum / (4 * std::numbers::pi);
}

double area(const IndexedSurface& surface) {
    double sum = 0;
    for (const Triangle& t : surface.triangles) {
        const DVec3& a = surface.vertices[t[0]];
        sum +=
            0.5 * glm::length(glm::cross(surface.vertices[t[1]] - a, surface.vertices[t[2]] - a));
    }
    return sum;
}

std::pair<DVec3, DVec3> box(const IndexedSurface& surface) {
    DVec3 low = surface.vertices.at(0);
    DVec3 high = low;
    for (const DVec3& vertex : surface.vertices) {
        low = glm::min(low, vertex);
        high = glm::max(high, vertex);
    }
    return {low, high};
}

bool hasContacts(EmbeddedMesh& mesh) {
    std::vector<std::uint32_t> all(mesh.triangleCount());
    std::iota(all.begin(), all.end(), 0U);
    return !mesh.contacts(all).empty();
}

} // namespace ostrella::test
