#include "Rendering/PickTreeBuilder.h"

#include "Models/Precondition.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

/// Testing this many triangles costs about as much as passing two more levels of boxes.
constexpr std::size_t leafTriangles = 8;
/// A part with less than this share of the triangles is not worth a level.
constexpr std::size_t leastShare = 8;

bool isFinite(const Vec3& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

Vec3 least(const Vec3& a, const Vec3& b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
}

Vec3 greatest(const Vec3& a, const Vec3& b) {
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
}

int longestAxis(const Vec3& size) {
    if (size.x >= size.y && size.x >= size.z)
        return 0;
    return size.y >= size.z ? 1 : 2;
}

} // namespace

PickTreeBuilder::PickTreeBuilder(PickTree& tree) : tree_(tree) {
    collect();
    if (count_ == 0)
        return;
    build();
    tree_.order_.resize(count_);
    for (std::size_t i = 0; i < count_; ++i)
        tree_.order_[i] = items_[i].triangle;
    encloseAll();
}

void PickTreeBuilder::collect() {
    const std::size_t triangles = tree_.indices_.size() / 3;
    precondition(triangles <= std::numeric_limits<std::uint32_t>::max(),
        "more triangles to pick from than 32 bits can count");
    const std::size_t stride = tree_.stride_;
    const std::size_t positions = (tree_.positions_.size() + stride - 1) / stride;
    items_ = LargeBuffer<Item>(triangles);
    for (std::size_t i = 0; i < triangles; ++i) {
        const std::uint32_t* of = tree_.indices_.data() + 3 * i;
        if (std::max({of[0], of[1], of[2]}) >= positions)
            continue;
        const Vec3 a = tree_.corner(i, 0);
        const Vec3 b = tree_.corner(i, 1);
        const Vec3 c = tree_.corner(i, 2);
        // No ray hits a triangle with a corner that is no place.
        if (!isFinite(a) || !isFinite(b) || !isFinite(c))
            continue;
        const Vec3 middle = 0.5F * least(least(a, b), c) + 0.5F * greatest(greatest(a, b), c);
        items_[count_++] = {middle, static_cast<std::uint32_t>(i)};
    }
}

void PickTreeBuilder::build() {
    tree_.nodes_.reserve(count_ / 2 + 1);
    tree_.nodes_.emplace_back();
    std::vector<Share> open{{0, 0, count_, extentOf(0, count_)}};
    while (!open.empty()) {
        const Share share = open.back();
        open.pop_back();
        PickTree::Node& node = tree_.nodes_[share.node];
        if (share.end - share.begin <= leafTriangles) {
            node.first = static_cast<std::uint32_t>(share.begin);
            node.count = static_cast<std::uint32_t>(share.end - share.begin);
            continue;
        }
        const auto children = static_cast<std::uint32_t>(tree_.nodes_.size());
        node.first = children;
        Extent left;
        Extent right;
        const std::size_t middle = divide(share, left, right);
        tree_.nodes_.emplace_back();
        tree_.nodes_.emplace_back();
        open.push_back({children + 1, middle, share.end, right});
        open.push_back({children, share.begin, middle, left});
    }
}

std::size_t PickTreeBuilder::divide(const Share& share, Extent& left, Extent& right) {
    const std::size_t count = share.end - share.begin;
    const int axis = longestAxis(share.extent.max - share.extent.min);
    const float plane = 0.5F * share.extent.min[axis] + 0.5F * share.extent.max[axis];
    // Every item changes places whichever side it is on: which side cannot be foreseen, and a wrong
    // guess of the processor costs more than the move.
    std::size_t middle = share.begin;
    for (std::size_t i = share.begin; i < share.end; ++i) {
        const Item item = items_[i];
        items_[i] = items_[middle];
        items_[middle] = item;
        middle += item.middle[axis] < plane ? 1 : 0;
    }
    if (std::min(middle - share.begin, share.end - middle) * leastShare < count) {
        middle = share.begin + count / 2;
        if (share.extent.max[axis] > share.extent.min[axis])
            std::nth_element(items_.begin() + share.begin, items_.begin() + middle,
                items_.begin() + share.end,
                [axis](const Item& a, const Item& b) { return a.middle[axis] < b.middle[axis]; });
    }
    left = extentOf(share.begin, middle);
    right = extentOf(middle, share.end);
    return middle;
}

PickTreeBuilder::Extent PickTreeBuilder::extentOf(std::size_t begin, std::size_t end) const {
    // Four lanes are one register; the last, which holds the triangle, is only carried along.
    using Lanes = std::array<float, 4>;
    constexpr float infinity = std::numeric_limits<float>::infinity();
    Lanes min{infinity, infinity, infinity, infinity};
    Lanes max{-infinity, -infinity, -infinity, -infinity};
    for (std::size_t i = begin; i < end; ++i) {
        const auto item = std::bit_cast<Lanes>(items_[i]);
        for (std::size_t lane = 0; lane < 4; ++lane) {
            min[lane] = item[lane] < min[lane] ? item[lane] : min[lane];
            max[lane] = item[lane] > max[lane] ? item[lane] : max[lane];
        }
    }
    return {{min[0], min[1], min[2]}, {max[0], max[1], max[2]}};
}

void PickTreeBuilder::encloseAll() {
    for (std::size_t i = tree_.nodes_.size(); i-- > 0;) {
        PickTree::Node& node = tree_.nodes_[i];
        if (node.count == 0) {
            const PickTree::Node& left = tree_.nodes_[node.first];
            const PickTree::Node& right = tree_.nodes_[node.first + 1];
            node.min = least(left.min, right.min);
            node.max = greatest(left.max, right.max);
            continue;
        }
        node.min = node.max = tree_.corner(tree_.order_[node.first], 0);
        for (std::uint32_t at = node.first; at < node.first + node.count; ++at)
            for (std::size_t which = 0; which < 3; ++which) {
                const Vec3 corner = tree_.corner(tree_.order_[at], which);
                node.min = least(node.min, corner);
                node.max = greatest(node.max, corner);
            }
    }
}

} // namespace ostrella
