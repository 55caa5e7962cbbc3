#include "Solver/Surface/TriangleCells.h"

#include <glm/common.hpp>

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

/// Cells along an axis at most, whatever was asked for: 256³ empty cells are 400 MB.
constexpr int mostCells = 200;

} // namespace

TriangleCells::TriangleCells(const DVec3& low, const DVec3& high, double cellEdge) : low_(low) {
    const DVec3 size = high - low;
    const double largest = std::max({size.x, size.y, size.z});
    const double edge = std::max(cellEdge, largest / mostCells);
    scale_ = edge > 0 ? 1 / edge : 1;
    slack_ = static_cast<float>(largest * 1e-6);
    for (int axis = 0; axis < 3; ++axis) {
        count_[axis] = static_cast<int>(std::floor(size[axis] * scale_)) + 1;
    }
    cells_.resize(indexOf(0, 0, count_.z));
}

TriangleCells::Box TriangleCells::boxOf(const Corners& corners, double clearance) const {
    const DVec3 low = glm::min(glm::min(corners[0], corners[1]), corners[2]) - low_;
    const DVec3 high = glm::max(glm::max(corners[0], corners[1]), corners[2]) - low_;
    const float margin = static_cast<float>(clearance) + slack_;
    return {glm::vec3(low) - margin, glm::vec3(high) + margin};
}

TriangleCells::Span TriangleCells::spanOf(const Box& box) const {
    Span span;
    for (int axis = 0; axis < 3; ++axis) {
        const auto cell = [&](float value) {
            return static_cast<int>(std::clamp(
                std::floor(double{value} * scale_), 0.0, static_cast<double>(count_[axis] - 1)));
        };
        span.low[axis] = cell(box.low[axis]);
        span.high[axis] = cell(box.high[axis]);
    }
    return span;
}

void TriangleCells::insert(std::uint32_t triangle, const Corners& corners) {
    if (triangle >= seen_.size()) {
        seen_.resize(triangle + 1, 0);
    }
    const Box box = boxOf(corners, 0);
    const Span span = spanOf(box);
    for (int z = span.low.z; z <= span.high.z; ++z) {
        for (int y = span.low.y; y <= span.high.y; ++y) {
            for (int x = span.low.x; x <= span.high.x; ++x) {
                cells_[indexOf(x, y, z)].push_back({triangle, box});
            }
        }
    }
}

void TriangleCells::remove(std::uint32_t triangle, const Corners& corners) {
    const Span span = spanOf(boxOf(corners, 0));
    for (int z = span.low.z; z <= span.high.z; ++z) {
        for (int y = span.low.y; y <= span.high.y; ++y) {
            for (int x = span.low.x; x <= span.high.x; ++x) {
                std::vector<Entry>& cell = cells_[indexOf(x, y, z)];
                const auto found = std::ranges::find(cell, triangle, &Entry::triangle);
                if (found != cell.end()) {
                    *found = cell.back();
                    cell.pop_back();
                }
            }
        }
    }
}

} // namespace ostrella
