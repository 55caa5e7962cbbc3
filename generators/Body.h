#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <glm/vec3.hpp>

namespace ostrella::generators {

/// A surface as shared vertices (metres, application frame: x along the stream, y up, z spanwise)
/// and counter-clockwise triangles seen from outside.
struct Body {
    using Triangle = std::array<std::uint32_t, 3>;

    std::vector<glm::dvec3> vertices;
    std::vector<Triangle> triangles;

    /// Adds a vertex and gives its index.
    std::uint32_t add(const glm::dvec3& vertex);

    /// Adds both triangles of the quadrilateral a, b, c, d (counter-clockwise from outside), cut
    /// along its shorter diagonal so that the triangles come out as even as they can.
    void addQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d);

    /// Adds another body's surface; nothing is merged.
    void append(const Body& other);

    /// The same surface moved by `offset`.
    [[nodiscard]] Body translated(const glm::dvec3& offset) const;

    /// The same surface scaled about the origin.
    [[nodiscard]] Body scaled(double factor) const;

    /// The same surface, vertices that lie within `tolerance` of each other merged into one.
    /// Vertices of our own shapes either coincide up to rounding or lie far apart, so that the
    /// grid of cells of this size around each vertex finds every partner.
    [[nodiscard]] Body welded(double tolerance) const;

    /// Six times nothing else than the signed volume's definition: the sum of a · (b × c) / 6 over
    /// all triangles, in cubic metres; positive for a closed surface that faces outward.
    [[nodiscard]] double signedVolume() const;
};

} // namespace ostrella::generators
