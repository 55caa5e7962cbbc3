#pragma once

#include "Models/SurfaceField.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/VTKLegacyParser.h"
#include "Solver/Flow/VTKText.h"

#include <string_view>

namespace ostrella {

/// What VTKLegacyParser and FlowScreen have in common: the operations of both on a text in memory.
/// They throw VTKParseError and VTKNumberError, and give the text's memory back as soon as its
/// numbers are taken.
namespace VTKReader {

SurfaceField surface(VTKText text, std::string_view scalarName);

VolumeField volume(VTKText text, std::string_view vectorName);

ScalarFieldStats scalarStats(VTKText text, std::string_view scalarName);

} // namespace VTKReader

} // namespace ostrella
