#pragma once

#include "Models/Vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella {

/// One kind of defect of a surface: how often, and where.
struct SurfaceDefect {
    /// Places that are kept of each kind; the count goes on.
    static constexpr std::size_t mostPlaces = 64;

    std::int64_t count = 0;
    /// Points on the surface, in the judged model's frame of axes, m.
    std::vector<Vec3> places;

    bool operator==(const SurfaceDefect&) const = default;
};

/// What a surface model is like as a mesher sees it, with counts and places. Corners on one key of
/// the model's weld grid are one vertex.
struct SurfaceFitness {
    std::int64_t facets = 0;
    /// Pieces that hang together by edges.
    std::int64_t shells = 0;

    /// Edges of one facet only.
    SurfaceDefect openEdges;
    /// Edges of three facets or more.
    SurfaceDefect nonManifoldEdges;
    /// Facets that another one of the same three corners stands for.
    SurfaceDefect duplicatedFacets;
    /// Edges whose two facets run along them in the same direction.
    SurfaceDefect inconsistentEdges;
    /// Facets that collapse to a line or a point.
    SurfaceDefect degenerateFacets;
    /// Facets of a shape quality under 0.1, where 1 is equilateral (4√3 · area / sum of the squared
    /// edges): needles and caps. They alone do not make a surface unfit.
    SurfaceDefect slivers;
    /// Pairs of facets that cut each other away from a corner or an edge that they share.
    SurfaceDefect selfIntersections;
    /// Pairs of facets that lie on one another in one plane.
    SurfaceDefect overlaps;
    /// Closed shells whose facets face inward, and that no other one encloses.
    SurfaceDefect insideOutShells;
    /// Shells that lie inside of another one, which they do not cut.
    SurfaceDefect innerShells;
    /// Pairs of shells that cut one another.
    SurfaceDefect cuttingShells;
    /// The surface is so entangled that the search was ended: self-intersections, overlaps, cutting
    /// and inner shells are counted in part only.
    bool isCutShort = false;

    /// Largest extent of the bounding box, m.
    float extent = 0;
    float shortestEdge = 0;
    float medianEdge = 0;
    float longestEdge = 0;
    /// Volume inside of the surface as its facets enclose it, m³; negative inside out.
    double volume = 0;
    /// m².
    double area = 0;

    /// Whether a mesher can take the facets as they are: closed, manifold, of one orientation,
    /// outward, and nowhere through or onto itself.
    bool isFit() const {
        return facets > 0 && openEdges.count == 0 && nonManifoldEdges.count == 0 &&
               duplicatedFacets.count == 0 && inconsistentEdges.count == 0 &&
               degenerateFacets.count == 0 && selfIntersections.count == 0 && overlaps.count == 0 &&
               insideOutShells.count == 0 && innerShells.count == 0 && cuttingShells.count == 0 &&
               !isCutShort;
    }

    bool operator==(const SurfaceFitness&) const = default;
};

} // namespace ostrella
