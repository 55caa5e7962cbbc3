#include "Solver/Tools/TimeLimit.h"

#include <chrono>

namespace ostrella {

TimeLimit::TimeLimit(
    const CancellationToken& outer, std::optional<double> seconds, TimerService& timers)
    : outer_(outer), link_(outer.onCancel([source = source_] { source.cancel(); })) {
    if (seconds) {
        timer_ = timers.after(
            std::chrono::duration<double>(*seconds), [source = source_] { source.cancel(); });
    }
}

} // namespace ostrella
