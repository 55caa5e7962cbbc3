#pragma once

#include "Models/Cancellation.h"
#include "Models/FloatVectors.h"
#include "Models/LargeBuffer.h"
#include "Models/Vector.h"
#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A box of 32-bit numbers, both corners part of it.
struct FloatBox {
    Vec3 low{0.0F};
    Vec3 high{0.0F};
};

/// The frame of a tree's boxes: the body's middle is the origin and its extent at most 2, so that
/// 32-bit numbers do for a body of any size and at any place.
struct BoxFrame {
    DVec3 middle{0};
    double scale = 1; ///< a power of two

    static BoxFrame around(const DVec3& low, const DVec3& high);

    DVec3 toFrame(const DVec3& point) const { return (point - middle) * scale; }
    /// The box `low` to `high` in the frame, no smaller after rounding.
    FloatBox outward(const DVec3& low, const DVec3& high) const;
};

/// A tree over boxes: they are put in the order of a space-filling curve, and eight neighbours each
/// make a node of the next level. Immutable.
class BoxTree {
public:
    static constexpr std::size_t width = 8;

    /// Eight boxes, axis by axis, so that one instruction compares several.
    struct Node {
        std::array<std::array<float, width>, 3> low;
        std::array<std::array<float, width>, 3> high;

        /// Bit i is set if box i meets `box`.
        unsigned meeting(const FloatBox& box) const {
            unsigned bits = 0;
            for (unsigned half = 0; half < 2; ++half) {
                Int4 meets{-1, -1, -1, -1};
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const auto i = static_cast<int>(axis);
                    meets &= loadVector<Float4>(&low[axis][4 * half]) <= allLanes(box.high[i]);
                    meets &= loadVector<Float4>(&high[axis][4 * half]) >= allLanes(box.low[i]);
                }
                bits |= laneBits(meets) << (4 * half);
            }
            return bits;
        }

        /// Writes the squared distance of `point` from each box; bit i is set if that of box i is
        /// at most `limit`.
        unsigned within(const Vec3& point, float limit, std::array<float, width>& distances) const {
            unsigned bits = 0;
            for (unsigned half = 0; half < 2; ++half) {
                Float4 sum{};
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const Float4 at = allLanes(point[static_cast<int>(axis)]);
                    const Float4 below = loadVector<Float4>(&low[axis][4 * half]) - at;
                    const Float4 above = at - loadVector<Float4>(&high[axis][4 * half]);
                    const Float4 outside = greater(greater(below, above), Float4{});
                    sum += outside * outside;
                }
                storeVector(&distances[4 * half], sum);
                bits |= laneBits(sum <= allLanes(limit)) << (4 * half);
            }
            return bits;
        }
    };

    /// Where a walk stands: a node of a level. Level 0 holds the boxes themselves.
    struct Step {
        std::uint32_t node;
        std::uint32_t level;
    };
    /// Steps that a walk depth first can have before it.
    static constexpr std::size_t mostSteps = 12 * width;

    BoxTree() = default;
    /// At most 2³¹ boxes. Throws CancellationError.
    explicit BoxTree(std::span<const FloatBox> boxes, const CancellationToken& token = {});

    /// The boxes' indices in the tree's order.
    std::span<const std::uint32_t> order() const { return {order_.data(), order_.size()}; }
    bool empty() const { return order_.size() == 0; }
    Step root() const { return {0, static_cast<std::uint32_t>(levels_.size() - 1)}; }
    const Node& at(const Step& step) const { return nodes_[levels_[step.level] + step.node]; }
    std::size_t bytes() const { return nodes_.size() * sizeof(Node) + order_.size() * 4; }

    /// Calls visit(place) with the place in order() of each box that meets `box`.
    template <class Visit>
    void forEachMeeting(const FloatBox& box, Visit&& visit) const {
        forEachLeafMeeting(box, 0, [&](std::uint32_t leaf) {
            for (unsigned hits = at({leaf, 0}).meeting(box); hits != 0; hits &= hits - 1)
                visit(childOf(leaf, hits));
            return true;
        });
    }

    /// Calls visit(leaf) with each node of level 0, from number `first` on, of which a box meets
    /// `box`; ends when it returns false.
    template <class Visit>
    void forEachLeafMeeting(const FloatBox& box, std::uint32_t first, Visit&& visit) const {
        if (empty())
            return;
        std::array<Step, mostSteps> steps;
        std::size_t count = 0;
        steps[count++] = root();
        while (count != 0) {
            const Step step = steps[--count];
            if (step.level == 0) {
                if (!visit(step.node))
                    return;
                continue;
            }
            for (unsigned hits = at(step).meeting(box); hits != 0; hits &= hits - 1) {
                const std::uint32_t child = childOf(step.node, hits);
                // The last leaf below the child decides whether any is wanted.
                const std::uint64_t end = (std::uint64_t{child} + 1) << (3 * (step.level - 1));
                if (end > first)
                    steps[count++] = {child, step.level - 1};
            }
        }
    }

private:
    /// The number, on the level below, of the first child that `hits` tells.
    static std::uint32_t childOf(std::uint32_t node, unsigned hits) {
        return static_cast<std::uint32_t>(node * width) +
               static_cast<std::uint32_t>(std::countr_zero(hits));
    }

    LargeBuffer<std::uint32_t> order_;
    LargeBuffer<Node> nodes_;
    std::vector<std::size_t> levels_; ///< where each level's nodes start
};

} // namespace ostrella
