#pragma once

#include <string>
#include <vector>

#include <glm/vec2.hpp>

namespace ostrella::generators {

/// A structured C-mesh about the NACA 0012 aerofoil of chord 1 m, nose at the origin, x along the
/// chord, y up: `around` × `outward` points. The first row (j = 0) runs from the far end of the
/// wake along its lower side to the trailing edge, round the nose and back; the wake's two sides
/// are the same points.
struct AerofoilMesh {
    static constexpr int around = 897;
    static constexpr int outward = 257;
    /// Intervals between the wake's far end and the trailing edge.
    static constexpr int wake = 192;
    /// Height of the first cell on the wall, metres: y+ about 1 at 50 m/s in sea-level air
    /// (friction speed about 2 m/s, kinematic viscosity 1.48e-5 m²/s).
    static constexpr double firstCell = 7e-6;

    /// Row after row, `around` points each; the wake's points occur twice, once a side.
    std::vector<glm::dvec2> points;

    [[nodiscard]] const glm::dvec2& at(int i, int j) const { return points[j * around + i]; }

    /// Builds the mesh.
    [[nodiscard]] static AerofoilMesh make();

    /// The mesh in the solver's native format: quadrilaterals counter-clockwise, the wake's points
    /// merged, markers "body" and "farfield".
    [[nodiscard]] std::string su2Text() const;
};

/// Half the thickness of the NACA 0012 section at chord position x, with the last coefficient that
/// closes the trailing edge (Abbott and von Doenhoff, with -0.1036 for -0.1015).
[[nodiscard]] double naca0012(double x);

} // namespace ostrella::generators
