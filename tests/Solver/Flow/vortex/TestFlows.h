#pragma once

#include "Models/VolumeField.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/LatticeVelocities.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace ostrella::test {

using Flow = std::function<Vec3(const Vec3&)>;

/// A viscous vortex along the x axis (Lamb and Oseen), carried by a stream along it.
struct LambOseen {
    float circulation = 1.0F; ///< m²/s
    float coreRadius = 1.0F;  ///< m
    float stream = 0.0F;      ///< m/s
    Vec3 center{0.0F};        ///< a point of the axis

    Vec3 velocity(const Vec3& point) const;

    /// Q at a distance from the axis: u/r × du/dr of the swirl u.
    double q(double radius) const;
    double q(const Vec3& point) const;
};

/// `flow` on the points of a lattice, without any sampling.
LatticeVelocities onLattice(const Lattice& lattice, const Flow& flow);

/// A flow at `perAxis`³ points of a box, off their regular places by up to a third of a spacing;
/// the same points in every run.
VolumeField scattered(const Vec3& low, const Vec3& high, std::size_t perAxis, const Flow& flow);

/// A cube of this edge about a centre, as the region around a body; its lattice and crop reach
/// 1.5 edges to the sides, half an edge upstream and two downstream.
StreamlineFocus cube(const Vec3& center, float edge);

/// A question about cancellation that holds at its `last` turn, counting from 1, and counts.
struct CancelAt {
    std::size_t last = SIZE_MAX;
    std::size_t asked = 0;

    std::function<bool()> question() {
        return [this] { return ++asked >= last; };
    }
};

} // namespace ostrella::test
