#include "Solver/Flow/tracing/TestClouds.h"

#include <algorithm>
#include <cmath>

namespace ostrella::testing {

float Dice::unit() {
    // Marsaglia's xorshift64*, of which the upper 24 bits are used.
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return static_cast<float>((state_ * 2685821657736338717U) >> 40) / 16777216.0F;
}

Vec3 Dice::inCube(float low, float high) {
    const float x = between(low, high);
    const float y = between(low, high);
    return {x, y, between(low, high)};
}

std::vector<Cloud> manyClouds() {
    std::vector<Cloud> clouds;
    Dice dice(7);
    const auto add = [&](const char* name, int count, int cellsPerAxis, auto&& point) {
        Cloud cloud{name, {}, cellsPerAxis};
        for (int i = 0; i < count; ++i)
            cloud.points.push_back(point(i));
        clouds.push_back(std::move(cloud));
    };
    add("even", 1000, 10, [&](int) { return dice.inCube(-1.0F, 3.0F); });
    add("sparse", 60, 12, [&](int) { return dice.inCube(0.0F, 1.0F); });
    add("clumps", 1500, 11, [&](int i) {
        const Vec3 centre = Vec3(static_cast<float>(i % 3), static_cast<float>(i % 5), 0.0F);
        return centre + dice.inCube(-0.02F, 0.02F);
    });
    add("flat", 600, 8, [&](int) { return Vec3(dice.unit(), dice.between(-4.0F, 4.0F), 0.25F); });
    add("line", 200, 8, [&](int) { return Vec3(dice.unit(), -2.0F, 7.0F); });
    add("one place", 40, 8, [](int) { return Vec3(1.5F, -2.5F, 3.5F); });
    add("coinciding", 400, 8, [&](int) {
        return Vec3(static_cast<float>(dice.below(4)), static_cast<float>(dice.below(4)), 0.0F);
    });
    add("on the borders of cells", 729, 8, [](int i) {
        return Vec3(
            static_cast<float>(i % 9), static_cast<float>(i / 9 % 9), static_cast<float>(i / 81));
    });
    add("crowded in one cell", 5000, 8, [&](int i) {
        return i < 8 ? Vec3(i & 1 ? 8.0F : 0.0F, i & 2 ? 8.0F : 0.0F, i & 4 ? 8.0F : 0.0F)
                     : dice.inCube(3.1F, 3.9F);
    });
    add("on a sphere", 3000, 6, [&](int i) {
        // All at almost the same distance from the middle, a crowd that no bound thins out.
        const Vec3 p = dice.inCube(-1.0F, 1.0F);
        const float length = std::sqrt(std::max(squaredLength(p), 1e-6F));
        return i < 2 ? Vec3(i == 0 ? -20.0F : 20.0F) : p / length;
    });
    add("two walls", 1700, 23, [&](int) {
        // From between them the search sees nothing until it sees all, a point or two at a time.
        const float x = dice.below(2) == 0 ? -1.0F : 1.0F;
        return Vec3(x, dice.between(-1.0F, 1.0F), dice.between(-1.0F, 1.0F));
    });
    add("far from the origin", 500, 8, [&](int) { return Vec3(1e6F) + dice.inCube(0.0F, 4.0F); });
    add("one point", 1, 8, [](int) { return Vec3(4.0F, 5.0F, 6.0F); });
    add("one cell", 300, 1, [&](int) { return dice.inCube(0.0F, 1.0F); });
    return clouds;
}

std::vector<Vec3> cube(int count, float half, std::uint64_t seed) {
    Dice dice(seed);
    std::vector<Vec3> points;
    for (int corner = 0; corner < 8; ++corner)
        points.emplace_back(
            corner & 1 ? half : -half, corner & 2 ? half : -half, corner & 4 ? half : -half);
    while (points.size() < static_cast<std::size_t>(count))
        points.push_back(dice.inCube(-half, half));
    return points;
}

VolumeField field(
    const std::vector<Vec3>& points, const std::function<Vec3(const Vec3&)>& velocity) {
    std::vector<Vec3> velocities(points.size());
    std::transform(points.begin(), points.end(), velocities.begin(), velocity);
    return {points, velocities};
}

std::vector<Vec3> lattice(const Vec3& low, const Vec3& high, int perAxis) {
    std::vector<Vec3> points;
    const Vec3 step = (high - low) / static_cast<float>(perAxis - 1);
    for (int k = 0; k < perAxis; ++k)
        for (int j = 0; j < perAxis; ++j)
            for (int i = 0; i < perAxis; ++i)
                points.push_back(low + step * Vec3(i, j, k));
    return points;
}

} // namespace ostrella::testing
