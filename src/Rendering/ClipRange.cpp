#include "Rendering/ClipRange.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

ClipRange ClipRange::forScene(const ArcBallCamera& camera, const BoundingBox& scene) {
    // A step of a 32-bit depth just below 1, at distance d, is about d² / near × 2⁻²⁴ metres. This
    // share keeps it at a thousandth of the distance, half of what lines are pulled forward by.
    constexpr float nearestShare = 6e-5F;
    constexpr float largestShare = 0.5F;
    // The grid reaches a few times as far as the body it lies below.
    constexpr float reach = 10.0F;

    const Vec3 toCentre = (scene.min + scene.max) * 0.5F - camera.eye();
    const float toScene = std::sqrt(squaredLength(toCentre));
    const float radius = 0.5F * std::sqrt(squaredLength(scene.max - scene.min));
    ClipRange range;
    range.nearZ = std::max(
        std::min(camera.nearZ, largestShare * camera.distance), nearestShare * camera.distance);
    range.farZ = std::max(camera.farZ, toScene + reach * radius);
    return range;
}

} // namespace ostrella
