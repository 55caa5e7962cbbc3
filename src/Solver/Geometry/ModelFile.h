#pragma once

#include "Models/LargeBuffer.h"
#include "Models/OrdinaryFile.h"
#include "Models/TriangleMesh.h"
#include "Solver/Geometry/ModelLoadError.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>

namespace ostrella {

/// The largest model file that is read: 43 million facets as binary STL. Its mesh and welded form
/// take four times as much memory, and no machine at hand meshes so fine a surface.
inline constexpr std::uint64_t largestModelFile = std::uint64_t{2} << 30;

/// Hands the file at `path`, open at its start, to `read`. Throws ModelLoadError for whatever is no
/// ordinary, readable file of at most `limit` bytes, and where the memory does not suffice; never
/// waits for a pipe or a device.
void withModelFile(const std::filesystem::path& path,
    const std::function<void(const OrdinaryFile&)>& read, std::uint64_t limit = largestModelFile);

/// All bytes of the file at `path`. Throws ModelLoadError for whatever is no ordinary, readable
/// file of at most `limit` bytes; never waits for a pipe or a device.
LargeBuffer<std::byte> readModelFile(
    const std::filesystem::path& path, std::uint64_t limit = largestModelFile);

/// The model in the STL file at `path`, fit for use: read, parsed and screened. Throws
/// ModelLoadError and STLParseError.
TriangleMesh loadModelFile(const std::filesystem::path& path);

} // namespace ostrella
