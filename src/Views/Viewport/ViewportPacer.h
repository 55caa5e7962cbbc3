#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace ostrella {

/// Asks for the frames of an animation, sixty a second and never more: each is due a sixtieth of a
/// second after the one before, and asked for only when that has been drawn. A slow device gets
/// fewer, not a queue of them. Main thread only.
class ViewportPacer {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::nanoseconds interval{1'000'000'000 / 60 + 1};

    /// `askForFrame` is called when a frame is due.
    explicit ViewportPacer(std::function<void()> askForFrame);

    bool isRunning() const { return isRunning_; }
    /// A frame is asked for at once when it starts to run.
    void setRunning(bool running);
    /// The frame has been drawn that was asked for, or another one.
    void frameWasDrawn();

private:
    void ask();

    std::function<void()> askForFrame_;
    QTimer timer_;
    bool isRunning_ = false;
    Clock::time_point due_; ///< of the latest frame that was asked for
};

} // namespace ostrella
