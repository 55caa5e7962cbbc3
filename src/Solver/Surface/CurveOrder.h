#pragma once

#include "Models/Cancellation.h"
#include "Models/LargeBuffer.h"
#include "Solver/Surface/BoxTree.h"

#include <cstdint>
#include <span>

namespace ostrella {

/// The indices of `boxes` in the order in which a Hilbert curve meets their middles, so that
/// neighbours in the list are neighbours in space. Boxes that crowd in one cell of the curve get a
/// curve of their own there: a small body beside a distant facet is ordered as well as one alone.
/// Throws CancellationError.
LargeBuffer<std::uint32_t> curveOrder(
    std::span<const FloatBox> boxes, const CancellationToken& token);

} // namespace ostrella
