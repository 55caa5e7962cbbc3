#pragma once

#include "Models/TriangleMesh.h"

namespace ostrella {

/// Reference area of all coefficients, in m²: the planform, which is the body's shadow along the
/// solver's z, whatever the direction of the flow; 1 for a body that has none. The body is in the
/// solver's frame of axes.
double referenceArea(const TriangleMesh& body);

} // namespace ostrella
