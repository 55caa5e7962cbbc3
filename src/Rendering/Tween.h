#pragma once

#include <algorithm>

namespace ostrella {

/// A value on its way from one to another; times in seconds of the media clock.
template <class Value>
struct Tween {
    Value from;
    Value to;
    double start = 0;
    double duration = 0;

    /// The elapsed share of the duration, 0 to 1; 1 for a tween that takes no time.
    double progress(double time) const {
        return duration > 0 ? std::clamp((time - start) / duration, 0.0, 1.0) : 1.0;
    }
    /// The progress with a cubic ease-out, 1 − (1 − k)³.
    float eased(double time) const {
        const double left = 1.0 - progress(time);
        return static_cast<float>(1.0 - left * left * left);
    }

    bool operator==(const Tween&) const = default;
};

} // namespace ostrella
