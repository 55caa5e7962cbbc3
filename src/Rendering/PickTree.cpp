#include "Rendering/PickTree.h"

#include "Models/Precondition.h"
#include "Rendering/PickTreeBuilder.h"
#include "Rendering/RayTriangle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

bool isFinite(const glm::dvec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// A ray against boxes a little larger than they are: by far more than a triangle test can err, so
/// that no triangle that it would report as hit is left out.
class RayBox {
public:
    RayBox(const RayTriangle& ray, const Vec3& min, const Vec3& max) : origin_(ray.origin()) {
        constexpr double share = 1e-7;
        constexpr double leastSlope = 1e-300; // its inverse is finite, and so no product is 0 · ∞
        const glm::dvec3 middle = 0.5 * (glm::dvec3(min) + glm::dvec3(max));
        const glm::dvec3 reach = glm::abs(origin_ - middle) + glm::dvec3(max) - glm::dvec3(min);
        margin_ = share * (reach.x + reach.y + reach.z);
        for (int axis = 0; axis < 3; ++axis) {
            const double slope = ray.direction()[axis];
            inverse_[axis] = 1.0 / (std::abs(slope) < leastSlope ? leastSlope : slope);
        }
    }

    /// The distance at which the ray enters the box, 0 from within; ∞ where it misses it.
    double entry(const Vec3& min, const Vec3& max) const {
        double enter = 0.0;
        double leave = infinity;
        for (int axis = 0; axis < 3; ++axis) {
            const double low = (static_cast<double>(min[axis]) - origin_[axis] - margin_);
            const double high = (static_cast<double>(max[axis]) - origin_[axis] + margin_);
            const double a = low * inverse_[axis];
            const double b = high * inverse_[axis];
            enter = std::max(enter, std::min(a, b));
            leave = std::min(leave, std::max(a, b));
        }
        return enter <= leave ? enter : infinity;
    }

private:
    glm::dvec3 origin_;
    glm::dvec3 inverse_{0.0};
    double margin_ = 0;
};

} // namespace

PickTree::PickTree(
    std::span<const Vec3> positions, std::size_t stride, std::span<const std::uint32_t> indices)
    : positions_(positions), stride_(stride), indices_(indices) {
    precondition(stride >= 1, "positions to pick from have no stride");
    PickTreeBuilder{*this};
}

std::optional<float> PickTree::nearestHit(const ViewportPicking::Ray& ray) const {
    const RayTriangle test(ray.origin, ray.direction);
    if (nodes_.empty() || !isFinite(test.origin()) || !isFinite(test.direction()))
        return std::nullopt;
    const RayBox boxes(test, nodes_[0].min, nodes_[0].max);
    struct Open {
        std::uint32_t node;
        double entry;
    };
    // The farther child waits while the nearer is walked, so there is one for each level. Each
    // level has at most 7/8 of the triangles of the one above, which bounds the levels at 2³²
    // triangles.
    std::array<Open, 192> waiting;
    std::size_t waitingCount = 0;
    double nearest = infinity;
    Open at{0, boxes.entry(nodes_[0].min, nodes_[0].max)};
    for (;;) {
        if (at.entry < infinity && at.entry <= nearest) {
            const Node& node = nodes_[at.node];
            if (node.count == 0) {
                Open left{node.first, 0};
                Open right{node.first + 1, 0};
                left.entry = boxes.entry(nodes_[left.node].min, nodes_[left.node].max);
                right.entry = boxes.entry(nodes_[right.node].min, nodes_[right.node].max);
                if (right.entry < left.entry)
                    std::swap(left, right);
                if (right.entry < infinity)
                    waiting[waitingCount++] = right;
                at = left;
                continue;
            }
            for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
                const std::size_t triangle = order_[i];
                const std::optional<double> distance =
                    test.distanceTo(corner(triangle, 0), corner(triangle, 1), corner(triangle, 2));
                if (distance && *distance < nearest)
                    nearest = *distance;
            }
        }
        if (waitingCount == 0)
            break;
        at = waiting[--waitingCount];
    }
    if (nearest == infinity)
        return std::nullopt;
    return static_cast<float>(nearest);
}

std::size_t PickTree::byteCount() const {
    return nodes_.capacity() * sizeof(Node) + order_.capacity() * sizeof(std::uint32_t);
}

} // namespace ostrella
