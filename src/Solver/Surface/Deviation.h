#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/IndexedSurface.h"
#include "Solver/Surface/TriangleTree.h"

#include <cstdint>

namespace ostrella {

/// Bound of the points that greatestDistance() measures at. Where `step` asks for more, it is taken
/// wider.
inline constexpr std::int64_t mostDistanceSamples = 2'000'000;

/// The greatest distance of a point of `from` to the nearest point of `to`, m: measured at all
/// corners, and at points on each triangle of a grid along its edges that are at most `step` apart
/// on each of them, so that it falls short of the greatest one by no more than that. Zero if there
/// is no triangle on either side. Two threads. Throws CancellationError.
double greatestDistance(const IndexedSurface& from, const TriangleTree& to, double step,
    const CancellationToken& token = {});

/// The volume that the surface encloses, m³; negative where it is inside out.
double signedVolume(const IndexedSurface& surface);

} // namespace ostrella
