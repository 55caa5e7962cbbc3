#include "Solver/Flow/SeedRake.h"

#include "Models/Precondition.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

/// The place of one of `count` evenly spread points, from −0.5 to 0.5.
float spread(std::int64_t i, std::int64_t count) {
    return static_cast<float>(i) / static_cast<float>(std::max<std::int64_t>(count, 2) - 1) - 0.5F;
}

} // namespace

SeedRake::SeedRake(int count, const StreamlineFocus& focus)
    : center_(focus.center), columns_(count), isVolumetric_(focus.isVolumetric) {
    precondition(count >= 0, "a negative number of seeds was asked for");
    const float least = 0.25F * focus.largestExtent();
    center_.x = focus.center.x - 0.5F * focus.size.x - focus.upstreamFactor * focus.bodyLength();
    halfY_ = std::max(0.75F * focus.size.y, least);
    halfZ_ = std::max(0.75F * focus.size.z, least);
    if (isVolumetric_) {
        // The root of a 32-bit count is below 2¹⁶, so the rounded one is the nearest whole number.
        const double side = std::round(std::sqrt(static_cast<double>(count)));
        rows_ = columns_ = std::max<std::int64_t>(2, static_cast<std::int64_t>(side));
    }
}

Vec3 SeedRake::operator[](std::int64_t i) const {
    const float y = center_.y + halfY_ * (2.0F * spread(i % columns_, columns_));
    if (!isVolumetric_)
        return {center_.x, y, center_.z};
    return {center_.x, y, center_.z + halfZ_ * (2.0F * spread(i / columns_, rows_))};
}

} // namespace ostrella
