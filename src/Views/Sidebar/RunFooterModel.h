#pragma once

#include "Models/Clock.h"
#include "Models/IterationRate.h"
#include "Models/Timers.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/Format/SidebarFormat.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>

namespace ostrella {

struct PlatformWords;

/// The foot of the sidebar: the way to start a run and what the last one gave, or how far the
/// present one is. Main thread only.
class RunFooterModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    /// The fixed texts of SidebarText by name.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)

    /// True while a run is under way: the progress block stands in place of the run controls.
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY changed)

    /// Progress.
    Q_PROPERTY(QString progressTitle READ progressTitle NOTIFY changed)
    Q_PROPERTY(QString progressDetail READ progressDetail NOTIFY changed)
    /// From 0 to 1.
    Q_PROPERTY(double progressFraction READ progressFraction NOTIFY changed)
    /// "42 percent, 1 min 15 s elapsed".
    Q_PROPERTY(QString progressValue READ progressValue NOTIFY changed)

    /// Run controls. What is empty is left out. The summary is "Last run" and its parts, each of
    /// them with the separator in front.
    Q_PROPERTY(QString summaryHead READ summaryHead NOTIFY changed)
    Q_PROPERTY(QString summaryParts READ summaryParts NOTIFY changed)
    Q_PROPERTY(QString stateText READ stateText NOTIFY changed)
    /// "good", "caution", "failure" or "muted".
    Q_PROPERTY(QString stateTone READ stateTone NOTIFY changed)
    Q_PROPERTY(bool canRun READ canRun NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    /// Name of the symbol before the hint, if it has one.
    Q_PROPERTY(QString hintSymbol READ hintSymbol NOTIFY changed)
    /// A spinner stands before the hint.
    Q_PROPERTY(bool hintIsBusy READ hintIsBusy NOTIFY changed)

public:
    RunFooterModel(const SharedObjects& shared, const PlatformWords& words,
        const Clock& clock = Clock::system(), TimerService& timers = TimerService::system(),
        QObject* parent = nullptr);

    QVariantMap texts() const { return texts_; }

    bool showsProgress() const;
    QString progressTitle() const;
    QString progressDetail() const;
    double progressFraction() const;
    QString progressValue() const;

    QString summaryHead() const;
    QString summaryParts() const;
    QString stateText() const;
    QString stateTone() const;
    bool canRun() const;
    QString hint() const;
    QString hintSymbol() const;
    bool hintIsBusy() const;

    Q_INVOKABLE void run();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    /// At most once per turn of the event loop.
    void changed();

private:
    void phaseChanged();
    void recordIteration();
    void tick();
    std::optional<std::int64_t> iteration() const;
    std::optional<SidebarFormat::StateLine> stateLine() const;
    std::optional<SidebarFormat::Hint> currentHint() const;

    SharedObjects shared_;
    const Clock& clock_;
    TimerService& timers_;
    QVariantMap texts_;
    bool wasActive_ = false;
    std::optional<std::int64_t> recorded_;
    IterationRate rate_;
    /// Moment of the last tick of the timeline.
    Date now_;
    Timer timer_;
    QueuedUpdate update_;
};

} // namespace ostrella
