#include "Solver/Flow/StreamlineFocus.h"

#include <algorithm>

namespace ostrella {

StreamlineFocus StreamlineFocus::around(const Vec3& boundingMin, const Vec3& boundingMax,
    float upstreamFactor, float downstreamFactor) {
    StreamlineFocus focus;
    focus.center = (boundingMin + boundingMax) * 0.5F;
    focus.size = boundingMax - boundingMin;
    focus.isVolumetric = 0.1F * focus.largestExtent() < focus.size.z;
    focus.upstreamFactor = upstreamFactor;
    focus.downstreamFactor = downstreamFactor;
    return focus;
}

float StreamlineFocus::largestExtent() const {
    return std::max({size.x, size.y, size.z});
}

float StreamlineFocus::bodyLength() const {
    // A body thin along the stream still counts as a quarter of its largest extent.
    return std::max(size.x, 0.25F * largestExtent());
}

float StreamlineFocus::pathLength() const {
    const float length = bodyLength();
    return length + upstreamFactor * length + downstreamFactor * length;
}

float StreamlineFocus::cropHalfWidth() const {
    return std::max(0.7F * pathLength(), 2.0F * largestExtent());
}

} // namespace ostrella
