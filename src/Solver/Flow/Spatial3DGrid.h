#pragma once

#include "Models/Vector.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A uniform grid over scattered points that tells which of them are near a position. Refers to
/// points by their index in the array it was built from; lengths and frame of axes are that
/// array's. Immutable: any number of threads may search it at once.
class Spatial3DGrid {
public:
    /// Sorts the points into cellsPerAxis³ cells over their box. Ends the process at an empty
    /// array, at less than one cell, at a coordinate that is not finite, and where the numbers of
    /// the points or cells overflow 32 bits.
    Spatial3DGrid(std::span<const Vec3> positions, int cellsPerAxis);

    /// The `k` nearest of the points in the shells of cells around the position, walked outwards
    /// until they hold at least k: by ascending distance, the one seen first ahead among equals.
    /// The search ends there, though the next shell may hold a nearer point. All points seen, in
    /// the order of visit, where they are no more than k. `in` must be the array of the constructor
    /// and the position finite; otherwise the process ends.
    std::vector<int> findKNearest(const Vec3& to, std::span<const Vec3> in, int k) const;

    int cellsX() const { return cellsPerAxis_; }
    int cellsY() const { return cellsPerAxis_; }
    int cellsZ() const { return cellsPerAxis_; }
    /// The component-wise minimum of the points.
    const Vec3& boundingMin() const { return boundingMin_; }
    /// Edge lengths of one cell.
    const Vec3& cellSize() const { return cellSize_; }
    /// The points of cell c are cellPoints()[cellStart()[c]] up to cellStart()[c + 1], exclusive. A
    /// cell's number is (iz · cellsY + iy) · cellsX + ix.
    std::span<const std::int32_t> cellStart() const { return cellStart_; }
    /// Point indices, grouped by cell, ascending within each.
    std::span<const std::int32_t> cellPoints() const { return cellPoints_; }

private:
    struct Neighbor {
        int index = 0;      ///< the point
        float dist2 = 0.0F; ///< its squared distance to the position
        int order = 0;      ///< its place among all points this search looked at
    };

    int cellOf(float coordinate, int axis) const;

    int cellsPerAxis_ = 0;
    Vec3 boundingMin_{0.0F};
    Vec3 cellSize_{0.0F};
    std::vector<std::int32_t> cellStart_;
    std::vector<std::int32_t> cellPoints_;
};

} // namespace ostrella
