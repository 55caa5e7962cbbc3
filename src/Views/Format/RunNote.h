#pragma once

#include "Models/RunState.h"

#include <optional>
#include <string>

namespace ostrella {

/// What the desktop tells a user who was elsewhere when a run came to its end.
struct RunNote {
    std::string title;
    std::string body;

    /// A run that took no longer than this was waited for, s.
    static constexpr double longestWait = 10;

    /// The note of a run that ended in `phase` after so many seconds; nothing if the user knows
    /// already: the window is in front, the run was short, or it was the user who stopped it.
    /// `finishLine` is the closing line of a run that finished.
    static std::optional<RunNote> make(
        const RunPhase& phase, double seconds, bool isInFront, const std::string& finishLine);

    bool operator==(const RunNote&) const = default;
};

} // namespace ostrella
