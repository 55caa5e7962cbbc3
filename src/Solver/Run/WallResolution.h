#pragma once

#include "Models/LogStore.h"
#include "Models/ScalarFieldStats.h"
#include "Models/SimulationInputs.h"
#include "Solver/Tools/RunLog.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

/// Tells whether the mesh on the body is fine enough for the turbulence model, by y⁺, the height of
/// the first points in viscous lengths.
namespace WallResolution {

/// What the log says of y⁺ on a body: the figures, and a warning where 95 % of the surface are not
/// as fine as the model wants.
std::vector<std::pair<std::string, LogStore::Level>> lines(
    const ScalarFieldStats& yPlus, TurbulenceModel model);

} // namespace WallResolution

/// Logs y⁺ of a surface file and returns it; nothing, without a line, for a file that does not have
/// it or cannot be read.
std::optional<ScalarFieldStats> reportYPlus(
    const std::filesystem::path& url, TurbulenceModel turbModel, const RunLog& log);

} // namespace ostrella
