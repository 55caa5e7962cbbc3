#include "Solver/Surface/EmbeddedMesh.h"

#include "Models/Precondition.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrella {

namespace {

struct Bounds {
    DVec3 low{0};
    DVec3 high{0};
};

Bounds boundsOf(const std::vector<DVec3>& points) {
    if (points.empty()) {
        return {};
    }
    Bounds bounds{points[0], points[0]};
    for (const DVec3& p : points) {
        bounds.low = glm::min(bounds.low, p);
        bounds.high = glm::max(bounds.high, p);
    }
    return bounds;
}

/// Twins by sorting the half-edges by their ends.
std::vector<std::uint32_t> twinsOf(const std::vector<std::uint32_t>& corners) {
    struct Edge {
        std::uint64_t ends;
        std::uint32_t number;
    };
    std::vector<Edge> edges;
    edges.reserve(corners.size());
    for (std::uint32_t edge = 0; edge < corners.size(); ++edge) {
        const std::uint64_t a = corners[edge];
        const std::uint64_t b = corners[EmbeddedMesh::next(edge)];
        edges.push_back({std::min(a, b) << 32 | std::max(a, b), edge});
    }
    std::ranges::sort(
        edges, {}, [](const Edge& edge) { return std::pair(edge.ends, edge.number); });
    std::vector<std::uint32_t> twins(corners.size(), EmbeddedMesh::none);
    for (std::size_t i = 0; i + 1 < edges.size(); i += 2) {
        const std::uint32_t a = edges[i].number;
        const std::uint32_t b = edges[i + 1].number;
        precondition(edges[i].ends == edges[i + 1].ends && corners[a] != corners[b],
            "the surface is closed, manifold and consistently oriented");
        twins[a] = b;
        twins[b] = a;
    }
    return twins;
}

} // namespace

EmbeddedMesh::EmbeddedMesh(
    const IndexedSurface& surface, double cellEdge, const Clearance& clearance)
    : positions_(surface.vertices),
      outgoing_(surface.vertices.size(), none),
      cells_(boundsOf(surface.vertices).low, boundsOf(surface.vertices).high, cellEdge),
      clearance_(clearance) {
    precondition(surface.triangles.size() < none / 3, "half-edges have 32 bits");
    corners_.reserve(3 * surface.triangles.size());
    for (const Triangle& triangle : surface.triangles) {
        corners_.insert(corners_.end(), triangle.begin(), triangle.end());
    }
    twins_ = twinsOf(corners_);
    for (std::uint32_t edge = 0; edge < corners_.size(); ++edge) {
        outgoing_[corners_[edge]] = edge;
    }
    changing_.assign(surface.triangles.size(), 0);
    for (std::uint32_t t = 0; t < surface.triangles.size(); ++t) {
        cells_.insert(t, cornersOf(t));
    }
}

Corners EmbeddedMesh::cornersOf(std::uint32_t number) const {
    return {positions_[corners_[3 * number]], positions_[corners_[3 * number + 1]],
        positions_[corners_[3 * number + 2]]};
}

std::size_t EmbeddedMesh::valence(std::uint32_t vertex) const {
    std::size_t count = 0;
    visitRing(vertex, [&count](std::uint32_t) { ++count; });
    return count;
}

bool EmbeddedMesh::touches(const Triangle& vertices, const Corners& corners,
    const Triangle& otherVertices, const Corners& otherCorners) const {
    int shared = 0;
    std::array<int, 3> mine{};
    std::array<int, 3> theirs{};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            if (vertices[i] == otherVertices[j]) {
                mine[shared] = i;
                theirs[shared] = j;
                ++shared;
            }
        }
    }
    using namespace TriangleClearance;
    switch (shared) {
    case 0:
        return !apart(corners, otherCorners, clearance_.distance);
    case 1:
        return !apartBeyondCorner(corners[mine[0]],
            {corners[(mine[0] + 1) % 3], corners[(mine[0] + 2) % 3]},
            {otherCorners[(theirs[0] + 1) % 3], otherCorners[(theirs[0] + 2) % 3]});
    case 2:
        return !apartBeyondEdge(corners[mine[0]], corners[mine[1]], corners[3 - mine[0] - mine[1]],
            otherCorners[3 - theirs[0] - theirs[1]], clearance_.angleCosine);
    default:
        return true;
    }
}

