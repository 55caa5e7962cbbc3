#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace ostrella {

/// The 3 × 3 × 3 mean of `scalars` on a lattice of `dim` points along each axis, of the finite ones
/// among the 27. So a point without a value between points with one gets one, and small holes
/// close; the outer layer keeps what it had. Less than 2 points an axis end the process. Throws
/// CancellationError; asked once an inner layer.
std::vector<float> boxFilter(
    std::span<const float> scalars, std::size_t dim, const std::function<bool()>& isCancelled = {});

} // namespace ostrella
