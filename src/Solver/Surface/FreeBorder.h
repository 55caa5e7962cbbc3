#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/IndexedSurface.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// A piece of a border edge.
struct BorderPiece {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    /// The triangle whose edge it is a part of.
    std::uint32_t triangle = 0;
    /// The fans of triangles around its ends that it bounds: pieces of the same number at the same
    /// vertex have triangles between them that hang together.
    std::uint32_t fromFan = 0;
    std::uint32_t toFan = 0;
};

/// Where a surface ends.
struct FreeBorder {
    std::vector<BorderPiece> pieces;
    /// Of each triangle: its shell, numbered in the order of their first triangles. Triangles of a
    /// shell hang together over edges that just two of them share, or along seams.
    std::vector<std::uint32_t> shellOf;
    std::uint32_t shellCount = 0;
};

/// Finds the edges that have one triangle only. Where two borders run along each other no farther
/// apart than `seam` they are no border: their vertices that are so near to each other count as one
/// (the first), and edges are divided where a vertex of another one lies on them, unless
/// there are hundreds at each edge. Throws CancellationError.
FreeBorder freeBorderOf(const IndexedSurface& surface, double seam, const CancellationToken& token);

} // namespace ostrella
