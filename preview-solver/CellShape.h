#pragma once

#include "Mesh.h"

#include <span>

namespace ostrella::preview {

/// A cell's edges and faces by local point numbers, in the order of the mesh format.
struct CellShape {
    struct Face {
        int count;
        std::array<int, 4> points;
    };
    int points;
    std::span<const std::array<int, 2>> edges;
    /// Faces in three dimensions, their normals pointing out of a positive cell; a cell of two
    /// dimensions is its own only face.
    std::span<const Face> faces;
    /// The order of points that turns the cell inside out.
    std::array<int, 8> mirrored;

    static const CellShape& of(CellType type);
};

/// Signed volume (area in two dimensions) of a cell, positive in the format's point order; faces of
/// four points are divided about their centres, as the dual volumes are.
double signedVolume(const Cell& cell, std::span<const Vec3> points);

} // namespace ostrella::preview
