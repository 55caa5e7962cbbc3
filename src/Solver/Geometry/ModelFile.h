#pragma once

#include "Models/LargeBuffer.h"
#include "Models/TriangleMesh.h"
#include "Solver/Geometry/ModelLoadError.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace ostrella {

/// The largest model file that is read: 43 million facets as binary STL. Its mesh and welded form
/// take four times as much memory, and no machine at hand meshes so fine a surface.
inline constexpr std::uint64_t largestModelFile = std::uint64_t{2} << 30;

/// All bytes of the file at `path`. Throws ModelLoadError for whatever is no ordinary, readable
/// file of at most `limit` bytes; never waits for a pipe or a device.
LargeBuffer<std::byte> readModelFile(
    const std::filesystem::path& path, std::uint64_t limit = largestModelFile);

/// The model in the STL file at `path`, fit for use: read, parsed and screened. Throws
/// ModelLoadError and STLParseError.
TriangleMesh loadModelFile(const std::filesystem::path& path);

} // namespace ostrella
