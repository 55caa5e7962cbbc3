#pragma once

#include "Models/FloatVectors.h"
#include "Models/LargeBuffer.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/NearestSearch.h"
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

    /// The same velocities at many points, each near the one before: sooner. Refers to the flow.
    /// For one thread.
    class Probe {
    public:
        explicit Probe(const CroppedFlow& flow);
        Vec3 velocityAt(const Vec3& point);
        Vec3 latticeVelocityAt(const Vec3& point);

    private:
        const CroppedFlow* flow_;
        NearestSearch search_;
        NearestSearch latticeSearch_;
    };

    const Spatial3DGrid& grid() const { return grid_; }

private:
    static constexpr int neighbors = 8;
    static constexpr int latticeNeighbors = 6;

    struct Points {
        std::vector<Vec3> positions;
        std::vector<Vec3> velocities;
    };
    struct Sum {
        Float4 weighted; ///< velocity, and the weights themselves
        int wallPoints;
    };

    explicit CroppedFlow(const Points& points);
    static Points crop(const VolumeField& volume, const StreamlineFocus& focus);
    Sum sumOf(NearestPoints& nearest) const;
    static Vec3 velocityOf(const Sum& sum);
    static Vec3 latticeVelocityOf(const Sum& sum);

    Spatial3DGrid grid_;
    /// Velocities in the grid's order and a one, by which the weights are summed; zeros on the
    /// wall, which leave every sum as it is.
    LargeBuffer<Float4> velocities_;
};

} // namespace ostrella
