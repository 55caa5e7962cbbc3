#pragma once

#include "Boundaries.h"
#include "Config.h"
#include "DualMesh.h"
#include "FlowFields.h"
#include "FreeStream.h"
#include "OutputScales.h"
#include "VtkWriter.h"

namespace ostrella::preview {

/// The arrays of the result files, in the solver's order and under its names, for the groups that
/// the configuration asks for; values in the mesh's order of points.
std::vector<PointField> resultFields(const Config& config, const FreeStream& stream,
    const OutputScales& scales, const DualMesh& dual, const Boundaries& boundaries,
    const FlowFields& fields);

/// A line for each group of VOLUME_OUTPUT that is not written.
std::vector<std::string> unknownGroups(const Config& config);

} // namespace ostrella::preview
