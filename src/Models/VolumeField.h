#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"

namespace ostrella {

/// The flow's velocity (m/s) on the points (m) of the volume mesh, in the frame of axes its maker
/// states. Copies share the arrays.
struct VolumeField {
    SharedArray<Vec3> positions;
    SharedArray<Vec3> velocity; ///< one vector per position
    Vec3 boundingMin{0.0F};
    Vec3 boundingMax{0.0F};

    VolumeField() = default;

    /// Computes the bounding box; NaN is passed over unless it comes first. Arrays of different
    /// length end the process.
    VolumeField(SharedArray<Vec3> points, SharedArray<Vec3> velocities);
};

} // namespace ostrella
