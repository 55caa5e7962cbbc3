#include "Solver/Surface/TriangleTree.h"

#include "Models/Precondition.h"
#include "Solver/Surface/Halves.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <bit>
#include <cmath>

namespace ostrella {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::size_t leastForThreads = 50'000;

double squared(const DVec3& v) {
    return glm::dot(v, v);
}

DVec3 nearestOnSegment(const DVec3& point, const DVec3& from, const DVec3& to) {
    const DVec3 along = to - from;
    const double length = squared(along);
    const double at = glm::dot(point - from, along);
    if (!(at > 0))
        return from;
    return at < length ? from + along * (at / length) : to;
}

/// What a walk must not leave out: squares of distances in the tree's frame, in 32 bits.
class Reach {
public:
    Reach(const BoxFrame& frame, const DVec3& inFrame)
        : scale_(frame.scale),
          slack_(1e-6 + 2e-7 * (std::abs(inFrame.x) + std::abs(inFrame.y) + std::abs(inFrame.z))) {}

    /// Boxes whose squared distance in 32 bits is greater hold nothing nearer than `distance`.
    float of(double distance) const {
        // The point's rounding, and that of the four sums and the three products.
        const double reach = (distance * scale_ + slack_) * (1 + 1e-6);
        return static_cast<float>(std::min(reach * reach, 3e38));
    }

private:
    double scale_;
    double slack_;
};

struct Candidate {
    float distance;
    BoxTree::Step step;
};

} // namespace

DVec3 nearestOnTriangle(const DVec3& point, const std::array<DVec3, 3>& corners) {
    const DVec3 ab = corners[1] - corners[0];
    const DVec3 ac = corners[2] - corners[0];
    const DVec3 normal = glm::cross(ab, ac);
    const double size = squared(normal);
    const DVec3 toPoint = point - corners[0];
    // A triangle this thin is its edges: its normal would be rounding.
    if (size > 1e-24 * squared(ab) * squared(ac)) {
        const double v = glm::dot(glm::cross(toPoint, ac), normal);
        const double w = glm::dot(glm::cross(ab, toPoint), normal);
        const double u = size - v - w;
        if (u >= 0 && v >= 0 && w >= 0)
            return corners[0] + ab * (v / size) + ac * (w / size);
    }
    DVec3 best = nearestOnSegment(point, corners[0], corners[1]);
    double least = squared(best - point);
    for (std::size_t side = 1; side < 3; ++side) {
        const DVec3 other =
            nearestOnSegment(point, corners[side], corners[side == 2 ? 0 : side + 1]);
        const double distance = squared(other - point);
        if (distance < least) {
            least = distance;
            best = other;
        }
    }
    return best;
}

TriangleTree::TriangleTree(const IndexedSurface& surface, const CancellationToken& token) {
    const auto& vertices = surface.vertices;
    const auto& triangles = surface.triangles;
    if (triangles.empty())
        return;
    DVec3 low(infinity);
    DVec3 high(-infinity);
    for (const DVec3& vertex : vertices) {
        low = glm::min(low, vertex);
        high = glm::max(high, vertex);
    }
    frame_ = BoxFrame::around(low, high);
    const auto corner = [&](std::size_t triangle, std::size_t i) -> const DVec3& {
        precondition(triangles[triangle][i] < vertices.size(),
            "a triangle of a tree names a vertex that is not there");
        return vertices[triangles[triangle][i]];
    };
    {
        LargeBuffer<FloatBox> boxes(triangles.size());
        inHalves(triangles.size(), leastForThreads, [&](std::size_t first, std::size_t end, int) {
            for (std::size_t i = first; i < end; ++i) {
                const DVec3 &a = corner(i, 0), &b = corner(i, 1), &c = corner(i, 2);
                boxes[i] = frame_.outward(glm::min(glm::min(a, b), c), glm::max(glm::max(a, b), c));
            }
        });
        tree_ = BoxTree({boxes.data(), boxes.size()}, token);
    }
    corners_ = LargeBuffer<std::array<DVec3, 3>>(triangles.size());
    const auto order = tree_.order();
    inHalves(order.size(), leastForThreads, [&](std::size_t first, std::size_t end, int) {
        for (std::size_t place = first; place < end; ++place) {
            for (std::size_t i = 0; i < 3; ++i)
                corners_[place][i] = corner(order[place], i);
        }
    });
}

std::optional<TriangleTree::Nearest> TriangleTree::nearest(
    const DVec3& point, double within) const {
    if (tree_.empty() || !(within > 0))
        return std::nullopt;
    const DVec3 inFrame = frame_.toFrame(point);
    const Vec3 at(inFrame);
    const Reach reach(frame_, inFrame);
    double least = within * within;
    float limit = reach.of(within);
    std::optional<Nearest> best;

    std::array<Candidate, BoxTree::mostSteps> steps;
    std::size_t count = 0;
    steps[count++] = {0, tree_.root()};
    while (count != 0) {
        const Candidate next = steps[--count];
        if (next.distance > limit)
            continue;
        std::array<float, BoxTree::width> distance;
        unsigned near = tree_.at(next.step).within(at, limit, distance);
        // The nearest child comes to lie on top.
        const std::size_t bottom = count;
        for (; near != 0; near &= near - 1) {
            const auto i = static_cast<std::size_t>(std::countr_zero(near));
            const auto child = static_cast<std::uint32_t>(next.step.node * BoxTree::width + i);
            std::size_t place = count++;
            for (; place > bottom && steps[place - 1].distance < distance[i]; --place)
                steps[place] = steps[place - 1];
            steps[place] = {distance[i], {child, next.step.level - 1}};
        }
        if (next.step.level != 0)
            continue;
        while (count > bottom) {
            const Candidate leaf = steps[--count];
            if (leaf.distance > limit)
                continue;
            const DVec3 found = nearestOnTriangle(point, corners_[leaf.step.node]);
            const double square = squared(found - point);
            const std::uint32_t triangle = tree_.order()[leaf.step.node];
            if (square < least || (best && square == least && triangle < best->triangle)) {
                least = square;
                best = Nearest{triangle, found, std::sqrt(square)};
                limit = reach.of(best->distance);
            }
        }
    }
    return best;
}

void TriangleTree::visitBox(
    const DVec3& low, const DVec3& high, const std::function<void(std::uint32_t)>& visit) const {
    tree_.forEachMeeting(
        frame_.outward(low, high), [&](std::uint32_t place) { visit(tree_.order()[place]); });
}

} // namespace ostrella
