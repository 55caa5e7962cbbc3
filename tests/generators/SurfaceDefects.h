#pragma once

#include <cstddef>
#include <vector>

#include "Body.h"

namespace ostrella::test {

/// The defects of a surface by simple counts, made without any code of the application; corners
/// count as one only where their 32-bit floats are equal. Facets without three corners take part in
/// nothing but their own count.
struct SurfaceDefects {
    std::size_t facets = 0;
    std::size_t corners = 0;
    /// Edges of one facet, and of three or more.
    std::size_t openEdges = 0;
    std::size_t crowdedEdges = 0;
    /// Edges of two facets which run along them in the same direction.
    std::size_t turnedEdges = 0;
    /// Facets whose three corners another one before them has too.
    std::size_t doubledFacets = 0;
    /// Facets without area.
    std::size_t emptyFacets = 0;
    /// What hangs together by edges.
    std::size_t pieces = 0;
    double volume = 0;
    double area = 0;
    glm::dvec3 low{};
    glm::dvec3 high{};
    /// The least of 4√3 · area / sum of the squared edges of facets with an area: 1 is equilateral.
    double worstShape = 1;

    static SurfaceDefects of(const generators::Body& body);

    double extent() const;
};

/// Pairs of facets without a common corner of which an edge of one goes right through the inside of
/// the other; counted up to `most`. Each pair is looked at.
std::size_t crossings(const generators::Body& body, std::size_t most);

} // namespace ostrella::test
