#pragma once

#include "Models/VolumeField.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ostrella::testing {

/// Numbers that are the same on every machine, unlike those of the standard distributions.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed * 2 + 1) {}

    /// From 0 up to 1, exclusive.
    float unit();
    /// From `low` up to `high`.
    float between(float low, float high) { return low + (high - low) * unit(); }
    Vec3 inCube(float low, float high);
    /// From 0 up to `count`, exclusive.
    int below(int count) { return static_cast<int>(unit() * static_cast<float>(count)); }

private:
    std::uint64_t state_;
};

/// A cloud of points and its name in a test's message.
struct Cloud {
    std::string name;
    std::vector<Vec3> points;
    int cellsPerAxis;
};

/// Clouds that a search might stumble over: even, in clumps, flat, on a line, with points that
/// coincide, on the borders of cells, in one cell but for a few, in two walls, far from the origin.
std::vector<Cloud> manyClouds();

/// `count` points in the cube from −half to half, eight of them its corners.
std::vector<Vec3> cube(int count, float half, std::uint64_t seed = 1);

/// The points with the velocity that `velocity` gives at each.
VolumeField field(
    const std::vector<Vec3>& points, const std::function<Vec3(const Vec3&)>& velocity);

/// The points of a lattice of `perAxis`³ over the box, x fastest.
std::vector<Vec3> lattice(const Vec3& low, const Vec3& high, int perAxis);

} // namespace ostrella::testing
