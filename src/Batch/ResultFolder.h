#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace ostrella {

/// What the files of a run tell that no record of the run is there for. Nothing here changes a
/// file; each function answers with nothing where the files tell nothing.
namespace ResultFolder {

/// 2 or 3: of the mesh file if it is there, else by the surface, whose cells are triangles or stand
/// out of the plane in three dimensions, else by the volume.
std::optional<int> dimensions(
    const std::filesystem::path& folder, const std::optional<std::string>& meshFilename);

/// The number of volume elements: of the mesh file if it is there, else of "flow.vtk".
std::optional<std::int64_t> cells(
    const std::filesystem::path& folder, const std::optional<std::string>& meshFilename);

/// The count behind the first "CELLS" behind the first "POINTS" of a legacy VTK file, as it stands
/// there. Reads no further than that.
std::optional<std::int64_t> cellsInVTK(const std::filesystem::path& file);

} // namespace ResultFolder

} // namespace ostrella
