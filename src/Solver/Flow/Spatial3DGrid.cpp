#include "Solver/Flow/Spatial3DGrid.h"

#include "Models/BoundingBox.h"
#include "Models/Precondition.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace ostrella {

namespace {

/// Vectors of coordinates may reach this far behind the last point.
constexpr std::size_t slack = 8;

/// Four points, three vectors: lane i of them is axis i % 3.
constexpr std::size_t group = 4;
using Lanes = std::array<Float4, 3>;

Lanes lanesOf(const Vec3& axes) {
    Lanes lanes;
    for (int i = 0; i < 12; ++i)
        lanes[static_cast<std::size_t>(i / 4)][i % 4] = axes[i % 3];
    return lanes;
}

} // namespace

GridCell Spatial3DGrid::cellAt(const Vec3& position) const {
    const float x = (position.x - boundingMin_.x) / cellSize_.x;
    const float y = (position.y - boundingMin_.y) / cellSize_.y;
    const float z = (position.z - boundingMin_.z) / cellSize_.z;
    precondition(std::isfinite(x) && std::isfinite(y) && std::isfinite(z),
        "a position in a grid's lookup is not finite");
    // Clamped ahead of the cut, so that no quotient is too large for an integer.
    const auto last = static_cast<float>(cellsPerAxis_ - 1);
    return {static_cast<int>(std::clamp(x, 0.0F, last)),
        static_cast<int>(std::clamp(y, 0.0F, last)), static_cast<int>(std::clamp(z, 0.0F, last))};
}

/// The number of each point's cell, as cellAt gives it.
LargeBuffer<std::int32_t> Spatial3DGrid::cellNumbers(std::span<const Vec3> positions) const {
    LargeBuffer<std::int32_t> numbers(positions.size());
    const Lanes low = lanesOf(boundingMin_);
    const Lanes size = lanesOf(cellSize_);
    const Float4 first = allLanes(0.0F);
    const Float4 last = allLanes(static_cast<float>(cellsPerAxis_ - 1));
    const Float4 most = allLanes(std::numeric_limits<float>::max());
    Int4 finite = {-1, -1, -1, -1};
    std::size_t at = 0;
    for (; at + group <= positions.size(); at += group) {
        std::array<std::int32_t, 3 * group> axes;
        for (std::size_t v = 0; v < 3; ++v) {
            const auto* from = reinterpret_cast<const float*>(positions.data() + at) + 4 * v;
            const Float4 quotient = (loadVector<Float4>(from) - low[v]) / size[v];
            finite &= (quotient >= -most) & (quotient <= most);
            storeVector(axes.data() + 4 * v,
                __builtin_convertvector(lesser(greater(quotient, first), last), Int4));
        }
        for (std::size_t i = 0; i < group; ++i)
            numbers[at + i] =
                (axes[3 * i + 2] * cellsPerAxis_ + axes[3 * i + 1]) * cellsPerAxis_ + axes[3 * i];
    }
    precondition(laneBits(finite) == 15, "a point in a grid is not finite");
    for (; at < positions.size(); ++at) {
        const GridCell cell = cellAt(positions[at]);
        numbers[at] = (cell.z * cellsPerAxis_ + cell.y) * cellsPerAxis_ + cell.x;
    }
    return numbers;
}

/// Takes the places' points apart into arrays that vectors are loaded from.
void Spatial3DGrid::divide(const LargeBuffer<Placed>& placed) {
    const std::size_t count = placed.size();
    stride_ = count + slack;
    LargeBuffer<std::int32_t> points(count);
    LargeBuffer<float> coordinates(3 * stride_);
    float* x = coordinates.data();
    float* y = x + stride_;
    float* z = y + stride_;
    for (std::size_t i = 0; i < count; ++i) {
        points[i] = placed[i].index;
        x[i] = placed[i].position.x;
        y[i] = placed[i].position.y;
        z[i] = placed[i].position.z;
    }
    for (std::size_t i = count; i < stride_; ++i)
        x[i] = y[i] = z[i] = 0.0F;
    cellPoints_ = std::move(points);
    coordinates_ = std::move(coordinates);
}

Spatial3DGrid::Spatial3DGrid(std::span<const Vec3> positions, int cellsPerAxis)
    : cellsPerAxis_(cellsPerAxis) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
    precondition(!positions.empty(), "a grid was asked for over no points");
    precondition(positions.size() < most, "a grid's points overflow 32 bits");
    precondition(cellsPerAxis >= 1, "a grid was asked for with no cells");
    const auto perAxis = static_cast<std::uint64_t>(cellsPerAxis);
    precondition(perAxis < 2048 && perAxis * perAxis * perAxis < most - 1,
        "a grid's cells overflow 32 bits");
    const auto box = BoundingBox::of(positions);
    boundingMin_ = box.min;
    for (int axis = 0; axis < 3; ++axis)
        cellSize_[axis] =
            std::max(box.max[axis] - box.min[axis], 1e-6F) / static_cast<float>(cellsPerAxis);

    // Cell c is counted at c + 2, so that the sums stand at c + 1 while the points are placed: each
    // moves its cell's sum on by one, and in the end c + 1 holds the end of cell c.
    const std::size_t cells = perAxis * perAxis * perAxis;
    const LargeBuffer<std::int32_t> cellOfPoint = cellNumbers(positions);
    LargeBuffer<std::int32_t> start(cells + 2);
    std::fill(start.begin(), start.end(), 0);
    for (const std::int32_t cell : cellOfPoint)
        ++start[static_cast<std::size_t>(cell) + 2];
    for (std::size_t i = 2; i < start.size(); ++i)
        start[i] += start[i - 1];

    // To a cell's place all of a point goes at once, since each place is far from the one before.
    LargeBuffer<Placed> placed(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const auto cell = static_cast<std::size_t>(cellOfPoint[i]);
        const auto place = static_cast<std::size_t>(start[cell + 1]++);
        placed[place] = {positions[i], static_cast<std::int32_t>(i)};
    }
    start.truncate(cells + 1);
    cellStart_ = std::move(start);
    divide(placed);
}

} // namespace ostrella
