#pragma once

#include <cstddef>
#include <span>

#include <glm/vec3.hpp>

namespace ostrella::test {

/// What a triangle soup is like, measured without any code of the application or the generators;
/// corners count as one only where their floats are equal.
struct SurfaceMeasures {
    std::size_t facets = 0;
    std::size_t corners = 0;
    /// Directed edges that occur twice, or whose opposite is missing: 0 on a closed, manifold
    /// surface of one orientation.
    std::size_t loneEdges = 0;
    double volume = 0;
    double area = 0;
    glm::dvec3 low{};
    glm::dvec3 high{};
    double shortestEdge = 0;
    double longestEdge = 0;
    double smallestFacet = 0;
    double largestFacet = 0;
    /// The least shape quality, 4√3 · area / sum of the squared edges: 1 is equilateral.
    double worstShape = 1;
};

SurfaceMeasures measure(std::span<const glm::vec3> positions);

} // namespace ostrella::test
