#include "Solver/Flow/vortex/TestFlows.h"

#include <cmath>
#include <numbers>

namespace ostrella::test {

Vec3 LambOseen::velocity(const Vec3& point) const {
    const double y = static_cast<double>(point.y) - center.y;
    const double z = static_cast<double>(point.z) - center.z;
    const double squared = y * y + z * z;
    const double core = static_cast<double>(coreRadius) * coreRadius;
    const double strength = circulation / (2 * std::numbers::pi);
    // Swirl over radius, which tends to a finite value on the axis.
    const double turn = squared < 1e-12 * core ? strength / core
                                               : strength * -std::expm1(-squared / core) / squared;
    return {stream, static_cast<float>(-turn * z), static_cast<float>(turn * y)};
}

double LambOseen::q(double radius) const {
    const double core = static_cast<double>(coreRadius) * coreRadius;
    const double strength = circulation / (2 * std::numbers::pi);
    if (radius < 1e-6 * coreRadius)
        return strength / core * strength / core;
    const double squared = radius * radius;
    const double decay = std::exp(-squared / core);
    const double turn = strength * (1 - decay) / squared;
    const double slope = strength * (2 / core * decay - (1 - decay) / squared);
    return turn * slope;
}

double LambOseen::q(const Vec3& point) const {
    return q(std::hypot(
        static_cast<double>(point.y) - center.y, static_cast<double>(point.z) - center.z));
}

LatticeVelocities onLattice(const Lattice& lattice, const Flow& flow) {
    LatticeVelocities velocities(lattice.count());
    for (std::size_t k = 0; k < lattice.points; ++k) {
        for (std::size_t j = 0; j < lattice.points; ++j) {
            for (std::size_t i = 0; i < lattice.points; ++i) {
                const Vec3 v = flow(lattice.position(i, j, k));
                const std::size_t at = lattice.index(i, j, k);
                velocities.x[at] = v.x;
                velocities.y[at] = v.y;
                velocities.z[at] = v.z;
            }
        }
    }
    return velocities;
}

VolumeField scattered(const Vec3& low, const Vec3& high, std::size_t perAxis, const Flow& flow) {
    std::uint32_t state = 1;
    const auto random = [&state] {
        state = state * 1664525U + 1013904223U;
        return static_cast<float>(state >> 8) / 16777216.0F - 0.5F;
    };
    const Vec3 spacing = (high - low) / static_cast<float>(perAxis - 1);
    std::vector<Vec3> positions;
    std::vector<Vec3> velocities;
    for (std::size_t k = 0; k < perAxis; ++k) {
        for (std::size_t j = 0; j < perAxis; ++j) {
            for (std::size_t i = 0; i < perAxis; ++i) {
                const float x = static_cast<float>(i) + random() / 1.5F;
                const float y = static_cast<float>(j) + random() / 1.5F;
                const float z = static_cast<float>(k) + random() / 1.5F;
                positions.push_back(low + spacing * Vec3(x, y, z));
                velocities.push_back(flow(positions.back()));
            }
        }
    }
    return {positions, velocities};
}

StreamlineFocus cube(const Vec3& center, float edge) {
    StreamlineFocus focus;
    focus.center = center;
    focus.size = Vec3(edge);
    focus.isVolumetric = true;
    focus.upstreamFactor = 0.5F;
    focus.downstreamFactor = 2.0F;
    return focus;
}

} // namespace ostrella::test
