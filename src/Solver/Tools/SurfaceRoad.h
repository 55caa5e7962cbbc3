#pragma once

#include "Models/Vector.h"

#include <cstddef>
#include <span>
#include <string>

namespace ostrella {

/// What the mesher does with a body's facets, decided from the body itself. Some bodies would hold
/// the mesher up for ever on one road and pass on the other, so the script is told.
struct SurfaceRoad {
    enum class Kind {
        keep,   ///< the facets become the mesh's surface as they are
        remesh, ///< new facets of the mesh's own size; only where the surface bears it
        refuse, ///< no road leads to a mesh
    };

    Kind kind = Kind::keep;
    /// Median edge of the facets, in the mesh's unit of length; 0 without facets.
    float typicalEdge = 0;

    /// The value of the script's placeholder "{{SURFACE_ROAD}}": the typical edge to keep the
    /// facets, "0" to remesh them, "-1" to give up.
    std::string scriptValue() const;
};

/// What a surface is like as a mesher sees it; corners closer than a millionth of the body's
/// largest extent count as one.
struct SurfaceCensus {
    std::size_t facets = 0;
    /// Every edge is shared by exactly two facets that run along it in opposite directions: closed,
    /// manifold, of one orientation and without a facet that occurs twice.
    bool closed = false;
    /// Facets that collapse to a line or a point.
    std::size_t degenerate = 0;
    /// Facets of a shape quality under 0.1, where 1 is equilateral (4√3 · area / sum of the squared
    /// edges): needles of more than about 1 : 9.
    std::size_t needles = 0;
    float medianEdge = 0;
    float longestEdge = 0;
};

/// Takes the census of a triangle soup, three corners a facet.
SurfaceCensus surfaceCensus(std::span<const Vec3> positions);

/// The road for a body whose mesh shall have edges between `lcMin` and `lcMax` (the lesser of the
/// two where `lcMin` exceeds `lcMax`). With h the size wanted on the body:
/// - facets are kept if none is a needle or degenerate, their median edge is at least h / 4 and
///   none of their edges is longer than 4 h: they carry the shape better than a remeshed surface;
/// - other surfaces are remeshed if they are closed and no facet is degenerate;
/// - what can be neither is kept as well, for the mesher to judge, unless it has needles.
SurfaceRoad surfaceRoad(std::span<const Vec3> positions, float lcMin, float lcMax);

} // namespace ostrella
