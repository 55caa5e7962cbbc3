#pragma once

#include "Models/TriangleMesh.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace ostrella::bench {

/// How often the icosahedron is divided for the measured body: 1 310 720 facets.
inline constexpr int usualDivisions = 8;

/// The unit sphere of 20 × 4^`divisions` facets, kept for the next call.
const TriangleMesh& sphere(int divisions);

std::vector<std::byte> binarySTL(const TriangleMesh& mesh);

/// As exporters write it: indented, "%e" numbers.
std::string asciiSTL(const TriangleMesh& mesh);

/// The sphere of usualDivisions as binary STL in the temporary directory, removed at exit.
const std::filesystem::path& sphereFile();

} // namespace ostrella::bench
