#include "Batch/PictureScene.h"

#include "Rendering/MetalRenderer.h"

#include <algorithm>
#include <utility>

namespace ostrella {

PictureScene PictureScene::of(const PictureOptions& options,
    const std::optional<PreparedModel>& model, const Vec3& rotation,
    const std::optional<SimulationResult>& result) {
    const Vec2 pixels(static_cast<float>(options.width), static_cast<float>(options.height));
    MetalRenderer renderer([] { return 0.0; });
    renderer.flowAnimation = false;
    renderer.colormapEnabled = options.layers.cp;
    renderer.streamlinesEnabled = options.layers.streams;
    renderer.vortexEnabled = options.layers.vortex;
    renderer.showGrid = options.layers.grid;
    renderer.glassBeforeRun = !options.shaded;
    renderer.wireframe = options.layers.wireframe;
    renderer.setModelRotation(rotation);
    // A view of one point is none yet to the camera, which would wait for another.
    renderer.drawableSizeWillChange(pixels, {std::max(pixels.x, 2.0F), std::max(pixels.y, 2.0F)});
    if (model) {
        renderer.upload(*model);
    }
    if (result) {
        if (result->surfaceField) {
            renderer.uploadSurface(*result->surfaceField);
        }
        if (result->streamlines) {
            renderer.uploadStreamlines(*result->streamlines);
        }
        if (result->vortex) {
            renderer.uploadVortex(*result->vortex);
        }
    }
    renderer.reframe(false);
    renderer.applyPreset(options.view, false);

    PictureScene scene;
    scene.frame = renderer.encodeScene(pixels, 0.0, false);
    scene.width = options.width;
    scene.height = options.height;
    scene.samples = options.samples;
    const auto take = [&](SceneBuffer buffer) {
        scene.buffers.replace(buffer, renderer.buffers()[buffer].bytes);
    };
    for (const DrawCommand& draw : scene.frame.draws) {
        take(draw.vertices);
        if (draw.indices) {
            take(*draw.indices);
        }
    }
    return scene;
}

} // namespace ostrella
