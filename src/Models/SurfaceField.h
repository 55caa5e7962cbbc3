#pragma once

#include "Models/BoundingBox.h"
#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstdint>
#include <string>

namespace ostrella {

/// A scalar on the points of a surface, with the cells to draw it by. Positions in metres, in the
/// frame of axes its maker states. Copies share the arrays.
struct SurfaceField {
    /// How `indices` are drawn: two of them are one segment, or three one triangle.
    enum class Primitive { line, triangle };

    SharedArray<Vec3> positions;
    SharedArray<float> scalar; ///< one value per position
    std::string scalarName;    ///< the name under which the scalar was asked for
    float scalarMin = 0.0F;    ///< 0 without points
    float scalarMax = 1.0F;    ///< 1 without points
    SharedArray<std::uint32_t> indices;
    Primitive primitive = Primitive::line;
    Vec3 boundingMin{0.0F};
    Vec3 boundingMax{0.0F};

    SurfaceField() = default;

    /// Computes the scalar's range and the bounding box; NaN is passed over unless it comes first.
    /// A scalar whose length is not that of the positions ends the process.
    SurfaceField(SharedArray<Vec3> points, SharedArray<float> values, std::string name,
        SharedArray<std::uint32_t> cells, Primitive drawnAs);
};

} // namespace ostrella
