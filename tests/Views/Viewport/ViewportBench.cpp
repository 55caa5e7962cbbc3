#include "Views/Viewport/ViewportBench.h"

#include "Rendering/OrientationRings.h"

#include <QCoreApplication>
#include <QEvent>

#include <array>
#include <cmath>
#include <vector>

namespace ostrella::test {

using ViewportInput::Button;
using ViewportInput::Modifiers;
using ViewportInput::Pointer;

TriangleMesh boxMesh(const Vec3& low, const Vec3& high) {
    const auto corner = [&](int i) {
        return Vec3((i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
            (i & 4) != 0 ? high.z : low.z);
    };
    constexpr std::array<int, 36> corners{0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4, 2,
        6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    std::vector<Vec3> positions;
    for (const int i : corners)
        positions.push_back(corner(i));
    std::vector<Vec3> normals;
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        const Vec3 normal = cross(positions[i + 1] - positions[i], positions[i + 2] - positions[i]);
        normals.insert(normals.end(), 3, normal / std::sqrt(squaredLength(normal)));
    }
    return {std::move(positions), std::move(normals)};
}

SimulationResult resultAt(const std::string& runDirectory, const Vec3& low, const Vec3& high) {
    SimulationResult result;
    result.runDirectory = runDirectory;
    result.surfaceField = SurfaceField({low, high, Vec3(low.x, high.y, low.z)}, {-0.5F, 0.0F, 0.5F},
        "Pressure_Coefficient", {0, 1, 2}, SurfaceField::Primitive::triangle);
    return result;
}

Streamlines diagonalLines(const Vec3& low, const Vec3& high) {
    const Vec3 middle = (low + high) * 0.5F;
    std::vector<float> vertices;
    for (int line = 0; line < 2; ++line) {
        for (const Vec3& p : {low, middle, high})
            vertices.insert(vertices.end(), {p.x, p.y, p.z, 10.0F});
    }
    Streamlines lines;
    lines.interleavedVertices = std::move(vertices);
    lines.indices = {0, 1, 1, 2, 3, 4, 4, 5};
    lines.vertexCount = 6;
    lines.indexCount = 8;
    lines.magnitudeMin = 5;
    lines.magnitudeMax = 15;
    lines.seedCount = 2;
    lines.boundingMin = low;
    lines.boundingMax = high;
    return lines;
}

IsoSurface smallVortex() {
    IsoSurface surface;
    surface.positions = {Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0)};
    surface.normals = {Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
    surface.indices = {0, 1, 2};
    surface.boundingMax = Vec3(1, 1, 0);
    return surface;
}

ViewportBench::ViewportBench() : coordinator(parameters, settings, [this] { return now; }) {
    renderer.drawableSizeWillChange({800, 600}, {400, 300});
    view.onRedraw = [this] { ++redraws; };
}

void ViewportBench::turn() {
    // What is queued may queue more; each round is one turn of the loop.
    for (int round = 0; round < 8; ++round)
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

void ViewportBench::load(const TriangleMesh& mesh, const std::string& file) {
    parameters.setSTLURL(file);
    parameters.setMesh(mesh);
    turn();
}

void ViewportBench::loadBox() {
    load(boxMesh(Vec3(-1), Vec3(1)));
}

void ViewportBench::finishTweens() {
    now += 10;
    renderer.draw();
    view.agreeWithRenderer();
}

void ViewportBench::press(Vec2 point, Modifiers modifiers, Button button, int clickCount) {
    Pointer event;
    event.point = point;
    event.button = button;
    event.clickCount = clickCount;
    event.modifiers = modifiers;
    view.pressed(event);
}

void ViewportBench::drag(Vec2 point, Modifiers modifiers, Button button) {
    Pointer event;
    event.point = point;
    event.buttons = {button == Button::left, button == Button::right, button == Button::other};
    event.modifiers = modifiers;
    view.moved(event);
}

void ViewportBench::release(Vec2 point, Button button) {
    Pointer event;
    event.point = point;
    event.button = button;
    view.released(event);
}

void ViewportBench::hover(Vec2 point) {
    Pointer event;
    event.point = point;
    view.moved(event);
}

void ViewportBench::click(Vec2 point) {
    press(point);
    release(point);
}

void ViewportBench::enterOrientMode() {
    settings.setOrientMode(true);
    turn();
    finishTweens();
}

float ViewportBench::distanceFor(float radius, float share) {
    const float tangent = share * 0.9F * std::tan(3.1415925F / 8);
    return radius * std::sqrt(tangent * tangent + 1) / tangent;
}

Vec2 ViewportBench::ringCentre() {
    const ScreenProjector projector{
        renderer.camera.projection(4.0F / 3.0F) * renderer.camera.viewMatrix(), {400, 300}};
    return projector.project(renderer.placement().centre).value();
}

Vec2 ViewportBench::pointOn(OrientationAxis ring) {
    // The rings of a box of 2 m stand 1.15 times half its diagonal from its centre.
    const ScreenProjector projector{
        renderer.camera.projection(4.0F / 3.0F) * renderer.camera.viewMatrix(), {400, 300}};
    for (const Vec3& p :
        OrientationRings::points(ring, renderer.placement().centre, 1.15F * std::sqrt(3.0F), 16)) {
        const auto seen = projector.project(p);
        if (seen && renderer.ringHit(*seen) == ring)
            return *seen;
    }
    ADD_FAILURE() << "no point of the ring can be told from the others";
    return {};
}

} // namespace ostrella::test
