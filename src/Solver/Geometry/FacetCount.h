#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace ostrella {

/// How many facets the STL file at `path` has, without building a mesh: from the header of a binary
/// file, else, if it begins with "solid", by counting "facet normal" in small or capital letters.
/// Nothing for any other file. More lenient than the parser; it only feeds a label. Any thread.
std::optional<std::int64_t> readFacetCount(const std::filesystem::path& path);

} // namespace ostrella
