#include "Solver/Surface/CurveOrder.h"

#include "Models/Precondition.h"
#include "Solver/Surface/Halves.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace ostrella {

namespace {

constexpr int bitsPerAxis = 11;
constexpr int keyBits = 3 * bitsPerAxis;
constexpr int indexBits = 64 - keyBits;
constexpr std::uint64_t indexMask = (std::uint64_t{1} << indexBits) - 1;
/// As many boxes may share a cell of the curve; they fill two nodes.
constexpr std::size_t mostInCell = 16;
/// Each level divides a cell in 2048 along an axis; 32-bit numbers are exhausted after a few.
constexpr int mostLevels = 6;

/// The number of the cell (x, y, z) along the curve. The bit-wise transformation of a Hilbert
/// curve's coordinates is that of J. Skilling, "Programming the Hilbert curve" (2004).
std::uint64_t curveKey(std::array<std::uint32_t, 3> x) {
    for (std::uint32_t bit = 1U << (bitsPerAxis - 1); bit > 1; bit >>= 1) {
        const std::uint32_t below = bit - 1;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            // Without branches: the bits are as good as random.
            const std::uint32_t set = 0U - ((x[axis] & bit) != 0 ? 1U : 0U);
            const std::uint32_t change = (x[0] ^ x[axis]) & below & ~set;
            x[0] ^= (below & set) | change;
            x[axis] ^= change;
        }
    }
    x[1] ^= x[0];
    x[2] ^= x[1];
    std::uint32_t turn = 0;
    for (std::uint32_t bit = 1U << (bitsPerAxis - 1); bit > 1; bit >>= 1)
        turn ^= (x[2] & bit) != 0 ? bit - 1 : 0;
    std::uint64_t key = 0;
    for (int bit = bitsPerAxis - 1; bit >= 0; --bit) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            key = key << 1 | ((x[axis] ^ turn) >> bit & 1U);
    }
    return key;
}

Vec3 middleOf(const FloatBox& box) {
    return (box.low + box.high) * 0.5F;
}

/// Sorts by the key in the upper bits: three passes of 11 bits each, stable.
void sortByKey(std::uint64_t* values, std::uint64_t* scratch, std::size_t count,
    const CancellationToken& token) {
    if (count < 512) {
        std::sort(values, values + count);
        return;
    }
    constexpr std::size_t digits = std::size_t{1} << bitsPerAxis;
    std::array<std::array<std::size_t, digits>, 3> starts{};
    const auto digit = [](std::uint64_t value, std::size_t pass) {
        return value >> (static_cast<std::size_t>(indexBits) + pass * bitsPerAxis) & (digits - 1);
    };
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t pass = 0; pass < 3; ++pass)
            ++starts[pass][digit(values[i], pass)];
    }
    std::uint64_t* from = values;
    std::uint64_t* to = scratch;
    for (std::size_t pass = 0; pass < 3; ++pass) {
        token.throwIfCancelled();
        std::size_t sum = 0;
        for (std::size_t& start : starts[pass])
            sum += std::exchange(start, sum);
        for (std::size_t i = 0; i < count; ++i)
            to[starts[pass][digit(from[i], pass)]++] = from[i];
        std::swap(from, to);
    }
    std::copy(from, from + count, values);
}

/// Puts the boxes that `values` name (in their lower bits) in order, and crowded cells in
/// themselves.
void order(std::span<const FloatBox> boxes, std::span<std::uint64_t> values,
    LargeBuffer<std::uint64_t>& scratch, int level, const CancellationToken& token) {
    token.throwIfCancelled();
    Vec3 low = middleOf(boxes[values[0] & indexMask]);
    Vec3 high = low;
    for (const std::uint64_t value : values) {
        const Vec3 middle = middleOf(boxes[value & indexMask]);
        low = glm::min(low, middle);
        high = glm::max(high, middle);
    }
    const Vec3 size = high - low;
    const float extent = std::max({size.x, size.y, size.z});
    if (!(extent > 0))
        return;
    constexpr float cells = static_cast<float>(1U << bitsPerAxis);
    const float scale = cells / extent;
    inHalves(values.size(), 50'000, [&](std::size_t first, std::size_t end, int) {
        for (std::size_t i = first; i < end; ++i) {
            if (i % (1 << 16) == 0)
                token.throwIfCancelled();
            const std::uint64_t index = values[i] & indexMask;
            const Vec3 place = (middleOf(boxes[index]) - low) * scale;
            std::array<std::uint32_t, 3> cell;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const float at = place[static_cast<int>(axis)];
                // A scale that overflows makes the least coordinate no number: cell 0 then.
                cell[axis] = at >= 0 ? static_cast<std::uint32_t>(std::min(at, cells - 1)) : 0U;
            }
            values[i] = curveKey(cell) << indexBits | index;
        }
    });
    token.throwIfCancelled();
    sortByKey(values.data(), scratch.data(), values.size(), token);
    if (level == mostLevels)
        return;
    for (std::size_t first = 0; first < values.size();) {
        std::size_t end = first + 1;
        while (end < values.size() && values[end] >> indexBits == values[first] >> indexBits)
            ++end;
        if (end - first > mostInCell && end - first < values.size())
            order(boxes, values.subspan(first, end - first), scratch, level + 1, token);
        first = end;
    }
}

} // namespace

LargeBuffer<std::uint32_t> curveOrder(
    std::span<const FloatBox> boxes, const CancellationToken& token) {
    precondition(boxes.size() <= indexMask, "too many boxes for a tree");
    LargeBuffer<std::uint64_t> values(boxes.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = i;
    if (boxes.size() > 1) {
        LargeBuffer<std::uint64_t> scratch(boxes.size());
        order(boxes, {values.data(), values.size()}, scratch, 1, token);
    }
    LargeBuffer<std::uint32_t> result(boxes.size());
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = static_cast<std::uint32_t>(values[i] & indexMask);
    return result;
}

} // namespace ostrella
