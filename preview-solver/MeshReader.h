#pragma once

#include "Mesh.h"

#include <string>
#include <string_view>

namespace ostrella::preview {

/// Reads SU2's native mesh format: sections in any order, percent comments, all its cell types.
namespace MeshReader {

/// Reads a mesh's text. Throws Failure, with the line, for text that is not a usable mesh: cut
/// short, with unknown cells, point numbers out of range, numbers that are not finite, without
/// cells.
Mesh parse(std::string_view text);
/// Reads the file at `path`. Throws Failure also where the file cannot be read.
Mesh read(const std::string& path);

} // namespace MeshReader

} // namespace ostrella::preview
