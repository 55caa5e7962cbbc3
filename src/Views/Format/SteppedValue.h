#pragma once

namespace ostrella {

/// Values that are changed by steps and held in a range.
namespace SteppedValue {

/// A closed range of whole numbers, and how far one step goes.
struct Counts {
    int from = 0;
    int to = 0;
    int step = 1;

    /// The value so many steps up, or down where that is negative, held in the range.
    int stepped(int value, int steps) const;
    /// Whether that differs from the value.
    bool canStep(int value, int steps) const;
};

/// The same of real numbers.
struct Factors {
    double from = 0;
    double to = 0;
    double step = 1;

    double stepped(double value, int steps) const;
    /// The value held in the range; its lower bound where the value isn't a number.
    double inRange(double value) const;
    /// The nearest value of the range that lies a whole number of steps from its lower bound, free
    /// of the noise of adding steps up.
    double snapped(double value) const;
};

} // namespace SteppedValue

} // namespace ostrella
