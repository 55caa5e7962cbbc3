#pragma once

#include "Models/BoundingBox.h"
#include "Rendering/ArcBallCamera.h"

namespace ostrella {

/// The camera's near and far plane for one frame, in metres.
///
/// The camera's own planes serve bodies from centimetres to some tens of metres. Seen from less
/// than twice the near plane a body would be cut away; from thousands of metres it would vanish
/// behind the far plane, and long before that all its depths would become one value. There the
/// planes follow the distance; the picture is the same otherwise, since they change nothing but
/// depth.
struct ClipRange {
    float nearZ = 0;
    float farZ = 0;

    /// For a camera that looks at `scene`.
    static ClipRange forScene(const ArcBallCamera& camera, const BoundingBox& scene);

    bool operator==(const ClipRange&) const = default;
};

} // namespace ostrella
