#include "Solver/Flow/Lattice.h"

#include <algorithm>

namespace ostrella {

Lattice Lattice::around(const StreamlineFocus& focus, int resolution) {
    const Vec3& center = focus.center;
    const Vec3& size = focus.size;
    const float length = focus.bodyLength();
    const float halfWidth = std::max(size.y, size.z) + 0.5F * focus.largestExtent();
    const Vec3 low(center.x - 0.5F * size.x - focus.upstreamFactor * length, center.y - halfWidth,
        center.z - halfWidth);
    const Vec3 high(center.x + 0.5F * size.x + focus.downstreamFactor * length,
        center.y + halfWidth, center.z + halfWidth);
    const int points = std::max(resolution, 16);
    return {static_cast<std::size_t>(points), low, (high - low) / static_cast<float>(points - 1)};
}

} // namespace ostrella
