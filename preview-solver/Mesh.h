#pragma once

#include "Vec3.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrella::preview {

/// Kinds of cells and facets; the values are those of the mesh and result formats.
enum class CellType : std::uint8_t {
    line = 3,
    triangle = 5,
    quadrilateral = 9,
    tetrahedron = 10,
    hexahedron = 12,
    prism = 13,
    pyramid = 14
};

/// Points of a cell of that kind; 0 for a value that is none of the kinds.
int cellPoints(int type);
/// 1 for lines, 2 for triangles and quadrilaterals, 3 for the rest.
int cellDimension(CellType type);

struct Cell {
    CellType type = CellType::line;
    std::array<std::int32_t, 8> points{};
};

/// A named part of the boundary: lines in two dimensions, triangles and quadrilaterals in three.
struct Marker {
    std::string name;
    std::vector<Cell> facets;
};

/// A mesh as its file tells it: point order and cell order are the file's.
struct Mesh {
    int dimensions = 3;
    std::vector<Vec3> points;
    std::vector<Cell> cells;
    std::vector<Marker> markers;

    /// Turns every cell so that its volume (or area) is positive, and every facet so that its
    /// normal points out of the domain. Throws Failure for a facet that belongs to no cell.
    void orient();
};

} // namespace ostrella::preview
