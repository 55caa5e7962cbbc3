#pragma once

#include "Models/IsoSurface.h"
#include "Models/Streamlines.h"

#include <string>

namespace ostrella {

/// Results as texts that other programs open. Every float has nine significant digits, so that it
/// comes back bit by bit; frame of axes and units are the field's own.
namespace FlowFiles {

/// Legacy ASCII VTK polydata: the vertices in their order, a polyline for each line of at least two
/// vertices, and the speed (m/s) as point scalar "Speed".
std::string streamlinesVTK(const Streamlines& streamlines);

/// ASCII PLY: vertices with their normals, and triangles.
std::string isoSurfacePLY(const IsoSurface& surface);

} // namespace FlowFiles

} // namespace ostrella
