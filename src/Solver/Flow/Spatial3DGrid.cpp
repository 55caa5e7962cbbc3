#include "Solver/Flow/Spatial3DGrid.h"

#include "Models/BoundingBox.h"
#include "Models/Precondition.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace ostrella {

int Spatial3DGrid::cellOf(float coordinate, int axis) const {
    const float quotient = (coordinate - boundingMin_[axis]) / cellSize_[axis];
    precondition(std::isfinite(quotient), "a position in a grid's lookup is not finite");
    return static_cast<int>(std::clamp(quotient, 0.0F, static_cast<float>(cellsPerAxis_ - 1)));
}

Spatial3DGrid::Spatial3DGrid(std::span<const Vec3> positions, int cellsPerAxis)
    : cellsPerAxis_(cellsPerAxis) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
    precondition(!positions.empty(), "a grid was asked for over no points");
    precondition(positions.size() <= most, "a grid's points overflow 32 bits");
    precondition(cellsPerAxis >= 1, "a grid was asked for with no cells");
    const auto perAxis = static_cast<std::uint64_t>(cellsPerAxis);
    precondition(
        perAxis < 2048 && perAxis * perAxis * perAxis < most, "a grid's cells overflow 32 bits");
    const auto box = BoundingBox::of(positions);
    boundingMin_ = box.min;
    for (int axis = 0; axis < 3; ++axis)
        cellSize_[axis] =
            std::max(box.max[axis] - box.min[axis], 1e-6F) / static_cast<float>(cellsPerAxis);

    cellStart_.resize(perAxis * perAxis * perAxis + 1);
    std::vector<std::int32_t> cells(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const Vec3& p = positions[i];
        cells[i] = (cellOf(p.z, 2) * cellsPerAxis + cellOf(p.y, 1)) * cellsPerAxis + cellOf(p.x, 0);
        ++cellStart_[static_cast<std::size_t>(cells[i]) + 1];
    }
    for (std::size_t i = 1; i < cellStart_.size(); ++i)
        cellStart_[i] += cellStart_[i - 1];
    auto next = cellStart_;
    cellPoints_.resize(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i)
        cellPoints_[static_cast<std::size_t>(next[static_cast<std::size_t>(cells[i])]++)] =
            static_cast<std::int32_t>(i);
}

std::vector<int> Spatial3DGrid::findKNearest(
    const Vec3& to, std::span<const Vec3> in, int k) const {
    precondition(in.size() == cellPoints_.size(), "a grid was searched with another array");
    if (k < 1)
        return {};
    const int n = cellsPerAxis_;
    const int cx = cellOf(to.x, 0);
    const int cy = cellOf(to.y, 1);
    const int cz = cellOf(to.z, 2);
    std::vector<Neighbor> list;
    list.reserve(std::min(static_cast<std::size_t>(k), cellPoints_.size()));
    int visited = 0;
    for (int r = 0; r == 0 || (visited < k && r <= n); ++r) {
        for (int z = std::max(cz - r, 0); z <= std::min(cz + r, n - 1); ++z) {
            for (int y = std::max(cy - r, 0); y <= std::min(cy + r, n - 1); ++y) {
                const bool edge = std::abs(z - cz) == r || std::abs(y - cy) == r;
                for (int x = cx - r; x <= cx + r; x += edge ? 1 : 2 * r) {
                    if (x < 0 || x >= n)
                        continue;
                    const auto cell = static_cast<std::size_t>((z * n + y) * n + x);
                    for (auto at = cellStart_[cell]; at < cellStart_[cell + 1]; ++at) {
                        const int index = cellPoints_[static_cast<std::size_t>(at)];
                        const Vec3 d = in[static_cast<std::size_t>(index)] - to;
                        const float dist2 = squaredLength(d);
                        const int order = visited++;
                        if (list.size() == static_cast<std::size_t>(k)) {
                            if (!(dist2 < list.back().dist2))
                                continue;
                            list.pop_back();
                        }
                        const auto gap = std::upper_bound(list.begin(), list.end(), dist2,
                            [](float d2, const Neighbor& other) { return d2 < other.dist2; });
                        list.insert(gap, {index, dist2, order});
                    }
                }
            }
        }
    }
    if (visited <= k)
        std::stable_sort(list.begin(), list.end(),
            [](const Neighbor& a, const Neighbor& b) { return a.order < b.order; });
    std::vector<int> result(list.size());
    std::transform(list.begin(), list.end(), result.begin(),
        [](const Neighbor& neighbor) { return neighbor.index; });
    return result;
}

} // namespace ostrella
