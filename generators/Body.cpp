#include "Body.h"

#include <cmath>
#include <map>

#include <glm/geometric.hpp>

namespace ostrella::generators {

std::uint32_t Body::add(const glm::dvec3& vertex) {
    vertices.push_back(vertex);
    return static_cast<std::uint32_t>(vertices.size() - 1);
}

void Body::addQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    const double ac = glm::length(vertices[a] - vertices[c]);
    const double bd = glm::length(vertices[b] - vertices[d]);
    // Equal diagonals differ by rounding only; a margin keeps the cut regular.
    if (ac <= bd * (1.0 + 1e-9)) {
        triangles.push_back({a, b, c});
        triangles.push_back({a, c, d});
    } else {
        triangles.push_back({a, b, d});
        triangles.push_back({b, c, d});
    }
}

void Body::append(const Body& other) {
    const auto base = static_cast<std::uint32_t>(vertices.size());
    vertices.insert(vertices.end(), other.vertices.begin(), other.vertices.end());
    for (const Triangle& t : other.triangles) {
        triangles.push_back({t[0] + base, t[1] + base, t[2] + base});
    }
}

Body Body::translated(const glm::dvec3& offset) const {
    Body result = *this;
    for (glm::dvec3& v : result.vertices) {
        v += offset;
    }
    return result;
}

Body Body::scaled(double factor) const {
    Body result = *this;
    for (glm::dvec3& v : result.vertices) {
        v *= factor;
    }
    return result;
}

Body Body::welded(double tolerance) const {
    using Key = std::array<std::int64_t, 3>;
    std::map<Key, std::uint32_t> cells;
    Body result;
    std::vector<std::uint32_t> renumbered(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const glm::dvec3 cell = glm::dvec3(vertices[i].x, vertices[i].y, vertices[i].z) / tolerance;
        const Key key{std::llround(cell.x), std::llround(cell.y), std::llround(cell.z)};
        auto found = cells.end();
        for (std::int64_t n = 0; n < 27 && found == cells.end(); ++n) {
            found = cells.find({key[0] + n % 3 - 1, key[1] + n / 3 % 3 - 1, key[2] + n / 9 - 1});
        }
        renumbered[i] = found != cells.end() ? found->second : result.add(vertices[i]);
        if (found == cells.end()) {
            cells.emplace(key, renumbered[i]);
        }
    }
    for (const Triangle& t : triangles) {
        const Triangle r{renumbered[t[0]], renumbered[t[1]], renumbered[t[2]]};
        if (r[0] != r[1] && r[1] != r[2] && r[2] != r[0]) {
            result.triangles.push_back(r);
        }
    }
    return result;
}

double Body::signedVolume() const {
    double sum = 0.0;
    for (const Triangle& t : triangles) {
        sum += glm::dot(vertices[t[0]], glm::cross(vertices[t[1]], vertices[t[2]]));
    }
    return sum / 6.0;
}

} // namespace ostrella::generators
