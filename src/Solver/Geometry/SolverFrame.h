#pragma once

#include "Models/SurfaceField.h"
#include "Models/TriangleMesh.h"
#include "Models/VolumeField.h"

namespace ostrella {

/// The one place where the application's frame of axes, Y up, and the solver's, Z up, meet: the
/// application's (x, y, z) is the solver's (x, −z, y), a quarter turn about X. Only signs change,
/// so nothing is rounded and both ways are exact inverses.
namespace SolverFrame {

Vec3 toSolver(const Vec3& app);
Vec3 toApp(const Vec3& solver);

/// The same surface in the solver's frame, facets in the same order and orientation.
TriangleMesh toSolver(const TriangleMesh& mesh);

/// The same surface in the application's frame, facets in the same order and orientation.
TriangleMesh toApp(const TriangleMesh& mesh);

/// The field in the application's frame: positions turned, box and scalar range computed again, the
/// rest shared with `field`.
SurfaceField toApp(const SurfaceField& field);

/// The field in the application's frame: positions and velocities turned, box computed again.
VolumeField toApp(const VolumeField& field);

} // namespace SolverFrame

} // namespace ostrella
