#pragma once

#include "DualMesh.h"
#include "Mesh.h"

#include <set>
#include <string>
#include <vector>

namespace ostrella::preview {

/// One array of a result file: a number a point, or as many as the mesh has dimensions.
struct PointField {
    std::string name;
    int components = 1;
    std::vector<double> values;
};

/// Legacy ASCII VTK files as the solver's format has them: each array one line of tab-separated
/// numbers with seven digits.
namespace VtkWriter {

/// Points and cells of a file; `source` tells for each of its points the mesh's number.
struct Grid {
    int dimensions = 3;
    std::vector<Vec3> points;
    std::vector<Cell> cells;
    std::vector<std::int32_t> source;
};

Grid volumeGrid(const Mesh& mesh);
/// The facets of the named markers with their own point numbers, ascending with the mesh's.
Grid surfaceGrid(const Mesh& mesh, const std::set<std::string>& markers);

/// Writes `fields`, which hold values for every point of the mesh in the mesh's order. The file
/// appears whole or not at all. Throws Failure where it cannot be written.
void write(const std::string& path, const Grid& grid, const std::vector<PointField>& fields);

} // namespace VtkWriter

} // namespace ostrella::preview
