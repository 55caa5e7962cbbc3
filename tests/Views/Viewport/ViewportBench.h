#pragma once

#include "Models/RenderSettings.h"
#include "Models/RunState.h"
#include "Models/SimulationParameters.h"
#include "Views/Viewport/ArcBallMTKView.h"
#include "Views/Viewport/ViewportCoordinator.h"

#include <gmock/gmock.h>

#include <string>

namespace ostrella::test {

/// The twelve facets of a box, m.
TriangleMesh boxMesh(const Vec3& low, const Vec3& high);
/// A result whose surface is one triangle with these extremes.
SimulationResult resultAt(const std::string& runDirectory, const Vec3& low, const Vec3& high);
/// Two lines of three vertices along a box's diagonal.
Streamlines diagonalLines(const Vec3& low, const Vec3& high);
/// One triangle of a vortex.
IsoSurface smallVortex();

/// The viewport's renderer, view and coordinator with the shared objects that drive them, in a view
/// of 400 × 300 points on a display of two pixels a point. The box on show reaches 1 m to each side
/// of the origin, so that (200, 150) is on it and (5, 5) is not.
class ViewportBench : public testing::Test {
protected:
    ViewportBench();

    /// Lets everything that is queued for the main thread happen.
    static void turn();
    void load(const TriangleMesh& mesh, const std::string& file = "box.stl");
    void loadBox();
    /// Moves the media clock past every tween, and lets a frame see it.
    void finishTweens();

    void press(Vec2 point, ViewportInput::Modifiers modifiers = {},
        ViewportInput::Button button = ViewportInput::Button::left, int clickCount = 1);
    void drag(Vec2 point, ViewportInput::Modifiers modifiers = {},
        ViewportInput::Button button = ViewportInput::Button::left);
    void release(Vec2 point, ViewportInput::Button button = ViewportInput::Button::left);
    void hover(Vec2 point);
    void click(Vec2 point);

    /// Turns orient mode on in the settings and waits until the camera stands still.
    void enterOrientMode();
    /// A point of the view on this ring and on no other.
    Vec2 pointOn(OrientationAxis ring);
    /// The distance from which a sphere of this radius (m) fills nine tenths of a view of this
    /// share of its height.
    static float distanceFor(float radius, float share = 1);
    /// Where the middle of the rings is in the view.
    Vec2 ringCentre();

    double now = 100;
    SimulationParameters parameters;
    RenderSettings settings;
    ViewportCoordinator coordinator;
    MetalRenderer& renderer = coordinator.renderer();
    ArcBallMTKView& view = coordinator.view();
    int redraws = 0;

    static constexpr Vec2 onBox{200, 150};
    static constexpr Vec2 besideBox{5, 5};
    static constexpr ViewportInput::Modifiers shift{true, false};
    static constexpr ViewportInput::Modifiers option{false, true};
};

} // namespace ostrella::test
