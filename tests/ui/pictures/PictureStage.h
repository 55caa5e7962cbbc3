#pragma once

#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Platform/DesktopAppearance.h"
#include "Views/MainWindow.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/RealInput.h"
#include "support/Wait.h"

#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class QQuickItem;

namespace ostrella::test {

/// The application with its window on a display server, brought into states without a mesher or a
/// solver: results come from recorded runs. Its time of day and its animations stand still between
/// the steps, so that two pictures of a state are alike.
class PictureStage {
public:
    /// What a recorded run is said to have been.
    struct RecordedRun {
        std::string folder;
        SolverRunner::SolveOutcome outcome;
        std::int64_t cells = 0;
        int maxIterations = 200;
        /// 2 of the built-in aerofoil, which has no mesher either.
        int dimensions = 3;
    };

    PictureStage();
    ~PictureStage();

    WindowModel& model() { return window_->model(); }
    MainWindow& window() { return *window_; }
    RealInput& user() { return *user_; }

    /// Also below what the window asks of a screen that has the room.
    void resize(QSize size);
    void setTextScale(double scale);
    void setDark(bool dark);

    /// Loads a sample of the package, as a file of another name where one is given, and waits
    /// until everything is known of it.
    void load(const std::string& sample, const std::string& fileName = {});
    /// A run that goes on: so many rows of a recorded history have come, one every `seconds`.
    void pretendRun(const RecordedRun& run);
    void feedHistory(const RecordedRun& run, int rows, double seconds);
    /// The first rows of a recorded history as lines of the solver's own output.
    void feedSolverLines(const RecordedRun& run, int rows);
    /// The run under way ends with the recorded result, or with an error.
    void finishRun(const RecordedRun& run);
    void failRun(const std::exception_ptr& error);

    /// A visible item of the window by its class and its text; null where there is none.
    QQuickItem* item(const char* className, const QString& text) const;
    /// Its centre, in points of the window.
    static QPointF centre(const QQuickItem& item);
    /// Moves the pointer over the scene until it is on a ring; false if it finds none.
    bool hoverRing(OrientationAxis axis);
    /// Waits for a tool tip to show.
    void waitForHelp();

    /// The settings, with this tab, and the about window or the acknowledgements over it: from now
    /// on the picture is of them.
    void showSettings(const QString& tab);
    void showAbout();
    void showAcknowledgements();

    /// Lets everything come to rest, and gives what the window shows.
    void settle();
    QImage picture();

private:
    void drawAnew();
    /// What tells the time anew every second does so.
    void tick();

    TemporaryDirectory directory_;
    MemoryPreferences preferences_;
    ManualClock clock_;
    ManualTimers timers_;
    double mediaTime_ = 0;

public:
    OstrellaApp app;

private:
    DesktopAppearance appearance_;
    std::unique_ptr<MainWindow> window_;
    std::optional<RealInput> user_;
    QPointer<QQuickWindow> beside_;
    std::int64_t runID_ = 0;
};

} // namespace ostrella::test
