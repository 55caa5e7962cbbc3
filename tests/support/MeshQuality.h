#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <glm/vec3.hpp>

namespace ostrella::test {

/// Corners of a tetrahedron in the order of the solver's format: the first three counter-clockwise
/// seen from the fourth.
using Tetrahedron = std::array<glm::dvec3, 4>;

/// Volume, negative for a cell that is turned inside out.
double signedVolume(const Tetrahedron& p);

/// Three times the radius of the inscribed sphere over that of the circumscribed one: 1 for the
/// regular tetrahedron, 0 for one without volume.
double gammaOf(const Tetrahedron& p);

/// What the volume cells of a mesh are like, measured without any code of the application.
struct MeshQuality {
    std::size_t points = 0;
    std::size_t cells = 0;
    /// Cells of no volume or a negative one.
    std::size_t inverted = 0;
    double leastGamma = 0;
    /// As many cells as a hundredth of all have a lesser gamma.
    double firstPercentileGamma = 0;
    double medianGamma = 0;
    /// Sum of the cells' signed volumes, m³.
    double volume = 0;
    /// Facets of each marker.
    std::map<std::string, std::size_t> markers;

    /// Of a mesh file in the solver's native format. Throws std::runtime_error unless it is whole,
    /// three-dimensional and of tetrahedra only.
    static MeshQuality read(const std::filesystem::path& file);
};

} // namespace ostrella::test
