#pragma once

#include "Models/Vector.h"

namespace ostrella {

/// The events that the viewport acts on, free of any toolkit. Positions are view points from the
/// lower left corner, y up.
namespace ViewportInput {

struct Modifiers {
    bool shift = false;
    bool option = false; ///< the Alt key

    /// Either one turns an orbit or a zoom into a pan.
    bool pans() const { return shift || option; }
};

enum class Button { left, right, other };

/// The buttons that are held.
struct Buttons {
    bool left = false;
    bool right = false;
    bool other = false;

    bool any() const { return left || right || other; }
};

/// A press, a move or a release.
struct Pointer {
    Vec2 point{0.0F};
    Button button = Button::left; ///< of a press or a release
    Buttons buttons;              ///< of a move
    int clickCount = 1;           ///< of a press: 2 for a double click
    Modifiers modifiers;
};

/// A turn of a wheel or a stroke over a trackpad. Positive: the content moves to the right and
/// down, a wheel turns away from the user.
struct Scroll {
    Vec2 pixels{0.0F}; ///< of a trackpad, points; zero where the device does not report them
    Vec2 angle{0.0F};  ///< of a wheel, eighths of a degree: 120 a notch
    Modifiers modifiers;
};

/// Two fingers spread or brought together: `magnification` is the growth asked for since the last
/// event, 0.1 for a tenth.
struct Pinch {
    float magnification = 0;
};

enum class Key { escape, other };

enum class Cursor { arrow, pointingHand, openHand, closedHand };

/// How far a scroll reaches when it zooms: a trackpad's points as they are, and three for a notch,
/// which brings the eye about a seventh nearer.
float zoomDelta(const Scroll& scroll);
/// How far a scroll reaches when it pans, in points: forty for a notch.
Vec2 panDelta(const Scroll& scroll);

} // namespace ViewportInput

} // namespace ostrella
