#pragma once

#include "Batch/BatchReport.h"
#include "Batch/ResultsJSON.h"

namespace ostrella {

/// The "surface" of a report; null where no model was to be meshed.
Json surfaceOf(const BatchReport& report);

} // namespace ostrella
