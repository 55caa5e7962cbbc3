#pragma once

#include "Models/Precondition.h"
#include "Models/Vector.h"

#include <array>
#include <cstddef>
#include <span>

namespace ostrella {

/// Least and greatest of a list of numbers. A NaN is passed over by the comparisons, unless it is
/// the very first value: then it is the result.
struct ValueRange {
    float min = 0.0F;
    float max = 0.0F;

    void include(float value) {
        min = value < min ? value : min;
        max = value > max ? value : max;
    }

    /// The range of `values`, which must not be empty.
    static ValueRange of(std::span<const float> values) {
        precondition(!values.empty(), "the range of no values was asked for");
        ValueRange range{values[0], values[0]};
        for (const float value : values)
            range.include(value);
        return range;
    }
};

/// The component-wise least and greatest of a set of points.
struct BoundingBox {
    Vec3 min{0.0F};
    Vec3 max{0.0F};

    /// The box of `points`, zeros for none. NaN is treated as in ValueRange, for each component.
    static BoundingBox of(std::span<const Vec3> points) {
        if (points.empty())
            return {};
        // Four points are twelve floats, three whole vector registers: lane i is axis i % 3.
        constexpr std::size_t group = 4;
        constexpr std::size_t lanes = 3 * group;
        std::array<float, lanes> low{};
        std::array<float, lanes> high{};
        for (std::size_t i = 0; i < lanes; ++i)
            low[i] = high[i] = points[0][static_cast<int>(i % 3)];
        std::size_t at = 0;
        for (; at + group <= points.size(); at += group) {
            const float* values = reinterpret_cast<const float*>(points.data() + at);
            for (std::size_t i = 0; i < lanes; ++i) {
                low[i] = values[i] < low[i] ? values[i] : low[i];
                high[i] = values[i] > high[i] ? values[i] : high[i];
            }
        }
        BoundingBox box;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            ValueRange range{low[axis], high[axis]};
            for (std::size_t lane = axis; lane < lanes; lane += 3) {
                range.include(low[lane]);
                range.include(high[lane]);
            }
            for (std::size_t i = at; i < points.size(); ++i)
                range.include(points[i][static_cast<int>(axis)]);
            box.min[static_cast<int>(axis)] = range.min;
            box.max[static_cast<int>(axis)] = range.max;
        }
        return box;
    }

    friend bool operator==(const BoundingBox&, const BoundingBox&) = default;
};

} // namespace ostrella
