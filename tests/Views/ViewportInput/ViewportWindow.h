#pragma once

#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Rendering/MetalRenderer.h"
#include "Views/Viewport/ViewportItem.h"
#include "support/RealInput.h"

#include <QPointF>
#include <QQuickWindow>

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ostrella::test {

/// Counts the keys that reach it.
class KeyCounter final : public QQuickItem {
public:
    int count = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

/// The viewport in a window of 400 × 300 points with the sphere of the samples in it, which has a
/// radius of 1 m about the origin, and a user in front of it. The media clock stands still until
/// a test moves it.
///
/// Where things are, by hand, in points of the window from its upper left corner: the sphere is a
/// disc in the middle. In orient mode the camera backs off to 3.4239 times the radius of the ball
/// around the model's box; a point p of a ring then stands at
///   (200 + k (p·r) / z, 150 − k (p·u) / z),  k = 150 / tan 22.5° = 362.13,  z = distance − p·b
/// with r = (0.7071, 0, −0.7071), u = (−0.3789, 0.8443, −0.3789) and b = (0.5970, 0.5358, 0.5970)
/// pointing right, up and to the eye.
class ViewportWindow : public testing::Test {
protected:
    ViewportWindow();
    ~ViewportWindow() override;

    /// A sample by its name, as the application loads it.
    void load(const std::string& sample);
    /// Moves the media clock past every tween and waits for the frame that sees it.
    void finishTweens();
    /// Moves the media clock and waits for a frame that sees it; frames have to follow one another.
    void advance(double seconds);

    /// Window and item; waits until both are of that size.
    void resizeTo(int width, int height);

    /// By a click on the model; returns when the camera stands still.
    void enterOrientMode();
    /// Takes the ring of the z axis, which faces the viewer, and leaves the button down.
    void takeZRing();
    /// Where a pointer that holds the z ring at `onZRing` is after a turn about the ring's centre,
    /// counter-clockwise; whole points, so that the angle is that of the point that is returned.
    static QPointF around(double degrees);
    /// The angle from `onZRing` to a point about the ring's centre, counter-clockwise, degrees.
    static double angleTo(QPointF point);

    /// Metres at the camera's target for a point of the view.
    double metresPerPoint() const;
    /// Where the target is after it was moved by so many points to the right and up on the screen.
    Vec3 targetAfter(double right, double up) const;

    /// A frame is drawn after so many; waits for it.
    bool drawsMoreThan(std::uint64_t frames) const;
    Qt::CursorShape cursor() const { return window->cursor().shape(); }
    Vec3 rotation() const;

    /// The camera as loading has left it, or as a test has noted it since.
    void noteCamera() { before = renderer().camera; }
    bool cameraMoved() const { return renderer().camera != before; }
    float azimuthMoved() const { return renderer().camera.azimuth - before.azimuth; }
    float elevationMoved() const { return renderer().camera.elevation - before.elevation; }
    float zoomed() const { return renderer().camera.distance / before.distance; }

    MetalRenderer& renderer() const { return item->coordinator()->renderer(); }
    ArcBallMTKView& view() const { return item->coordinator()->view(); }

    double now = 100;
    std::optional<SimulationParameters> parameters{std::in_place};
    std::optional<RenderSettings> settings{std::in_place};
    std::unique_ptr<QQuickWindow> window;
    ViewportItem* item = nullptr; ///< fills the window, which owns it
    std::optional<RealInput> user;
    ArcBallCamera before;

    static constexpr QPointF onBody{200, 150};
    static constexpr QPointF besideBody{10, 10};
    static constexpr QPointF outside{-40, -40};
    // Of each ring, a point in iso pose that is more than twice the tolerance from the others:
    // 135° from y to z, 120° from z to x and 315° from x to y.
    static constexpr QPointF onXRing{138, 257};
    static constexpr QPointF onYRing{327, 168};
    static constexpr QPointF onZRing{262, 257};
    static constexpr QPointF ringCentre{200, 150};
};

} // namespace ostrella::test
