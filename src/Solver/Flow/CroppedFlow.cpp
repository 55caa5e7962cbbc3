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

CroppedFlow::CroppedFlow(const Points& points)
    : grid_(points.positions,
          static_cast<int>(std::max<std::int64_t>(
              8, truncatedCubeRoot(static_cast<std::int64_t>(points.positions.size()))))),
      velocities_(points.positions.size()) {
    for (std::size_t i = 0; i < velocities_.size(); ++i) {
        const Vec3& v = points.velocities[static_cast<std::size_t>(grid_.cellPoints()[i])];
        const bool isWall = squaredLength(v) < 1e-6F;
        velocities_[i] = isWall ? Float4{0.0F, 0.0F, 0.0F, 0.0F} : Float4{v.x, v.y, v.z, 1.0F};
    }
}

/// The sums by inverse squared distance, one neighbour after the other.
CroppedFlow::Sum CroppedFlow::sumOf(NearestPoints& nearest) const {
    for (std::size_t i = nearest.count; i < NearestPoints::most; ++i)
        nearest.dist2[i] = 1.0F;
    const Float4 least = allLanes(1e-9F);
    alignas(16) float weights[NearestPoints::most];
    for (std::size_t i = 0; i < NearestPoints::most; i += 4)
        storeVector(
            weights + i, 1.0F / greater(loadVector<Float4>(nearest.dist2.data() + i), least));
    Float4 sum = allLanes(0.0F);
    Float4 flowing = allLanes(0.0F);
    for (std::size_t i = 0; i < nearest.count; ++i) {
        const Float4 velocity = velocities_[static_cast<std::size_t>(nearest.places[i])];
        sum += weights[i] * velocity;
        flowing += velocity;
    }
    return {sum, static_cast<int>(nearest.count) - static_cast<int>(flowing[3])};
}

Vec3 CroppedFlow::velocityOf(const Sum& sum) {
    if (sum.weighted[3] == 0.0F)
        return Vec3(0.0F);
    const Float4 mean = sum.weighted / sum.weighted[3];
    return {mean[0], mean[1], mean[2]};
}

Vec3 CroppedFlow::latticeVelocityOf(const Sum& sum) {
    if (sum.wallPoints > 3 || sum.weighted[3] == 0.0F)
        return Vec3(std::numeric_limits<float>::quiet_NaN());
    const Float4 mean = sum.weighted / sum.weighted[3];
    return {mean[0], mean[1], mean[2]};
}

Vec3 CroppedFlow::velocityAt(const Vec3& point) const {
    NearestPoints nearest;
    grid_.findKNearest(point, neighbors, nearest);
    return velocityOf(sumOf(nearest));
}

Vec3 CroppedFlow::latticeVelocityAt(const Vec3& point) const {
    NearestPoints nearest;
    grid_.findKNearest(point, latticeNeighbors, nearest);
    return latticeVelocityOf(sumOf(nearest));
}

CroppedFlow::Probe::Probe(const CroppedFlow& flow)
    : flow_(&flow), search_(flow.grid_, neighbors), latticeSearch_(flow.grid_, latticeNeighbors) {}

Vec3 CroppedFlow::Probe::velocityAt(const Vec3& point) {
    NearestPoints nearest;
    search_.find(point, nearest);
    return velocityOf(flow_->sumOf(nearest));
}

Vec3 CroppedFlow::Probe::latticeVelocityAt(const Vec3& point) {
    NearestPoints nearest;
    latticeSearch_.find(point, nearest);
    return latticeVelocityOf(flow_->sumOf(nearest));
}

} // namespace ostrella
