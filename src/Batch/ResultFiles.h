#pragma once

#include "Batch/BatchReport.h"
#include "Models/RunState.h"
#include "Solver/Tools/RunLog.h"

#include <string>

namespace ostrella {

/// The meshed surface, the streamlines and the vortex surface of a run as files of the user's.
namespace ResultFiles {

/// Writes what the report's options ask for and the result has, logs each, and notes in the report
/// what was written. What the result lacks costs a line with the reason. False if a file could not
/// be written.
bool write(BatchReport& report, const SimulationResult& result, const RunLog& log);

/// Writes the surface that the mesher was given, as binary STL in the application's frame of axes,
/// if the report's options ask for it; else as write() does.
bool writeSurface(BatchReport& report, const RunLog& log);

/// Why a result has no streamlines.
std::string whyNoStreamlines(const SimulationResult& result);
/// Why a result has no vortex surface.
std::string whyNoVortex(const SimulationResult& result);

} // namespace ResultFiles

} // namespace ostrella
