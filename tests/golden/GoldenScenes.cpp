#include "golden/GoldenScenes.h"

#include "golden/GoldenBodies.h"

#include <numbers>
#include <vector>

namespace ostrella::golden {

namespace {

constexpr float degree = std::numbers::pi_v<float> / 180;

void look(MetalRenderer& r, float azimuth, float elevation, float closer = 1) {
    r.camera.azimuth = azimuth * degree;
    r.camera.elevation = elevation * degree;
    r.camera.distance *= closer;
}

void model(MetalRenderer& r) {
    r.upload(vehicle());
}

void turning(MetalRenderer& r) {
    model(r);
    r.orientMode = true;
    r.setModelRotation({0, -24 * degree, 0});
    r.refitAfterOrienting();
    r.camera.distance *= 1.35F;
    r.cancelCameraTween();
}

void result(MetalRenderer& r) {
    r.upload(ball());
    r.uploadSurface(ballPressure());
    r.uploadStreamlines(ballFlow());
    r.uploadVortex(trailingVortices());
    r.reframe(false);
    look(r, -35, 18, 1.15F);
}

void ribbons(MetalRenderer& r) {
    result(r);
    r.colormapEnabled = true;
    r.streamlinesEnabled = true;
}

void preset(MetalRenderer& r, ViewPreset preset) {
    model(r);
    r.applyPreset(preset, false);
}

std::vector<Picture> all() {
    return {
        {"empty", [](MetalRenderer&) {}},
        {"glass", model},
        {"glass-2x", model, 2},
        {"wireframe",
            [](MetalRenderer& r) {
                model(r);
                r.wireframe = true;
            }},
        {"orient",
            [](MetalRenderer& r) {
                turning(r);
                r.hoveredRing = OrientationAxis::y;
            }},
        {"orient-dragged",
            [](MetalRenderer& r) {
                turning(r);
                r.activeRing = OrientationAxis::z;
            }},
        {"shaded",
            [](MetalRenderer& r) {
                model(r);
                r.uploadVortex(trailingVortices());
            }},
        {"surface",
            [](MetalRenderer& r) {
                result(r);
                r.colormapEnabled = true;
            }},
        {"segments",
            [](MetalRenderer& r) {
                r.uploadSurface(aerofoilPressure());
                r.colormapEnabled = true;
                r.reframe(false);
                look(r, 0, 0);
            }},
        {"ribbons-still",
            [](MetalRenderer& r) {
                ribbons(r);
                r.flowAnimation = false;
            }},
        {"ribbons-early", ribbons, 1, 0.31},
        {"ribbons-late", ribbons, 1, 2.84},
        {"vortex",
            [](MetalRenderer& r) {
                result(r);
                r.vortexEnabled = true;
            }},
        {"all-layers",
            [](MetalRenderer& r) {
                ribbons(r);
                r.vortexEnabled = true;
                r.orientMode = true;
            },
            1, 1.7},
        {"gizmo-iso", [](MetalRenderer& r) { preset(r, ViewPreset::iso); }, 3},
        {"gizmo-front", [](MetalRenderer& r) { preset(r, ViewPreset::front); }, 3},
        {"gizmo-side", [](MetalRenderer& r) { preset(r, ViewPreset::side); }, 3},
        {"gizmo-top", [](MetalRenderer& r) { preset(r, ViewPreset::top); }, 3},
        {"gizmo-towards",
            [](MetalRenderer& r) {
                preset(r, ViewPreset::front);
                r.freeStream = Vec3(-1, 0, 0);
            },
            3},
        {"gizmo-away",
            [](MetalRenderer& r) {
                preset(r, ViewPreset::side);
                r.freeStream = Vec3(0, 0, -1);
            },
            3},
    };
}

} // namespace

std::span<const Picture> pictures() {
    static const std::vector<Picture> known = all();
    return known;
}

Scene::Scene(const Picture& picture) : renderer([this] { return now; }) {
    const Vec2 pixels(width, height);
    renderer.drawableSizeWillChange(pixels, pixels / picture.pointScale);
    picture.prepare(renderer);
    frame = renderer.encodeScene(pixels, now + picture.time, true);
}

} // namespace ostrella::golden
