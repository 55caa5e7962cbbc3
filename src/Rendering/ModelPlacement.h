#pragma once

#include "Models/BoundingBox.h"
#include "Models/Vector.h"

namespace ostrella {

/// How the model and its results stand in the world. The model turns about the centre of its box;
/// the solver saw it turned about the origin, so results are moved to fit.
struct ModelPlacement {
    Vec3 centre{0.0F}; ///< middle of the model's own box, m
    Mat4 rotation{1.0F};

    ModelPlacement() = default;
    /// The placement of a model with this box, turned by three angles about x, then y, then z.
    ModelPlacement(const Vec3& boundingMin, const Vec3& boundingMax, const Vec3& rotationRadians);

    /// Model to world.
    Mat4 modelMatrix() const;
    /// World to model.
    Mat4 inverseModelMatrix() const;
    /// From where the solver saw a point to where the scene shows it, m.
    Vec3 resultOffset() const;
    /// A box of results where the scene shows it.
    BoundingBox placeResult(const Vec3& min, const Vec3& max) const;

    bool operator==(const ModelPlacement&) const = default;
};

} // namespace ostrella
