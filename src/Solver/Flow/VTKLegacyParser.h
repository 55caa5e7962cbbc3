#pragma once

#include "Models/ScalarFieldStats.h"
#include "Models/SurfaceField.h"
#include "Models/VolumeField.h"

#include <filesystem>
#include <string_view>

namespace ostrella {

/// Reads the ASCII legacy VTK files of the flow solver: a scanner of words between white space that
/// looks for the keywords it needs, in a fixed order, and passes over everything else. Positions
/// keep the file's frame of axes and unit. All throw VTKParseError for what the file lacks,
/// filesystem_error where it cannot be read or is no UTF-8, and end the process at a negative count
/// or id and at an id beyond 32 bits; FlowScreen is the door for files that nobody vouches for.
namespace VTKLegacyParser {

/// Points, cells and one scalar. Only the first cell's type counts: triangles, or else lines.
SurfaceField parseSurface(const std::filesystem::path& url, std::string_view scalarName);

/// Points and one vector.
VolumeField parseVolume(const std::filesystem::path& url, std::string_view vectorName);

/// The figures of one scalar, without a look at points and cells. NaN sorts behind all numbers.
ScalarFieldStats extractScalarStats(const std::filesystem::path& url, std::string_view scalarName);

} // namespace VTKLegacyParser

} // namespace ostrella
