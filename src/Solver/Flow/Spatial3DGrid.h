#pragma once

#include "Models/LargeBuffer.h"
#include "Models/SharedArray.h"
#include "Models/Vector.h"
#include "Solver/Flow/NearestPoints.h"
#include "Solver/Flow/ShellWalk.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A uniform grid over scattered points that tells which of them are near a position. Refers to
/// points by their index in the array it was built from; lengths and frame of axes are that
/// array's. Immutable, and copies share their arrays: any number of threads may search it at once.
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

    /// The same for a k from 1 to NearestPoints::most, with the points by their places in
    /// cellPoints(): for those who keep what belongs to the points in that order.
    void findKNearest(const Vec3& to, int k, NearestPoints& found) const;

    int cellsX() const { return cellsPerAxis_; }
    int cellsY() const { return cellsPerAxis_; }
    int cellsZ() const { return cellsPerAxis_; }
    /// The component-wise minimum of the points.
    const Vec3& boundingMin() const { return boundingMin_; }
    /// Edge lengths of one cell.
    const Vec3& cellSize() const { return cellSize_; }
    /// The points of cell c are cellPoints()[cellStart()[c]] up to cellStart()[c + 1], exclusive. A
    /// cell's number is (iz · cellsY + iy) · cellsX + ix.
    std::span<const std::int32_t> cellStart() const { return cellStart_.span(); }
    /// Point indices, grouped by cell, ascending within each.
    std::span<const std::int32_t> cellPoints() const { return cellPoints_.span(); }

    /// The cell of a finite position, the nearest one of those outside the box.
    GridCell cellAt(const Vec3& position) const;
    /// The points' coordinates in the order of cellPoints(), with room for two vectors behind.
    const float* x() const { return coordinates_.data(); }
    const float* y() const { return x() + stride_; }
    const float* z() const { return y() + stride_; }

private:
    /// A point in its place.
    struct Placed {
        Vec3 position;
        std::int32_t index;
    };

    LargeBuffer<std::int32_t> cellNumbers(std::span<const Vec3> positions) const;
    void divide(const LargeBuffer<Placed>& placed);
    std::vector<int> findMany(const Vec3& to, std::size_t k) const;

    int cellsPerAxis_ = 0;
    Vec3 boundingMin_{0.0F};
    Vec3 cellSize_{0.0F};
    SharedArray<std::int32_t> cellStart_;
    SharedArray<std::int32_t> cellPoints_;
    SharedArray<float> coordinates_; ///< all x, then all y and all z
    std::size_t stride_ = 0;         ///< from one of these to the next
};

} // namespace ostrella
