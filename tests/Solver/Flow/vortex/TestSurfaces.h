#pragma once

#include "Models/IsoSurface.h"
#include "Solver/Flow/TriangleSurface.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella::test {

/// A strip of `triangles` triangles without a connection to any other, at height `z`, appended.
void appendStrip(TriangleSurface& surface, std::size_t triangles, float z);

/// How many directed edges a surface uses other than once each way: 0 for a closed surface of one
/// orientation.
std::size_t unpairedEdges(std::span<const std::uint32_t> indices);

/// The number of connected pieces.
std::size_t pieces(std::span<const std::uint32_t> indices);

/// The sum of the triangles' areas, and the volume that they enclose: positive where they face
/// outwards.
double area(const IsoSurface& surface);
double enclosedVolume(const IsoSurface& surface);

} // namespace ostrella::test
