#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/IndexedSurface.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// Which openings of a surface are closed.
struct OpeningLimits {
    /// Openings at most this wide are closed, m.
    double widest = 0;
    /// Openings narrower than this are seams: closed, but not counted, m.
    double seam = 0;
};

/// Lids for the openings of a surface, and what they leave open.
struct OpeningLids {
    /// Triangles between vertices of the surface; their orientation says nothing.
    std::vector<Triangle> triangles;
    /// Openings closed, without seams.
    std::int64_t count = 0;
    /// Of each triangle of the surface: its shell. Triangles of a shell hang together over edges
    /// that just two of them share, or along seams; so a fin is a shell of its own.
    std::vector<std::uint32_t> shellOf;
    /// Of each shell: whether a border is left: it is a sheet, and not a closed body.
    std::vector<bool> isSheet;
};

/// Finds the loops of edges that have one triangle only, and closes those that are narrow enough.
/// A loop whose lid would have more than a third of the area of its shell is the border of a sheet
/// and no opening. Edges along each other no farther apart than a seam, whether their vertices are
/// the same or not, need no lid. The surface is welded, without degenerate and duplicated
/// triangles. Throws CancellationError.
OpeningLids lidsFor(const IndexedSurface& surface, const OpeningLimits& limits,
    const CancellationToken& token = {});

} // namespace ostrella
