// How long a frame of the shaded look takes on the device, after the first: the counterpart of
// ostrella-vtk-picture. Seconds, the median.

#include "Rendering/MetalRenderer.h"
#include "Rendering/OffscreenDevice.h"
#include "Rendering/RhiScene.h"
#include "Solver/Geometry/STLParser.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <glm/geometric.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string_view>
#include <vector>

using namespace ostrella;

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: ostrella-frame-time MODEL.stl SAMPLES FRAMES [glass]\n", stderr);
        return EXIT_FAILURE;
    }
    constexpr int width = 1200;
    constexpr int height = 800;
    const QGuiApplication application(argc, argv);
    const auto device = OffscreenDevice::create(OffscreenDevice::Backend::openGL);
    if (!device) {
        std::fputs("There is no OpenGL 4.3 here.\n", stderr);
        return EXIT_FAILURE;
    }
    QRhi& rhi = device->rhi();
    MetalRenderer renderer([] { return 0.0; });
    renderer.glassBeforeRun = argc > 4 && argv[4] == std::string_view("glass");
    renderer.showGrid = false;
    renderer.drawableSizeWillChange({width, height}, {width, height});
    renderer.upload(STLParser::parse(argv[1]));
    renderer.reframe(false);
    // As far away as VTK's camera is from a body, for the same number of pixels.
    constexpr float angle = std::numbers::pi_v<float> / 12;
    const BoundingBox& box = renderer.contents().meshBounds;
    renderer.camera.distance = 0.5F * glm::distance(box.min, box.max) / std::sin(angle) *
                               std::tan(angle) / std::tan(0.5F * renderer.camera.fovY);
    RhiScene scene(rhi);
    RhiTarget target(rhi, {width, height}, std::atoi(argv[2]));
    std::vector<double> times;
    const int frames = std::atoi(argv[3]);
    for (int i = 0; i <= frames; ++i) {
        const auto start = std::chrono::steady_clock::now();
        renderer.camera.azimuth += std::numbers::pi_v<float> / 180;
        const FrameEncoding frame = renderer.encodeScene({width, height}, 0.0, false);
        QRhiCommandBuffer* commands = nullptr;
        if (rhi.beginOffscreenFrame(&commands) != QRhi::FrameOpSuccess)
            return EXIT_FAILURE;
        scene.render(*commands, target, frame, renderer.buffers(), 1.0F);
        if (rhi.endOffscreenFrame() != QRhi::FrameOpSuccess)
            return EXIT_FAILURE;
        rhi.makeThreadLocalNativeContextCurrent();
        QOpenGLContext::currentContext()->functions()->glFinish();
        if (i > 0)
            times.push_back(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    std::printf("%.4f\n", times[times.size() / 2]);
    return EXIT_SUCCESS;
}
