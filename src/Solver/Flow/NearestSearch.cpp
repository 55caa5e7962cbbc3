#include "Solver/Flow/NearestSearch.h"

#include "Models/Precondition.h"
#include "Solver/Flow/ShellWalk.h"

#include <algorithm>
#include <limits>

namespace ostrella {

namespace {

/// More candidates than this are not copied: that only pays for cells that many positions fall in.
constexpr std::size_t capacity = 2048;

} // namespace

NearestSearch::NearestSearch(const Spatial3DGrid& grid, int k)
    : grid_(&grid),
      k_(k),
      x_(capacity + 8),
      y_(capacity + 8),
      z_(capacity + 8),
      places_(capacity + 8),
      dist2_(capacity + distanceSlack) {
    precondition(k >= 1 && k <= static_cast<int>(NearestPoints::most),
        "a search was asked for too few or too many points");
}

void NearestSearch::collect(const GridCell& cell) {
    cell_ = cell;
    hasLatest_ = false;
    std::size_t count = 0;
    const auto copyEight = [&](std::size_t from, std::size_t to) {
        for (std::size_t lane = 0; lane < 8; lane += 4) {
            storeVector(&x_[to + lane], loadVector<Float4>(grid_->x() + from + lane));
            storeVector(&y_[to + lane], loadVector<Float4>(grid_->y() + from + lane));
            storeVector(&z_[to + lane], loadVector<Float4>(grid_->z() + from + lane));
            storeVector(
                &places_[to + lane], Int4{0, 1, 2, 3} + static_cast<std::int32_t>(from + lane));
        }
    };
    visited_ =
        walkShells(grid_->cellStart().data(), grid_->cellsX(), cell, k_, [&](const PointRun& run) {
            const auto length = static_cast<std::size_t>(run.end - run.begin);
            if (count + length <= capacity) {
                const auto begin = static_cast<std::size_t>(run.begin);
                for (std::size_t i = 0; i < length; i += 8)
                    copyEight(begin + i, count + i);
            }
            count += length;
        });
}

void NearestSearch::find(const Vec3& to, NearestPoints& found) {
    const GridCell cell = grid_->cellAt(to);
    if (cell_ != cell)
        collect(cell);
    if (visited_ > capacity) {
        grid_->findKNearest(to, k_, found);
        return;
    }
    const Float4 at[3] = {allLanes(to.x), allLanes(to.y), allLanes(to.z)};
    for (std::size_t i = 0; i < visited_; i += 4)
        storeVector(&dist2_[i], squaredDistances(&x_[i], &y_[i], &z_[i], at));
    if (visited_ <= static_cast<std::size_t>(k_)) {
        found.count = visited_;
        std::copy_n(places_.begin(), visited_, found.places.begin());
        std::copy_n(dist2_.begin(), visited_, found.dist2.begin());
        return;
    }
    float bound = std::numeric_limits<float>::infinity();
    const auto count = static_cast<std::size_t>(k_);
    if (hasLatest_) {
        bound = dist2_[static_cast<std::size_t>(latest_[0])];
        for (std::size_t i = 1; i < count; ++i)
            bound = std::max(bound, dist2_[static_cast<std::size_t>(latest_[i])]);
    }
    chooseNearest(dist2_.data(), visited_, count, found, bound);
    latest_ = found.places;
    hasLatest_ = true;
    for (std::size_t i = 0; i < count; ++i)
        found.places[i] = places_[static_cast<std::size_t>(found.places[i])];
}

} // namespace ostrella
