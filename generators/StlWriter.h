#pragma once

#include <filesystem>
#include <string_view>

#include "Body.h"

namespace ostrella::generators {

/// Writes the body as binary STL, coordinates rounded to 32-bit floats, facet normals from the
/// rounded vertices. The header holds `title`, which must not begin with "solid".
/// Throws std::runtime_error if the file cannot be written.
void writeBinaryStl(const Body& body, const std::filesystem::path& path, std::string_view title);

/// Writes the body as ASCII STL, nine significant digits, so that each 32-bit float survives.
/// Throws std::runtime_error if the file cannot be written.
void writeAsciiStl(const Body& body, const std::filesystem::path& path, std::string_view name);

} // namespace ostrella::generators
