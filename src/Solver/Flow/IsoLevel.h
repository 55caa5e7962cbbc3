#pragma once

#include <optional>
#include <span>

namespace ostrella {

/// The value that `percentile` per cent of the positive finite `scalars` do not exceed: among n of
/// them in ascending order that at percentile × (n − 1) / 100, cut off. Nothing where none is
/// positive. A percentile that gives no index ends the process.
std::optional<float> isoLevel(std::span<const float> scalars, float percentile);

} // namespace ostrella
