#pragma once

#include "Models/Vector.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A welded surface with the normals to shade it by. Welding gives each place one normal, the
/// average around it, under which the panels of a box bulge like cushions. Here a place has as many
/// vertices as it has smooth sides, and large faces weigh more than the small ones that round the
/// edge between them off.
struct CreasedMesh {
    /// Faces that meet at less than this angle, in degrees, are one smooth side: the angle from
    /// which feature lines are drawn.
    static constexpr double creaseDegrees = 30;

    std::vector<Vec4> vertices;         ///< position and normal in turn
    std::vector<std::uint32_t> indices; ///< three per triangle, in the order of those given

    /// The surface of these vertices, position and normal in turn. Indices must lie within them.
    /// The given normals remain where the faces have none.
    static CreasedMesh of(std::span<const Vec4> welded, std::span<const std::uint32_t> indices);
};

} // namespace ostrella
