#pragma once

#include "Solver/Flow/TriangleSurface.h"

namespace ostrella {

/// `surface` without its fragments: connected pieces of fewer triangles than a twentieth of the
/// largest, or than 10 beside a largest of under 200. Where all are as small as that, all stay.
/// Triangles keep their order; vertices are numbered in the order of their first use.
TriangleSurface filterSmallComponents(TriangleSurface surface);

} // namespace ostrella
