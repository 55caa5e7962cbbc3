#pragma once

#include "Solver/Flow/Spatial3DGrid.h"

#include <optional>
#include <vector>

namespace ostrella {

/// Spatial3DGrid::findKNearest for positions of which one is near the one before, with the same
/// results: while they stay in one cell, the points to look at are the same, and those just found
/// bound the distance of those to find. Refers to the grid. For one thread.
class NearestSearch {
public:
    /// For the `k` nearest, from 1 to NearestPoints::most.
    NearestSearch(const Spatial3DGrid& grid, int k);

    /// As findKNearest; the position must be finite.
    void find(const Vec3& to, NearestPoints& found);

private:
    void collect(const GridCell& cell);

    const Spatial3DGrid* grid_;
    int k_;
    std::optional<GridCell> cell_; ///< whose shells' points are the candidates
    std::size_t visited_ = 0;      ///< the number of candidates, also where they are too many
    std::vector<float> x_;         ///< the candidates' coordinates in the order of visit
    std::vector<float> y_;
    std::vector<float> z_;
    std::vector<std::int32_t> places_;
    std::vector<float> dist2_;
    std::array<std::int32_t, NearestPoints::most> latest_{}; ///< the candidates found last
    bool hasLatest_ = false;
};

} // namespace ostrella
