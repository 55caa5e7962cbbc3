#pragma once

#include "Models/RunState.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Copies a run's files to a folder of the user's and never overwrites anything there.
namespace ResultExporter {

/// Copies surface_flow.vtk, flow.vtk, history.csv and run.cfg, as far as they exist, and returns
/// the new files. Makes the folder. Throws std::filesystem::filesystem_error with a text for the
/// user; what was copied before stays.
std::vector<std::filesystem::path> exportResult(
    const SimulationResult& result, const std::filesystem::path& folder);

/// The first of "flow.vtk", "flow 2.vtk", "flow 3.vtk" … at which nothing exists.
std::filesystem::path freeDestination(std::string_view name, const std::filesystem::path& folder);

/// What the log says of an export that did not fail.
std::string successMessage(std::size_t fileCount, const std::filesystem::path& folder);

} // namespace ResultExporter

} // namespace ostrella
