#include "generators/SurfaceCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>
#include <utility>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace ostrella::test {

SurfaceMeasures measure(std::span<const glm::vec3> positions) {
    SurfaceMeasures m;
    m.facets = positions.size() / 3;
    m.low = glm::dvec3(std::numeric_limits<double>::max());
    m.high = -m.low;
    m.shortestEdge = m.smallestFacet = std::numeric_limits<double>::max();
    std::map<std::tuple<float, float, float>, std::size_t> numbers;
    std::map<std::pair<std::size_t, std::size_t>, int> directed;
    for (std::size_t f = 0; f < m.facets; ++f) {
        std::array<glm::dvec3, 3> p{};
        std::array<std::size_t, 3> id{};
        for (std::size_t k = 0; k < 3; ++k) {
            const glm::vec3& v = positions[3 * f + k];
            p[k] = v;
            id[k] = numbers.try_emplace({v.x, v.y, v.z}, numbers.size()).first->second;
            m.low = glm::min(m.low, p[k]);
            m.high = glm::max(m.high, p[k]);
        }
        double squares = 0.0;
        for (std::size_t k = 0; k < 3; ++k) {
            const double edge = glm::length(p[(k + 1) % 3] - p[k]);
            squares += edge * edge;
            m.shortestEdge = std::min(m.shortestEdge, edge);
            m.longestEdge = std::max(m.longestEdge, edge);
            ++directed[{id[k], id[(k + 1) % 3]}];
        }
        const double area = glm::length(glm::cross(p[1] - p[0], p[2] - p[0])) / 2.0;
        m.area += area;
        m.smallestFacet = std::min(m.smallestFacet, area);
        m.largestFacet = std::max(m.largestFacet, area);
        m.worstShape = std::min(m.worstShape, 4.0 * std::sqrt(3.0) * area / squares);
        m.volume += glm::dot(p[0], glm::cross(p[1], p[2])) / 6.0;
    }
    m.corners = numbers.size();
    for (const auto& [edge, count] : directed) {
        const auto opposite = directed.find({edge.second, edge.first});
        if (count != 1 || opposite == directed.end()) {
            ++m.loneEdges;
        }
    }
    return m;
}

} // namespace ostrella::test
