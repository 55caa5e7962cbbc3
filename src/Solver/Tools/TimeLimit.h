#pragma once

#include "Models/Cancellation.h"
#include "Models/Timers.h"

#include <optional>

namespace ostrella {

/// A token for work that may be cancelled and may take only so long: it is cancelled with another
/// one, or when the time has passed.
class TimeLimit {
public:
    /// `seconds` from now; none for no limit.
    TimeLimit(const CancellationToken& outer, std::optional<double> seconds, TimerService& timers);

    CancellationToken token() const { return source_.token(); }
    /// Of work that left with a CancellationError: whether that was for the time alone.
    bool isOver() const { return source_.isCancelled() && !outer_.isCancelled(); }

private:
    CancellationToken outer_;
    CancellationSource source_;
    CancellationRegistration link_;
    Timer timer_;
};

} // namespace ostrella
