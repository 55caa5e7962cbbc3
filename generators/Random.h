#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

#include <glm/vec3.hpp>

namespace ostrella::generators {

/// A small generator of pseudo-random numbers that gives the same ones on every system: a counter
/// in steps of the golden ratio, mixed by shifts and multiplications (splitmix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }

    /// Evenly in [low, high).
    double within(double low, double high) {
        return low + (high - low) * (static_cast<double>(next() >> 11U) * 0x1p-53);
    }

    /// A number under `count`.
    std::size_t under(std::size_t count) { return static_cast<std::size_t>(next() % count); }

    /// A direction, all of them alike: even height on the sphere, even angle about it.
    glm::dvec3 direction() {
        const double y = within(-1.0, 1.0);
        const double angle = within(0.0, 2.0 * std::numbers::pi);
        const double r = std::sqrt(1.0 - y * y);
        return {r * std::cos(angle), y, r * std::sin(angle)};
    }

private:
    std::uint64_t state_;
};

} // namespace ostrella::generators