bool EmbeddedMesh::isFlatFan(std::span<const Proposal> proposals, std::uint32_t apex) {
    constexpr double leastLeaning = 0.2;
    constexpr double leastAngle = 1e-3;
    if (apex == none) {
        return false;
    }
    DVec3 sum(0);
    for (const Proposal& p : proposals) {
        sum += glm::cross(p.corners[1] - p.corners[0], p.corners[2] - p.corners[0]);
    }
    const double size = glm::length(sum);
    if (!(size > 0)) {
        return false;
    }
    const DVec3 up = sum / size;
    double turn = 0;
    for (const Proposal& p : proposals) {
        const std::size_t i = p.vertices[0] == apex ? 0 : p.vertices[1] == apex ? 1 : 2;
        const DVec3 a = p.corners[(i + 1) % 3] - p.corners[i];
        const DVec3 b = p.corners[(i + 2) % 3] - p.corners[i];
        const DVec3 normal = glm::cross(a, b);
        const double risen = glm::dot(normal, up);
        const double angle = std::atan2(risen, glm::dot(a, b) - glm::dot(a, up) * glm::dot(b, up));
        if (!(risen > leastLeaning * glm::length(normal)) || !(angle > leastAngle)) {
            return false;
        }
        turn += angle;
    }
    // Once around: a fan that goes around twice lies over itself.
    constexpr double once = 2 * 3.14159265358979;
    return turn < 1.5 * once;
}

bool EmbeddedMesh::isFree(std::span<const Proposal> proposals, std::uint32_t apex,
    std::span<const std::uint32_t> vanishing) {
    const bool isFlat = isFlatFan(proposals, apex);
    for (std::size_t i = 0; i < proposals.size() && !isFlat; ++i) {
        for (std::size_t j = i + 1; j < proposals.size(); ++j) {
            if (touches(proposals[i].vertices, proposals[i].corners, proposals[j].vertices,
                    proposals[j].corners)) {
                return false;
            }
        }
    }
    ++stamp_;
    for (const Proposal& proposal : proposals) {
        changing_[proposal.triangle] = stamp_;
    }
    for (const std::uint32_t triangle : vanishing) {
        changing_[triangle] = stamp_;
    }
    for (const Proposal& proposal : proposals) {
        const bool free =
            cells_.visitNear(proposal.corners, clearance_.distance, [&](std::uint32_t other) {
                return changing_[other] == stamp_ || !touches(proposal.vertices, proposal.corners,
                                                         triangle(other), cornersOf(other));
            });
        if (!free) {
            return false;
        }
    }
    return true;
}

void EmbeddedMesh::replace(std::span<const Proposal> proposals) {
    for (const Proposal& proposal : proposals) {
        cells_.remove(proposal.triangle, cornersOf(proposal.triangle));
    }
    for (const Proposal& proposal : proposals) {
        cells_.insert(proposal.triangle, proposal.corners);
    }
}

std::vector<std::uint32_t> EmbeddedMesh::contacts(std::span<const std::uint32_t> among) {
    std::vector<std::uint32_t> found;
    for (const std::uint32_t number : among) {
        if (!isTriangle(number)) {
            continue;
        }
        const Triangle vertices = triangle(number);
        const Corners corners = cornersOf(number);
        cells_.visitNear(corners, clearance_.distance, [&](std::uint32_t other) {
            if (other != number && touches(vertices, corners, triangle(other), cornersOf(other))) {
                found.push_back(number);
                found.push_back(other);
            }
            return true;
        });
    }
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void EmbeddedMesh::moveAnyway(
    std::span<const std::uint32_t> vertices, std::span<const DVec3> positions) {
    precondition(vertices.size() == positions.size(), "each vertex has its new position");
    ++stamp_;
    std::vector<std::uint32_t> affected;
    for (const std::uint32_t vertex : vertices) {
        visitRing(vertex, [&](std::uint32_t edge) {
            if (std::exchange(changing_[edge / 3], stamp_) != stamp_) {
                affected.push_back(edge / 3);
                cells_.remove(edge / 3, cornersOf(edge / 3));
            }
        });
    }
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        positions_[vertices[i]] = positions[i];
    }
    for (const std::uint32_t number : affected) {
        cells_.insert(number, cornersOf(number));
    }
}

IndexedSurface EmbeddedMesh::surface() const {
    IndexedSurface result;
    std::vector<std::uint32_t> numbers(positions_.size(), none);
    for (std::uint32_t vertex = 0; vertex < positions_.size(); ++vertex) {
        if (isVertex(vertex)) {
            numbers[vertex] = static_cast<std::uint32_t>(result.vertices.size());
            result.vertices.push_back(positions_[vertex]);
        }
    }
    for (std::uint32_t t = 0; t < triangleCount(); ++t) {
        if (isTriangle(t)) {
            const Triangle vertices = triangle(t);
            result.triangles.push_back(
                {numbers[vertices[0]], numbers[vertices[1]], numbers[vertices[2]]});
        }
    }
    return result;
}

} // namespace ostrella
