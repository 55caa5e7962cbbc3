#pragma once

#include "Batch/BatchPicture.h"
#include "Batch/BatchReport.h"
#include "Models/RunState.h"
#include "Solver/Tools/RunEnvironment.h"
#include "Solver/Tools/RunLog.h"

#include <optional>

namespace ostrella {

/// What is left to do when a batch run has ended: export, the files that were asked for, the
/// picture of a run that did not fail (`picture` is null for none; `rotation` in radians), and the
/// run directory's removal unless it is kept. Returns the exit status, which is `status` unless
/// something that was asked for could not be written. For a worker thread.
int concludeRun(BatchReport report, int status, const std::optional<SimulationResult>& result,
    BatchPicture* picture, const Vec3& rotation, const RunEnvironment& environment,
    const RunLog& log);

} // namespace ostrella
