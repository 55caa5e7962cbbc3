#include "Solver/Flow/CroppedFlow.h"

#include "Models/Precondition.h"
#include "Solver/Flow/CubeRoot.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {

CroppedFlow::Points CroppedFlow::crop(const VolumeField& volume, const StreamlineFocus& focus) {
    precondition(!volume.positions.empty(), "a flow without points was to be sampled");
    precondition(volume.velocity.size() >= volume.positions.size(),
        "a flow has fewer velocities than points");
    const float h = focus.cropHalfWidth();
    Points kept;
    kept.positions.reserve(volume.positions.size() / 4);
    kept.velocities.reserve(volume.positions.size() / 4);
    for (std::size_t i = 0; i < volume.positions.size(); ++i) {
        const Vec3 d = volume.positions[i] - focus.center;
        if (std::abs(d.x) <= h && std::abs(d.y) <= h && std::abs(d.z) <= h) {
            kept.positions.push_back(volume.positions[i]);
            kept.velocities.push_back(volume.velocity[i]);
        }
    }
    if (kept.positions.empty()) {
        kept.positions.assign(volume.positions.begin(), volume.positions.end());
        kept.velocities.assign(
            volume.velocity.begin(), volume.velocity.begin() + volume.positions.size());
    }
    return kept;
}

CroppedFlow::CroppedFlow(const VolumeField& volume, const StreamlineFocus& focus)
    : CroppedFlow(crop(volume, focus)) {}

CroppedFlow::CroppedFlow(Points points)
    : positions_(std::move(points.positions)),
      grid_(positions_, static_cast<int>(std::max<std::int64_t>(
                            8, truncatedCubeRoot(static_cast<std::int64_t>(positions_.size()))))),
      velocities_(std::move(points.velocities)) {}

CroppedFlow::Sum CroppedFlow::sumAt(const Vec3& point, int count) const {
    Sum sum;
    for (const int neighbor : grid_.findKNearest(point, positions_, count)) {
        const Vec3& v = velocities_[static_cast<std::size_t>(neighbor)];
        if (squaredLength(v) < 1e-6F) {
            ++sum.wallPoints;
            continue;
        }
        const Vec3 d = positions_[static_cast<std::size_t>(neighbor)] - point;
        const float w = 1.0F / std::max(squaredLength(d), 1e-9F);
        sum.velocity += w * v;
        sum.weight += w;
    }
    return sum;
}

Vec3 CroppedFlow::velocityAt(const Vec3& point) const {
    const Sum sum = sumAt(point, 8);
    return sum.weight == 0.0F ? Vec3(0.0F) : sum.velocity / sum.weight;
}

Vec3 CroppedFlow::latticeVelocityAt(const Vec3& point) const {
    const Sum sum = sumAt(point, 6);
    if (sum.wallPoints > 3 || sum.weight == 0.0F)
        return Vec3(std::numeric_limits<float>::quiet_NaN());
    return sum.velocity / sum.weight;
}

} // namespace ostrella
