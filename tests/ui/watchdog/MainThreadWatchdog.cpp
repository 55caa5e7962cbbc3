#include "MainThreadWatchdog.h"

#include <QEvent>
#include <QMetaEnum>

#include <algorithm>
#include <array>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella::test {

MainThreadWatchdog::MainThreadWatchdog(int& argc, char** argv)
    : QGuiApplication(argc, argv),
      schedulerFile_(open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC)) {}

MainThreadWatchdog::~MainThreadWatchdog() {
    if (schedulerFile_ >= 0) {
        close(schedulerFile_);
    }
}

MainThreadWatchdog& MainThreadWatchdog::instance() {
    return *static_cast<MainThreadWatchdog*>(QCoreApplication::instance());
}

void MainThreadWatchdog::leaveAsideFrames(QQuickWindow& window) {
    const auto begin = [this] { drawingBegan_ = now(); };
    const auto end = [this] {
        const Duration taken = now() - drawingBegan_;
        drawing_ += taken;
        longestDrawing_ = std::max(longestDrawing_, taken);
    };
    // The driver may have to finish the frame before.
    connect(&window, &QQuickWindow::beforeFrameBegin, this, begin, Qt::DirectConnection);
    connect(&window, &QQuickWindow::beforeSynchronizing, this, end, Qt::DirectConnection);
    // What lies between is ours: the items hand over what they show, the viewport and the scene
    // graph hand their buffers to the device, and record what it is to draw. From the window's own
    // pass on, which is the last of the frame, the driver works it off.
    connect(&window, &QQuickWindow::beforeRenderPassRecording, this, begin, Qt::DirectConnection);
    connect(&window, &QQuickWindow::frameSwapped, this, end, Qt::DirectConnection);
}

void MainThreadWatchdog::reset() {
    longest_.clear();
    longestDrawing_ = Duration(0);
    turnCount_ = 0;
}

MainThreadWatchdog::Duration MainThreadWatchdog::now() const {
    const Duration wall = std::chrono::steady_clock::now().time_since_epoch();
    // "run wait slices": nanoseconds on the processor and in the queue for it.
    std::array<char, 128> text{};
    unsigned long long ran = 0;
    unsigned long long waited = 0;
    if (pread(schedulerFile_, text.data(), text.size() - 1, 0) > 0 &&
        std::sscanf(text.data(), "%llu %llu", &ran, &waited) == 2) {
        return wall - std::chrono::nanoseconds(waited);
    }
    return wall;
}

bool MainThreadWatchdog::notify(QObject* receiver, QEvent* event) {
    if (depth_ > 0) {
        return QGuiApplication::notify(receiver, event);
    }
    // The receiver may go with the event.
    const std::string name = receiver->metaObject()->className();
    const QEvent::Type type = event->type();
    drawing_ = Duration(0);
    const Duration began = now();
    ++depth_;
    const bool result = QGuiApplication::notify(receiver, event);
    --depth_;
    const Turn turn{now() - began - drawing_, {}};
    ++turnCount_;
    if (longest_.size() < keptTurns || turn.busy > longest_.back().busy) {
        const char* const word = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        longest_.push_back({turn.busy, name + " got " + (word ? word : std::to_string(type))});
        std::sort(longest_.begin(), longest_.end(),
            [](const Turn& a, const Turn& b) { return a.busy > b.busy; });
        longest_.resize(std::min(longest_.size(), keptTurns));
    }
    return result;
}

} // namespace ostrella::test
