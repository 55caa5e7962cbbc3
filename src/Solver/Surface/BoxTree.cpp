#include "Solver/Surface/BoxTree.h"

#include "Solver/Surface/CurveOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

/// More than half a unit in the last place of a number up to 2, and of what becomes tiny.
float slack(float value) {
    return std::abs(value) * 2.4e-7F + 1e-30F;
}

void put(BoxTree::Node& node, std::size_t lane, const Vec3& low, const Vec3& high) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        node.low[axis][lane] = low[static_cast<int>(axis)];
        node.high[axis][lane] = high[static_cast<int>(axis)];
    }
}

/// A lane without a box, which nothing meets.
void clear(BoxTree::Node& node, std::size_t lane) {
    put(node, lane, Vec3(infinity), Vec3(-infinity));
}

FloatBox whole(const BoxTree::Node& node) {
    FloatBox box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto& low = node.low[axis];
        const auto& high = node.high[axis];
        box.low[static_cast<int>(axis)] = *std::min_element(low.begin(), low.end());
        box.high[static_cast<int>(axis)] = *std::max_element(high.begin(), high.end());
    }
    return box;
}

} // namespace

BoxFrame BoxFrame::around(const DVec3& low, const DVec3& high) {
    const DVec3 size = high - low;
    const double extent = std::max({size.x, size.y, size.z});
    BoxFrame frame;
    frame.middle = low + 0.5 * size;
    if (extent > 0)
        frame.scale = std::ldexp(1.0, -std::ilogb(extent));
    return frame;
}

FloatBox BoxFrame::outward(const DVec3& low, const DVec3& high) const {
    FloatBox box;
    box.low = Vec3(toFrame(low));
    box.high = Vec3(toFrame(high));
    for (int axis = 0; axis < 3; ++axis) {
        box.low[axis] -= slack(box.low[axis]);
        box.high[axis] += slack(box.high[axis]);
    }
    return box;
}

BoxTree::BoxTree(std::span<const FloatBox> boxes, const CancellationToken& token)
    : order_(curveOrder(boxes, token)) {
    std::size_t nodes = 0;
    std::size_t onLevel = boxes.size();
    while (onLevel > 1 || nodes == 0) {
        onLevel = (onLevel + width - 1) / width;
        levels_.push_back(nodes);
        nodes += onLevel;
        if (onLevel == 0)
            return;
    }
    nodes_ = LargeBuffer<Node>(nodes);
    for (std::size_t place = 0; place < boxes.size(); ++place) {
        if (place % (1 << 16) == 0)
            token.throwIfCancelled();
        const FloatBox& box = boxes[order_[place]];
        put(nodes_[place / width], place % width, box.low, box.high);
    }
    for (std::size_t level = 0, count = boxes.size();; ++level) {
        const std::size_t own = (count + width - 1) / width;
        for (std::size_t place = count; place < own * width; ++place)
            clear(nodes_[levels_[level] + place / width], place % width);
        if (own == 1)
            return;
        for (std::size_t child = 0; child < own; ++child) {
            if (child % (1 << 14) == 0)
                token.throwIfCancelled();
            const FloatBox box = whole(nodes_[levels_[level] + child]);
            put(nodes_[levels_[level + 1] + child / width], child % width, box.low, box.high);
        }
        count = own;
    }
}

} // namespace ostrella
