#pragma once

#include "Models/Cancellation.h"
#include "Models/SurfaceFitness.h"
#include "Models/TriangleMesh.h"
#include "Solver/Surface/FitnessTexts.h"

namespace ostrella {

/// Judges a model's surface for meshing: on two threads if it is a large one, with the same result
/// on any number of them. Time and memory are bounded: what shells and facets do to one another is
/// searched up to a number of finds and of looks (SelfIntersections, ShellCensus). Every coordinate
/// is finite. Throws CancellationError.
SurfaceFitness judgeSurface(const TriangleMesh& mesh, const CancellationToken& token = {});

} // namespace ostrella
