#pragma once

#include "Models/VolumeField.h"
#include "Solver/Flow/Spatial3DGrid.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <vector>

namespace ostrella {

/// The points of a flow near a body with their velocities, ready to be sampled anywhere by
/// inverse-distance weights. Velocities below 1 mm/s are those of the wall and have no say.
class CroppedFlow {
public:
    /// Keeps the points in the focus's cube, in their order; all of them if it holds none. The
    /// volume must have points, all of them finite, and a velocity for each.
    CroppedFlow(const VolumeField& volume, const StreamlineFocus& focus);

    /// Velocity (m/s) at a point by its 8 nearest points; zero where all of them are on the wall.
    Vec3 velocityAt(const Vec3& point) const;

    /// Velocity (m/s) at a lattice point by its 6 nearest points; NaN where more than 3 of them are
    /// on the wall, so inside the body, or none has a say.
    Vec3 latticeVelocityAt(const Vec3& point) const;

    const Spatial3DGrid& grid() const { return grid_; }

private:
    struct Points {
        std::vector<Vec3> positions;
        std::vector<Vec3> velocities;
    };
    struct Sum {
        Vec3 velocity{0.0F}; ///< weighted
        float weight = 0.0F;
        int wallPoints = 0;
    };

    explicit CroppedFlow(Points points);
    static Points crop(const VolumeField& volume, const StreamlineFocus& focus);
    Sum sumAt(const Vec3& point, int count) const;

    std::vector<Vec3> positions_;
    Spatial3DGrid grid_;
    std::vector<Vec3> velocities_;
};

} // namespace ostrella
