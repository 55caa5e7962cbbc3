#pragma once

#include "DualMesh.h"

#include <set>
#include <string>
#include <vector>

namespace ostrella::preview {

/// The distance, in metres, of each point of the dual mesh from the nearest facet of the named
/// markers; a very large number where there is none.
std::vector<double> wallDistances(
    const Mesh& mesh, const DualMesh& dual, const std::set<std::string>& walls);

} // namespace ostrella::preview
