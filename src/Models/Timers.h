#pragma once

#include "Models/Cancellation.h"

#include <chrono>
#include <functional>

namespace ostrella {

/// Keeps an action of a TimerService waiting; the destructor withdraws it. An action that runs
/// already is not waited for, so it must own what it touches.
class Timer {
public:
    Timer() = default;
    explicit Timer(std::function<void()> withdraw);
    Timer(Timer&& other) noexcept;
    Timer& operator=(Timer&& other) noexcept;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    /// Withdraws the action if it has not begun.
    void cancel() noexcept;
    /// Lets the action come when its time has come, whatever becomes of this object.
    void detach() noexcept;

private:
    std::function<void()> withdraw_;
};

/// Performs actions later; handed in, so that a test moves the time by hand. Safe on every thread.
class TimerService {
public:
    virtual ~TimerService() = default;

    /// Calls `action` once on a background thread when `delay` has passed. Actions share that
    /// thread: they are brief and do not throw.
    [[nodiscard]] virtual Timer after(
        std::chrono::duration<double> delay, std::function<void()> action) = 0;

    /// Puts the calling worker to sleep. False if the cancellation cut it short or had come before.
    virtual bool sleep(std::chrono::duration<double> duration, const CancellationToken& token);

    /// Real time: one background thread, alive as long as the process.
    static TimerService& system();
};

} // namespace ostrella
