// The steps that change an embedded surface. Each looks first and then does all or nothing.

#include "Solver/Surface/EmbeddedMesh.h"

#include <array>

namespace ostrella {

bool EmbeddedMesh::tryMove(std::uint32_t vertex, const DVec3& position) {
    proposals_.clear();
    visitRing(vertex, [&](std::uint32_t edge) {
        const std::uint32_t number = edge / 3;
        Proposal proposal{number, triangle(number), cornersOf(number)};
        proposal.corners[edge % 3] = position;
        proposals_.push_back(proposal);
    });
    if (!isFree(proposals_, vertex, {})) {
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
    if (!isFree(proposals_, kept, vanishing)) {
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
    if (!isFree(proposals_, none, {})) {
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

} // namespace ostrella
