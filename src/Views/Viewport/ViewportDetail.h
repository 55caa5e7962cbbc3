#pragma once

#include "Rendering/RhiTarget.h"

#include <chrono>

namespace ostrella {

/// How finely an animation is drawn: where the device is too slow for thirty frames a second, its
/// edges are left jagged as long as it moves.
class ViewportDetail {
public:
    using Duration = std::chrono::duration<double, std::milli>;
    static constexpr Duration tooSlow{1000.0 / 30};
    /// Smooth edges take about three times as long.
    static constexpr Duration quick{8};
    static constexpr int slowFrames = 6;   ///< in a row, before edges become jagged
    static constexpr int quickFrames = 60; ///< in a row, before they are smooth again

    /// Samples a pixel of the animation's next frame, at most.
    int samples() const { return isCoarse_ ? 1 : RhiTarget::preferredSamples; }

    /// A frame of the animation is there, after so long.
    void frameTook(Duration time) {
        const bool speaksForChange = isCoarse_ ? time < quick : time > tooSlow;
        inARow_ = speaksForChange ? inARow_ + 1 : 0;
        if (inARow_ == (isCoarse_ ? quickFrames : slowFrames)) {
            isCoarse_ = !isCoarse_;
            inARow_ = 0;
        }
    }

private:
    bool isCoarse_ = false;
    int inARow_ = 0;
};

} // namespace ostrella
