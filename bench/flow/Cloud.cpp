#include "Cloud.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace ostrella::bench {

std::vector<Vec3> cloud(std::size_t count, float half) {
    std::uint64_t state = 1;
    const auto next = [&] {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return half * (static_cast<float>(state >> 40U) / (1U << 23U) - 1.0F);
    };
    std::vector<Vec3> points(count);
    for (Vec3& point : points) {
        point.x = next();
        point.y = next();
        point.z = next();
    }
    return points;
}

VolumeField cloudFlow(std::size_t count) {
    auto positions = cloud(count, 0.98F * cloudBody().cropHalfWidth());
    std::vector<Vec3> velocities;
    velocities.reserve(count);
    for (const Vec3& p : positions)
        velocities.emplace_back(50.0F, -p.z * std::exp(-p.y * p.y), p.y * std::exp(-p.z * p.z));
    return {std::move(positions), std::move(velocities)};
}

StreamlineFocus cloudBody() {
    return StreamlineFocus::around(Vec3(-0.5F), Vec3(0.5F), 0.5F, 2.0F);
}

} // namespace ostrella::bench
