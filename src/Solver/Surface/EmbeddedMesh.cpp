#include "Solver/Surface/EmbeddedMesh.h"

#include "Models/Precondition.h"

#include <glm/common.hpp>

#include <algorithm>
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

bool EmbeddedMesh::isFree(
    std::span<const Proposal> proposals, std::span<const std::uint32_t> vanishing) {
    for (std::size_t i = 0; i < proposals.size(); ++i) {
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

bool EmbeddedMesh::tryMove(std::uint32_t vertex, const DVec3& position) {
    proposals_.clear();
    visitRing(vertex, [&](std::uint32_t edge) {
        const std::uint32_t number = edge / 3;
        Proposal proposal{number, triangle(number), cornersOf(number)};
        proposal.corners[edge % 3] = position;
        proposals_.push_back(proposal);
    });
    if (!isFree(proposals_, {})) {
        return false;
    }
    replace(proposals_);
    positions_[vertex] = position;
    return true;
}

bool EmbeddedMesh::mayCollapse(std::uint32_t edge) const {
    const std::uint32_t left = to(next(edge));
    const std::uint32_t right = to(next(twins_[edge]));
    if (left == right) {
        return false;
    }
    // The ends have no neighbours in common but the two corners beside the edge, and those keep at
    // least three triangles each.
    const std::uint32_t goal = to(edge);
    bool sound = valence(left) > 3 && valence(right) > 3;
    visitRing(from(edge), [&](std::uint32_t spoke) {
        const std::uint32_t neighbour = to(spoke);
        if (neighbour == goal || neighbour == left || neighbour == right) {
            return;
        }
        visitRing(goal, [&](std::uint32_t other) { sound = sound && to(other) != neighbour; });
    });
    return sound;
}

void EmbeddedMesh::linkTwins(std::uint32_t a, std::uint32_t b) {
    twins_[a] = b;
    twins_[b] = a;
}

bool EmbeddedMesh::tryCollapse(std::uint32_t edge, const DVec3& position) {
    const std::uint32_t gone = from(edge);
    const std::uint32_t kept = to(edge);
    const std::uint32_t back = twins_[edge];
    const std::array<std::uint32_t, 2> vanishing{edge / 3, back / 3};

    proposals_.clear();
    for (const std::uint32_t end : {gone, kept}) {
        visitRing(end, [&](std::uint32_t spoke) {
            const std::uint32_t number = spoke / 3;
            if (number == vanishing[0] || number == vanishing[1]) {
                return;
            }
            Proposal proposal{number, triangle(number), cornersOf(number)};
            proposal.vertices[spoke % 3] = kept;
            proposal.corners[spoke % 3] = position;
            proposals_.push_back(proposal);
        });
    }
    if (!isFree(proposals_, vanishing)) {
        return false;
    }

    for (const std::uint32_t number : vanishing) {
        cells_.remove(number, cornersOf(number));
    }
    replace(proposals_);
    for (const Proposal& proposal : proposals_) {
        for (std::uint32_t i = 0; i < 3; ++i) {
            corners_[3 * proposal.triangle + i] = proposal.vertices[i];
        }
    }
    positions_[kept] = position;
    outgoing_[gone] = none;
    for (const std::uint32_t side : {edge, back}) {
        const std::uint32_t a = twins_[next(side)];
        const std::uint32_t b = twins_[previous(side)];
        linkTwins(a, b);
        // a and b run between `kept` and the corner beside the edge, one each way.
        outgoing_[corners_[a]] = a;
        outgoing_[corners_[b]] = b;
    }
    for (const std::uint32_t number : vanishing) {
        for (std::uint32_t i = 0; i < 3; ++i) {
            corners_[3 * number + i] = none;
        }
    }
    return true;
}

bool EmbeddedMesh::tryFlip(std::uint32_t edge) {
    const std::uint32_t back = twins_[edge];
    const std::uint32_t left = to(next(edge));
    const std::uint32_t right = to(next(back));
    const std::uint32_t start = from(edge);
    const std::uint32_t end = to(edge);
    if (left == right || valence(start) <= 3 || valence(end) <= 3) {
        return false;
    }
    bool exists = false;
    visitRing(left, [&](std::uint32_t spoke) { exists = exists || to(spoke) == right; });
    if (exists) {
        return false;
    }
    const std::uint32_t first = edge / 3;
    const std::uint32_t second = back / 3;
    const auto proposal = [this](std::uint32_t number, const Triangle& vertices) {
        return Proposal{number, vertices,
            {positions_[vertices[0]], positions_[vertices[1]], positions_[vertices[2]]}};
    };
    proposals_ = {proposal(first, {start, right, left}), proposal(second, {end, left, right})};
    if (!isFree(proposals_, {})) {
        return false;
    }
    const std::uint32_t endToLeft = twins_[next(edge)];
    const std::uint32_t leftToStart = twins_[previous(edge)];
    const std::uint32_t startToRight = twins_[next(back)];
    const std::uint32_t rightToEnd = twins_[previous(back)];
    replace(proposals_);
    for (const Proposal& p : proposals_) {
        for (std::uint32_t i = 0; i < 3; ++i) {
            corners_[3 * p.triangle + i] = p.vertices[i];
        }
    }
    linkTwins(3 * first, startToRight);
    linkTwins(3 * first + 1, 3 * second + 1);
    linkTwins(3 * first + 2, leftToStart);
    linkTwins(3 * second, endToLeft);
    linkTwins(3 * second + 2, rightToEnd);
    outgoing_[start] = 3 * first;
    outgoing_[right] = 3 * first + 1;
    outgoing_[left] = 3 * first + 2;
    outgoing_[end] = 3 * second;
    return true;
}

std::uint32_t EmbeddedMesh::split(std::uint32_t edge) {
    const std::uint32_t back = twins_[edge];
    const std::uint32_t start = from(edge);
    const std::uint32_t end = to(edge);
    const auto middle = static_cast<std::uint32_t>(positions_.size());
    positions_.push_back((positions_[start] + positions_[end]) * 0.5);
    outgoing_.push_back(none);

    // Each of the two triangles keeps its half at `start`; the halves at `end` are new ones.
    const auto third = static_cast<std::uint32_t>(triangleCount());
    const std::uint32_t fourth = third + 1;
    corners_.resize(corners_.size() + 6);
    twins_.resize(corners_.size());
    changing_.resize(triangleCount(), 0);

    const std::uint32_t forward = next(edge);      // end → left
    const std::uint32_t backward = previous(back); // right → end
    const std::uint32_t left = to(forward);
    const std::uint32_t right = from(backward);
    const std::uint32_t outerForward = twins_[forward];
    const std::uint32_t outerBackward = twins_[backward];
    for (const std::uint32_t number : {edge / 3, back / 3}) {
        cells_.remove(number, cornersOf(number));
    }
    corners_[forward] = middle; // start → middle → left
    corners_[back] = middle;    // middle → start → right
    const Triangle upper{middle, end, left};
    const Triangle lower{end, middle, right};
    for (std::uint32_t i = 0; i < 3; ++i) {
        corners_[3 * third + i] = upper[i];
        corners_[3 * fourth + i] = lower[i];
    }
    linkTwins(edge, back);
    linkTwins(3 * third, 3 * fourth);
    linkTwins(3 * third + 1, outerForward);
    linkTwins(3 * third + 2, forward);
    linkTwins(3 * fourth + 1, backward);
    linkTwins(3 * fourth + 2, outerBackward);
    outgoing_[middle] = 3 * third;
    outgoing_[end] = 3 * fourth;
    outgoing_[start] = edge;
    outgoing_[left] = 3 * third + 2;
    outgoing_[right] = backward;
    for (const std::uint32_t number : {edge / 3, back / 3, third, fourth}) {
        cells_.insert(number, cornersOf(number));
    }
    return middle;
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
