#include "Views/Viewport/ViewportInput.h"

namespace ostrella::ViewportInput {

namespace {

constexpr float angleOfANotch = 120;
constexpr float zoomOfANotch = 3;
constexpr float pointsOfANotch = 40;

/// Trackpads report an angle as well, derived from the points: the points are what was meant.
bool isPrecise(const Scroll& scroll) {
    return scroll.pixels != Vec2(0.0F);
}

} // namespace

float zoomDelta(const Scroll& scroll) {
    return isPrecise(scroll) ? scroll.pixels.y : scroll.angle.y * (zoomOfANotch / angleOfANotch);
}

Vec2 panDelta(const Scroll& scroll) {
    return isPrecise(scroll) ? scroll.pixels : scroll.angle * (pointsOfANotch / angleOfANotch);
}

} // namespace ostrella::ViewportInput
