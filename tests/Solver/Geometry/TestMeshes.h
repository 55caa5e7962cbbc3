#pragma once

#include "Models/TriangleMesh.h"
#include "support/Wait.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace ostrella::test {

/// A mesh of these corners, three a facet, with the normal (0, 0, 1) throughout.
TriangleMesh soup(std::vector<Vec3> corners);

/// The soup of a triangle list.
TriangleMesh soup(const std::vector<Vec3>& points, const std::vector<std::uint32_t>& indices);

/// The cube from (0, 0, 0) to (1, 1, 1): 12 facets, outward.
TriangleMesh unitCube();

/// The corner (0, 0, 0) and the three unit points: 4 facets, outward.
TriangleMesh tetrahedron();

/// `facets` triangles among `points` lattice points in an arbitrary but fixed manner: shared,
/// repeated, flipped and degenerate edges all occur.
TriangleMesh tangle(std::size_t facets, std::uint32_t points, std::uint32_t seed);

/// `mesh` moved by `by`.
TriangleMesh moved(const TriangleMesh& mesh, const Vec3& by);

/// The bytes of a binary STL with this header, count field and records of increasing numbers: facet
/// i has the numbers 100 i + 1 to 100 i + 12, its normal first.
std::vector<std::byte> binarySTL(
    std::uint32_t records, std::uint32_t countField, std::string_view header = "");

std::vector<std::byte> bytesOf(std::string_view text);

/// Writes a file of these contents into `folder`, and gives its path.
std::filesystem::path fileIn(
    const TemporaryDirectory& folder, const std::filesystem::path& name, std::string_view contents);

} // namespace ostrella::test
