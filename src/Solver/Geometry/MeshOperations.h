#pragma once

#include "Models/TriangleMesh.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace ostrella {

/// `mesh` turned by eulerXYZ(`eulerAngles`), radians, about the origin; normals are turned and made
/// unit length, a normal of length zero becomes NaN. The same mesh, arrays shared, for no angle.
TriangleMesh rotated(const TriangleMesh& mesh, const Vec3& eulerAngles);

/// Half the sum of dot((b − a) × (c − a), along) over the facets where it is positive: for a closed
/// surface and a unit direction the area of its shadow. `along` is used as passed.
float projectedArea(const TriangleMesh& mesh, const Vec3& along);

/// Writes `mesh` as binary STL, each facet with the normal of its first corner. Replaces the file's
/// contents in place. Throws std::filesystem::filesystem_error; more than 2³² − 1 facets end the
/// process.
void writeBinarySTL(const TriangleMesh& mesh, const std::filesystem::path& path);

/// The bytes that writeBinarySTL() writes, but for the file's head, which begins with `title`: at
/// most 80 bytes, and not "solid", by which readers know the other form of STL.
std::string binarySTL(const TriangleMesh& mesh, std::string_view title);

} // namespace ostrella
