#include "generators/SurfaceDefects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/vector_relational.hpp>

namespace ostrella::test {

namespace {

using Numbers = std::array<std::size_t, 3>;

/// Facets by the numbers of their corners, and the corners as a file holds them.
struct Soup {
    std::vector<glm::dvec3> corners;
    std::vector<Numbers> facets;
};

Soup soupOf(const generators::Body& body) {
    Soup soup;
    std::map<std::tuple<float, float, float>, std::size_t> numbers;
    for (const auto& triangle : body.triangles) {
        Numbers facet{};
        for (std::size_t k = 0; k < 3; ++k) {
            const glm::vec3 p(body.vertices[triangle[k]]);
            const auto [entry, isNew] = numbers.try_emplace({p.x, p.y, p.z}, soup.corners.size());
            if (isNew) {
                soup.corners.emplace_back(p);
            }
            facet[k] = entry->second;
        }
        soup.facets.push_back(facet);
    }
    return soup;
}

/// Numbers of things that are found to belong together.
class Groups {
public:
    explicit Groups(std::size_t count) : above_(count) {
        std::iota(above_.begin(), above_.end(), std::size_t{0});
    }
    std::size_t headOf(std::size_t i) {
        while (above_[i] != i) {
            i = above_[i] = above_[above_[i]];
        }
        return i;
    }
    void join(std::size_t a, std::size_t b) { above_[headOf(a)] = headOf(b); }

private:
    std::vector<std::size_t> above_;
};

struct EdgeUse {
    int forward = 0;
    int backward = 0;
    std::size_t firstFacet = 0;
};

/// Six times the volume over the corners, whose sign tells on which side of a, b, c the point is.
double side(const glm::dvec3& a, const glm::dvec3& b, const glm::dvec3& c, const glm::dvec3& p) {
    return glm::dot(glm::cross(b - a, c - a), p - a);
}

bool goesThrough(const glm::dvec3& from, const glm::dvec3& to, const std::array<glm::dvec3, 3>& t) {
    const double before = side(t[0], t[1], t[2], from);
    const double behind = side(t[0], t[1], t[2], to);
    if (before * behind >= 0.0) {
        return false;
    }
    const double ab = side(from, to, t[0], t[1]);
    const double bc = side(from, to, t[1], t[2]);
    const double ca = side(from, to, t[2], t[0]);
    return (ab > 0.0 && bc > 0.0 && ca > 0.0) || (ab < 0.0 && bc < 0.0 && ca < 0.0);
}

} // namespace

SurfaceDefects SurfaceDefects::of(const generators::Body& body) {
    const Soup soup = soupOf(body);
    SurfaceDefects d;
    d.facets = soup.facets.size();
    d.corners = soup.corners.size();
    d.low = d.high = soup.corners.front();
    for (const glm::dvec3& p : soup.corners) {
        d.low = glm::min(d.low, p);
        d.high = glm::max(d.high, p);
    }
    std::map<std::pair<std::size_t, std::size_t>, EdgeUse> edges;
    std::set<Numbers> seen;
    Groups groups(d.facets);
    std::set<std::size_t> heads;
    for (std::size_t f = 0; f < d.facets; ++f) {
        const Numbers& n = soup.facets[f];
        const std::array<glm::dvec3, 3> p{
            soup.corners[n[0]], soup.corners[n[1]], soup.corners[n[2]]};
        const double area = glm::length(glm::cross(p[1] - p[0], p[2] - p[0])) / 2.0;
        double squares = 0.0;
        for (std::size_t k = 0; k < 3; ++k) {
            const glm::dvec3 edge = p[(k + 1) % 3] - p[k];
            squares += glm::dot(edge, edge);
        }
        // 32-bit corners are off their line by as much.
        if (!(area > 1e-6 * squares)) {
            ++d.emptyFacets;
        } else {
            d.worstShape = std::min(d.worstShape, 4.0 * std::sqrt(3.0) * area / squares);
        }
        if (n[0] == n[1] || n[1] == n[2] || n[2] == n[0]) {
            continue;
        }
        d.area += area;
        // About the middle, so that far bodies keep their digits.
        const glm::dvec3 middle = (d.low + d.high) / 2.0;
        d.volume += glm::dot(p[0] - middle, glm::cross(p[1] - middle, p[2] - middle)) / 6.0;
        Numbers sorted = n;
        std::ranges::sort(sorted);
        d.doubledFacets += seen.insert(sorted).second ? 0 : 1;
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t a = n[k];
            const std::size_t b = n[(k + 1) % 3];
            const auto [entry, isNew] = edges.try_emplace(std::minmax(a, b), EdgeUse{0, 0, f});
            ++(a < b ? entry->second.forward : entry->second.backward);
            groups.join(f, entry->second.firstFacet);
        }
    }
    for (const auto& [edge, use] : edges) {
        const int count = use.forward + use.backward;
        d.openEdges += count == 1 ? 1 : 0;
        d.crowdedEdges += count > 2 ? 1 : 0;
        d.turnedEdges += count == 2 && use.forward != 1 ? 1 : 0;
        heads.insert(groups.headOf(use.firstFacet));
    }
    d.pieces = heads.size();
    return d;
}

double SurfaceDefects::extent() const {
    const glm::dvec3 size = high - low;
    return std::max({size.x, size.y, size.z});
}

std::size_t crossings(const generators::Body& body, std::size_t most) {
    const Soup soup = soupOf(body);
    struct Facet {
        std::array<glm::dvec3, 3> p;
        glm::dvec3 low;
        glm::dvec3 high;
    };
    std::vector<Facet> facets;
    for (const Numbers& n : soup.facets) {
        const std::array<glm::dvec3, 3> p{
            soup.corners[n[0]], soup.corners[n[1]], soup.corners[n[2]]};
        facets.push_back(
            {p, glm::min(p[0], glm::min(p[1], p[2])), glm::max(p[0], glm::max(p[1], p[2]))});
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < facets.size(); ++i) {
        for (std::size_t j = i + 1; j < facets.size() && count < most; ++j) {
            const Facet& a = facets[i];
            const Facet& b = facets[j];
            if (glm::any(glm::greaterThan(a.low, b.high)) ||
                glm::any(glm::greaterThan(b.low, a.high))) {
                continue;
            }
            const auto& other = soup.facets[j];
            if (std::ranges::find_first_of(soup.facets[i], other) != soup.facets[i].end()) {
                continue;
            }
            bool meet = false;
            for (std::size_t k = 0; k < 3 && !meet; ++k) {
                meet = goesThrough(a.p[k], a.p[(k + 1) % 3], b.p) ||
                       goesThrough(b.p[k], b.p[(k + 1) % 3], a.p);
            }
            count += meet ? 1 : 0;
        }
    }
    return count;
}

} // namespace ostrella::test
