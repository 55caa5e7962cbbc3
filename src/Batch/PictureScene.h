#pragma once

#include "Batch/PictureOptions.h"
#include "Models/RunState.h"
#include "Models/Vector.h"
#include "Rendering/FrameEncoding.h"
#include "Rendering/PreparedModel.h"
#include "Rendering/SceneBuffers.h"

#include <optional>

namespace ostrella {

/// One frame of the viewport's scene with everything that it takes to draw it.
struct PictureScene {
    FrameEncoding frame;
    SceneBuffers buffers;
    /// Pixels.
    int width = 0;
    int height = 0;
    /// Most samples a pixel.
    int samples = 4;

    /// The scene as the window shows it once it has come to rest: the model (may be absent) turned
    /// by three angles in radians, and the layers of a result (may be absent), without gizmo and
    /// with still streamlines, so that equal runs give equal pictures. For any thread.
    static PictureScene of(const PictureOptions& options, const std::optional<PreparedModel>& model,
        const Vec3& rotation, const std::optional<SimulationResult>& result);
};

} // namespace ostrella
