#pragma once

#include "Models/IsoSurface.h"

#include <exception>
#include <optional>
#include <span>

namespace ostrella {

/// Thrown where a vertex lies so many steps of the weld grid from the origin, or nowhere, that it
/// has no key.
class IsoWeldError final : public std::exception {
public:
    const char* what() const noexcept override {
        return "A vertex of the surface is not finite or too far from the origin to be welded.";
    }
};

/// A surface of shared vertices from nine floats a triangle: corners with one key, on a grid of a
/// hundred-thousandth of the largest extent, become one vertex at the position of the first of
/// them. Degenerate triangles go, and so do small fragments; normals are weighted by area. Nothing
/// if no triangle stays. Throws IsoWeldError.
std::optional<IsoSurface> weld(std::span<const float> rawTriangles, float iso);

} // namespace ostrella
