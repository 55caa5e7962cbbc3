#pragma once

#include "Models/Timers.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace ostrella::test {

/// Time that stands still until a test moves it. Actions run on the thread that moves the time, and
/// sleepers wake then. Must outlive whoever holds a timer of it.
class ManualTimers final : public TimerService {
public:
    [[nodiscard]] Timer after(
        std::chrono::duration<double> delay, std::function<void()> action) override;

    /// Moves the time on by `seconds` and performs what falls due on the way, in the order of the
    /// times, including what is asked for meanwhile.
    void advance(double seconds);

    /// Seconds from now until each waiting action, soonest first. A test waits until a worker has
    /// asked for its timer by waiting until this is no longer empty.
    std::vector<double> pending() const;

    /// Seconds since the beginning.
    double now() const;

private:
    using Key = std::pair<double, std::uint64_t>;

    mutable std::mutex mutex_;
    double now_ = 0;
    std::uint64_t lastID_ = 0;
    std::map<Key, std::function<void()>> actions_;
};

} // namespace ostrella::test
