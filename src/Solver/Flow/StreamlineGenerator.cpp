#include "Solver/Flow/StreamlineGenerator.h"

#include "Models/Cancellation.h"
#include "Models/Precondition.h"
#include "Solver/Flow/CroppedFlow.h"
#include "Solver/Flow/SeedRake.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace ostrella {

namespace {

constexpr float least = -std::numeric_limits<float>::max();
constexpr float greatest = std::numeric_limits<float>::max();

/// A focus for a flow of which no body is known: a twentieth of the volume about its middle.
StreamlineFocus focusWithin(const VolumeField& volume) {
    StreamlineFocus focus;
    focus.center = (volume.boundingMin + volume.boundingMax) * 0.5F;
    focus.size = (volume.boundingMax - volume.boundingMin) * 0.05F;
    focus.isVolumetric = 0.1F * focus.largestExtent() < focus.size.z;
    focus.upstreamFactor = 0.5F;
    focus.downstreamFactor = 2.0F;
    return focus;
}

/// a × b × c, which must not overflow.
std::size_t product(std::int64_t a, std::int64_t b, std::int64_t c) {
    std::int64_t result = 0;
    precondition(
        !__builtin_mul_overflow(a, b, &result) && !__builtin_mul_overflow(result, c, &result),
        "the number of streamline vertices overflows");
    return static_cast<std::size_t>(std::max<std::int64_t>(result, 0));
}

/// Lines under way: what is recorded of them so far.
class Tracer {
public:
    Tracer(const VolumeField& volume, const CroppedFlow& flow, float timeStep, float xLimit,
        int stepCount)
        : volume_(volume),
          flow_(flow),
          timeStep_(timeStep),
          xLimit_(xLimit),
          stepCount_(stepCount) {}

    void reserve(std::size_t floats, std::size_t indices) {
        vertices_.reserve(floats);
        indices_.reserve(indices);
    }

    /// Follows the line that begins at `seed`, by the classic fourth-order Runge-Kutta scheme.
    void trace(const Vec3& seed) {
        const float halfStep = timeStep_ / 2.0F;
        Vec3 p = seed;
        for (int step = 0; step < stepCount_; ++step) {
            const Vec3 k1 = flow_.velocityAt(p);
            const float speed = std::sqrt(squaredLength(k1));
            if (speed < 1e-4F)
                return;
            record(p, speed, step > 0);
            const Vec3 k2 = flow_.velocityAt(p + halfStep * k1);
            const Vec3 k3 = flow_.velocityAt(p + halfStep * k2);
            const Vec3 k4 = flow_.velocityAt(p + timeStep_ * k3);
            p += (k1 + 2.0F * k2 + 2.0F * k3 + k4) * timeStep_ / 6.0F;
            if (hasLeft(p))
                return;
        }
    }

    Streamlines result(std::int64_t seedCount, float freeStreamVelocity) && {
        Streamlines lines;
        lines.vertexCount = vertices_.size() / 4;
        lines.indexCount = indices_.size();
        lines.seedCount = static_cast<std::size_t>(seedCount);
        const bool hasRange = !vertices_.empty() && std::isfinite(magnitudeMin_) &&
                              std::isfinite(magnitudeMax_) && magnitudeMin_ <= magnitudeMax_;
        lines.magnitudeMin = hasRange ? magnitudeMin_ : 0.0F;
        lines.magnitudeMax = hasRange ? magnitudeMax_ : std::max(freeStreamVelocity, 1.0F);
        lines.boundingMin = vertices_.empty() ? volume_.boundingMin : boundingMin_;
        lines.boundingMax = vertices_.empty() ? volume_.boundingMax : boundingMax_;
        lines.interleavedVertices = std::move(vertices_);
        lines.indices = std::move(indices_);
        return lines;
    }

private:
    void record(const Vec3& p, float speed, bool continues) {
        const std::size_t index = vertices_.size() / 4;
        precondition(index <= std::numeric_limits<std::uint32_t>::max(),
            "the streamlines' vertices overflow 32 bits");
        vertices_.insert(vertices_.end(), {p.x, p.y, p.z, speed});
        if (continues)
            indices_.insert(indices_.end(),
                {static_cast<std::uint32_t>(index - 1), static_cast<std::uint32_t>(index)});
        magnitudeMin_ = std::min(magnitudeMin_, speed);
        magnitudeMax_ = std::max(magnitudeMax_, speed);
        for (int axis = 0; axis < 3; ++axis) {
            boundingMin_[axis] = std::min(boundingMin_[axis], p[axis]);
            boundingMax_[axis] = std::max(boundingMax_[axis], p[axis]);
        }
    }

    /// Past the limit downstream, out of the volume's box, or not a number.
    bool hasLeft(const Vec3& p) const {
        if (p.x > xLimit_)
            return true;
        for (int axis = 0; axis < 3; ++axis) {
            const float at = p[axis];
            if (at < volume_.boundingMin[axis] || at > volume_.boundingMax[axis] || std::isnan(at))
                return true;
        }
        return false;
    }

    const VolumeField& volume_;
    CroppedFlow::Probe flow_;
    float timeStep_;
    float xLimit_;
    int stepCount_;
    std::vector<float> vertices_;
    std::vector<std::uint32_t> indices_;
    float magnitudeMin_ = greatest;
    float magnitudeMax_ = least;
    Vec3 boundingMin_{greatest};
    Vec3 boundingMax_{least};
};

} // namespace

Streamlines StreamlineGenerator::generate(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<Focus>& focus, std::optional<int> seedCount, int stepCount,
    const std::function<bool()>& isCancelled) {
    if (volume.positions.empty()) {
        Streamlines nothing;
        nothing.magnitudeMax = 1.0F;
        return nothing;
    }
    precondition(stepCount >= 0, "a negative number of steps was asked for");
    const Focus around = focus ? *focus : focusWithin(volume);
    const SeedRake seeds(seedCount.value_or(around.isVolumetric ? 196 : 100), around);
    const std::size_t floats = product(seeds.size(), stepCount, 4);
    const std::size_t indices = product(seeds.size(), stepCount - std::int64_t{1}, 2);

    const CroppedFlow flow(volume, around);
    const float speed = std::max(freeStreamVelocity, 0.1F);
    const float timeStep = around.pathLength() / (speed * static_cast<float>(stepCount));
    const float xLimit =
        around.center.x + 0.5F * around.size.x + around.downstreamFactor * around.bodyLength();
    Tracer tracer(volume, flow, timeStep, xLimit, stepCount);
    tracer.reserve(floats, indices);
    for (std::int64_t i = 0; i < seeds.size(); ++i) {
        if (isCancelled && isCancelled())
            throw CancellationError();
        tracer.trace(seeds[i]);
    }
    return std::move(tracer).result(seeds.size(), freeStreamVelocity);
}

} // namespace ostrella
