#include "Views/Viewport/ViewportPacer.h"

#include <algorithm>
#include <utility>

namespace ostrella {

ViewportPacer::ViewportPacer(std::function<void()> askForFrame)
    : askForFrame_(std::move(askForFrame)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { ask(); });
}

void ViewportPacer::setRunning(bool running) {
    if (running == std::exchange(isRunning_, running))
        return;
    timer_.stop();
    if (running)
        frameWasDrawn();
}

void ViewportPacer::frameWasDrawn() {
    if (!isRunning_ || timer_.isActive())
        return;
    // In step with the frames before, unless it is too late for that.
    const Clock::time_point now = Clock::now();
    due_ = std::max(due_ + interval, now);
    timer_.start(std::chrono::ceil<std::chrono::milliseconds>(due_ - now));
}

void ViewportPacer::ask() {
    askForFrame_();
}

} // namespace ostrella
