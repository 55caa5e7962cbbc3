#include "Platform/TaskBarProgress.h"

#include <algorithm>
#include <cmath>

namespace ostrella {

void TaskBarProgress::set(std::optional<double> fraction) {
    std::optional<int> steps;
    if (fraction && !std::isnan(*fraction)) {
        steps = static_cast<int>(std::lround(std::clamp(*fraction, 0.0, 1.0) * stepCount));
    }
    if (steps != steps_) {
        steps_ = steps;
        show();
    }
}

} // namespace ostrella
