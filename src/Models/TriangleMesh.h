#pragma once

#include "Models/BoundingBox.h"
#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstddef>
#include <utility>

namespace ostrella {

/// A surface model as an unindexed triangle soup, the way STL delivers it: three consecutive
/// positions are one facet, and each position has a normal. Metres; the frame of axes is the
/// holder's affair. An immutable value: copies share their arrays.
class TriangleMesh {
public:
    /// No facets; the box is (0, 0, 0) to (0, 0, 0).
    TriangleMesh() = default;

    /// Computes the bounding box in one pass (see BoundingBox::of for NaN). Arrays of different
    /// length, or of a length that is no multiple of 3, end the process.
    TriangleMesh(SharedArray<Vec3> positions, SharedArray<Vec3> normals);

    const SharedArray<Vec3>& positions() const& { return positions_; }
    const SharedArray<Vec3>& normals() const& { return normals_; }
    // Of a temporary mesh the array itself, so that a loop over it holds what it walks through.
    SharedArray<Vec3> positions() && { return std::move(positions_); }
    SharedArray<Vec3> normals() && { return std::move(normals_); }
    const Vec3& boundingMin() const { return box_.min; }
    const Vec3& boundingMax() const { return box_.max; }
    const BoundingBox& boundingBox() const { return box_; }

    /// Extents of the bounding box.
    Vec3 size() const { return box_.max - box_.min; }
    std::size_t facetCount() const { return positions_.size() / 3; }
    bool empty() const { return positions_.empty(); }

    /// Compares positions, normals and both corners of the box, with the float's own equality.
    friend bool operator==(const TriangleMesh&, const TriangleMesh&) = default;

private:
    SharedArray<Vec3> positions_;
    SharedArray<Vec3> normals_;
    BoundingBox box_;
};

} // namespace ostrella
