#pragma once

#include <QGuiApplication>
#include <QObject>
#include <QQuickWindow>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrella::test {

/// An application object that measures how long the main thread is busy with each event of its
/// loop. Aside are left the drawing of a frame, which is the graphics driver's time, and the time
/// for which other programs had the processor.
class MainThreadWatchdog final : public QGuiApplication {
public:
    using Duration = std::chrono::duration<double, std::milli>;

    /// One turn of the event loop that took long.
    struct Turn {
        Duration busy{};
        std::string event; ///< who got what
    };

    MainThreadWatchdog(int& argc, char** argv);
    ~MainThreadWatchdog() override;
    static MainThreadWatchdog& instance();

    /// Leaves aside what this window takes from the beginning of its drawing to the shown frame.
    void leaveAsideFrames(QQuickWindow& window);

    /// Begins a new measurement.
    void reset();
    /// The longest turns since then, longest first.
    const std::vector<Turn>& longest() const { return longest_; }
    Duration worst() const { return longest_.empty() ? Duration(0) : longest_.front().busy; }
    /// The longest drawing of a frame since then.
    Duration longestDrawing() const { return longestDrawing_; }
    int turnCount() const { return turnCount_; }

    bool notify(QObject* receiver, QEvent* event) override;

private:
    static constexpr std::size_t keptTurns = 8;

    /// Time of the main thread without what other programs took of it.
    Duration now() const;

    int schedulerFile_ = -1;
    int depth_ = 0;
    Duration drawing_{};
    Duration longestDrawing_{};
    Duration drawingBegan_{};
    int turnCount_ = 0;
    std::vector<Turn> longest_;
};

} // namespace ostrella::test
