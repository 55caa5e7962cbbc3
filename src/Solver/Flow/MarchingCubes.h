#pragma once

#include "Models/Vector.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace ostrella {

/// The surface on which `scalars`, on a lattice of `dim` points along each axis, have the value
/// `iso`, as nine floats a triangle without shared vertices (Lorensen and Cline 1987, with the
/// tables of Bourke). Cells with a corner that is not finite are left out. Triangles stand in the
/// order of the cells and face the lower values. Throws CancellationError; asked once a layer of
/// cells.
std::vector<float> marchingCubes(std::span<const float> scalars, std::size_t dim,
    const Vec3& origin, const Vec3& cellSize, float iso,
    const std::function<bool()>& isCancelled = {});

} // namespace ostrella
