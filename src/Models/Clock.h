#pragma once

#include <chrono>

namespace ostrella {

/// A moment of wall-clock time.
using Date = std::chrono::system_clock::time_point;

/// Where the time comes from; handed in, so that a test can set it. May be asked on any thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Date now() const = 0;

    /// The machine's clock, alive as long as the process.
    static const Clock& system();
};

/// Seconds from `start` to `end`.
inline double secondsBetween(Date start, Date end) {
    return std::chrono::duration<double>(end - start).count();
}

} // namespace ostrella
