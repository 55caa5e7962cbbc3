#include "Solver/Flow/FlowScreen.h"

#include <cmath>

namespace ostrella::FlowScreen {

namespace {

/// The settings may ask for any offset and length, but the lines must begin where distances to the
/// points can be computed, and their steps must be numbers.
void requireFinite(const StreamlineFocus& focus) {
    const float upstream = focus.upstreamFactor * focus.bodyLength();
    if (!(std::fabs(upstream) <= largestNumber && std::fabs(focus.pathLength()) <= largestNumber))
        throw FlowScreenError("The way that streamlines take past the body is not finite or too "
                              "long. Check the surface's coordinates and the upstream and "
                              "downstream factors.");
}

} // namespace

Streamlines generate(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<StreamlineGenerator::Focus>& focus, std::optional<int> seedCount,
    int stepCount, const std::function<bool()>& isCancelled) {
    requireFinite(volume);
    if (focus)
        requireFinite(*focus);
    if (seedCount && *seedCount < 0)
        throw FlowScreenError("The number of streamlines to release is negative.");
    return StreamlineGenerator::generate(
        volume, freeStreamVelocity, focus, seedCount, stepCount, isCancelled);
}

} // namespace ostrella::FlowScreen
