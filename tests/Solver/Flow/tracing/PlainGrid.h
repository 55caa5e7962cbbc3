#pragma once

#include "Models/Vector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <vector>

namespace ostrella::plain {

/// The grid as one would first write it: one float operation after the other, no layout by cell, no
/// vectors. What the fast one is compared with, bit by bit, in tests and benchmarks.
class Grid {
public:
    Grid(std::span<const Vec3> positions, int cellsPerAxis) : n_(cellsPerAxis) {
        Vec3 high = low_ = positions[0];
        for (const Vec3& p : positions) {
            for (int axis = 0; axis < 3; ++axis) {
                low_[axis] = std::min(low_[axis], p[axis]);
                high[axis] = std::max(high[axis], p[axis]);
            }
        }
        for (int axis = 0; axis < 3; ++axis)
            size_[axis] =
                std::max(high[axis] - low_[axis], 1e-6F) / static_cast<float>(cellsPerAxis);
        const auto n = static_cast<std::size_t>(n_);
        start_.assign(n * n * n + 1, 0);
        std::vector<std::size_t> cells;
        for (const Vec3& p : positions) {
            cells.push_back(cell(axisCell(p, 0), axisCell(p, 1), axisCell(p, 2)));
            ++start_[cells.back() + 1];
        }
        for (std::size_t i = 1; i < start_.size(); ++i)
            start_[i] += start_[i - 1];
        std::vector<int> next = start_;
        points_.resize(positions.size());
        for (std::size_t i = 0; i < positions.size(); ++i)
            points_[static_cast<std::size_t>(next[cells[i]]++)] = static_cast<int>(i);
    }

    std::vector<int> findKNearest(const Vec3& to, std::span<const Vec3> in, int k) const {
        if (k < 1)
            return {};
        const int x = axisCell(to, 0);
        const int y = axisCell(to, 1);
        const int z = axisCell(to, 2);
        std::vector<Neighbor> list(static_cast<std::size_t>(k));
        int filled = 0;
        int visited = 0;
        for (int r = 0;; ++r) {
            for (int dz = -r; dz <= r; ++dz) {
                for (int dy = -r; dy <= r; ++dy) {
                    for (int dx = -r; dx <= r; ++dx) {
                        if (!inside(x + dx) || !inside(y + dy) || !inside(z + dz))
                            continue;
                        if (r > 0 && std::abs(dx) < r && std::abs(dy) < r && std::abs(dz) < r)
                            continue;
                        const std::size_t c = cell(x + dx, y + dy, z + dz);
                        for (int at = start_[c]; at < start_[c + 1]; ++at) {
                            const int index = points_[static_cast<std::size_t>(at)];
                            const Vec3 d = in[static_cast<std::size_t>(index)] - to;
                            consider(list, filled, k,
                                {index, d.x * d.x + d.y * d.y + d.z * d.z, visited++});
                        }
                    }
                }
            }
            if (visited >= k || r >= n_)
                break;
        }
        list.resize(static_cast<std::size_t>(filled));
        if (visited <= k)
            std::stable_sort(list.begin(), list.end(),
                [](const Neighbor& a, const Neighbor& b) { return a.order < b.order; });
        std::vector<int> result;
        for (const Neighbor& neighbor : list)
            result.push_back(neighbor.index);
        return result;
    }

private:
    struct Neighbor {
        int index;
        float dist2;
        int order;
    };

    static void consider(std::vector<Neighbor>& list, int& filled, int k, const Neighbor& seen) {
        if (filled == k && !(seen.dist2 < list.back().dist2))
            return;
        int at = filled == k ? k - 1 : filled++;
        for (; at > 0 && list[static_cast<std::size_t>(at - 1)].dist2 > seen.dist2; --at)
            list[static_cast<std::size_t>(at)] = list[static_cast<std::size_t>(at - 1)];
        list[static_cast<std::size_t>(at)] = seen;
    }

    int axisCell(const Vec3& p, int axis) const {
        // Cut off in 64 bits, which any quotient of these tests fits.
        const auto cut = static_cast<long long>((p[axis] - low_[axis]) / size_[axis]);
        return static_cast<int>(std::clamp(cut, 0LL, static_cast<long long>(n_ - 1)));
    }
    bool inside(int i) const { return i >= 0 && i < n_; }
    std::size_t cell(int x, int y, int z) const {
        return static_cast<std::size_t>((z * n_ + y) * n_ + x);
    }

    int n_;
    Vec3 low_;
    Vec3 size_;
    std::vector<int> start_;
    std::vector<int> points_;
};

} // namespace ostrella::plain
