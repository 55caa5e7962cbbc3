#pragma once

#include "Models/BoundingBox.h"
#include "Models/Vector.h"
#include "Rendering/FrameEncoding.h"
#include "Rendering/GridGeometry.h"

#include <cstdint>
#include <optional>

namespace ostrella {

/// What is known of the contents of a scene's buffers besides their bytes. Boxes in metres, of the
/// model as it was loaded and of results as the solver saw them. A count is 0 where there is no
/// buffer.
struct SceneContents {
    std::uint32_t meshIndexCount = 0;
    std::uint32_t featureEdgeVertexCount = 0;
    BoundingBox meshBounds;

    std::uint32_t surfaceIndexCount = 0;
    Topology surfacePrimitive = Topology::lines;
    Vec2 surfaceScalarRange{-1.0F, 1.0F};
    BoundingBox surfaceBounds;

    std::uint32_t ribbonIndexCount = 0;
    Vec2 streamlineMagRange{0.0F, 1.0F}; ///< least and greatest speed, m/s
    BoundingBox streamlineBounds;

    std::uint32_t vortexIndexCount = 0;

    std::uint32_t gridMinorVertexCount = 0;
    std::uint32_t gridMajorVertexCount = 0;
    std::optional<GridGeometry::Plan> gridPlan;
};

} // namespace ostrella
