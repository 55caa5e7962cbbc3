#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Geometry/STLParseError.h"

#include <cstddef>
#include <filesystem>
#include <span>

namespace ostrella {

/// Turns STL files, binary or text, into meshes. Stateless; any thread.
namespace STLParser {

/// The mesh that the whole file `data` holds, with the positions as stored. Throws STLParseError.
///
/// The file is binary exactly when its size is 84 + 50 × the facet count at offset 80; whether it
/// begins with "solid" is never looked at. A binary mesh carries the stored facet normals,
/// unchecked. In a text only lines that begin with "facet normal" or "vertex" count; lines end at
/// LF, CR, CRLF, U+0085, U+2028 or U+2029; malformed ones are passed over.
TriangleMesh parse(std::span<const std::byte> data);

/// Reads the file at `path` and parses it. Throws ModelLoadError if it cannot be read, and
/// STLParseError.
TriangleMesh parse(const std::filesystem::path& path);

} // namespace STLParser

} // namespace ostrella
