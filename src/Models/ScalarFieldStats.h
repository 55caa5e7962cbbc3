#pragma once

#include <cstdint>

namespace ostrella {

/// A scalar field reduced to five figures.
struct ScalarFieldStats {
    std::int64_t count = 0;
    float min = 0.0F;
    float max = 0.0F;
    float mean = 0.0F;
    float p95 = 0.0F; ///< the 95th percentile: the sorted value at (count − 1) × 0.95, cut off

    bool operator==(const ScalarFieldStats&) const = default;
};

} // namespace ostrella
