#pragma once

#include "Models/Timers.h"
#include "Update/UpdateAlert.h"
#include "Update/UpdateGate.h"
#include "Update/Updater.h"

#include <QObject>

#include <memory>
#include <optional>

namespace ostrella {

class LogStore;
class SimulationController;

/// Owns the updater, which nobody else drives, and stands between it and a run: no question is
/// asked and the application is not started anew while one goes on, and no update that came
/// meanwhile is lost. Made once, for the life of the process. Main thread only.
class UpdateController final : public QObject {
    Q_OBJECT
    /// The updater was started.
    Q_PROPERTY(bool isStarted READ isStarted NOTIFY isStartedChanged)
    /// The state of "Check for Updates…".
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(bool automaticallyChecksForUpdates READ automaticallyChecksForUpdates WRITE
            setAutomaticallyChecksForUpdates NOTIFY automaticallyChecksForUpdatesChanged)

public:
    /// The updater is not started yet. `timers` outlives the controller.
    UpdateController(std::unique_ptr<Updater> updater, TimerService& timers, AskUser ask,
        QObject* parent = nullptr);
    ~UpdateController() override;

    /// Whose runs are not to be disturbed, and where updates are told of; held weakly.
    void attach(SimulationController& simulation, LogStore& log);
    /// Starts the updater 10 seconds from now, when the application has settled.
    void startAfterLaunch();
    /// What the user asks for by menu or button: a check, or the offer to restart where an update
    /// lies ready.
    void checkForUpdates();

    bool isStarted() const { return isStarted_; }
    bool canCheckForUpdates() const { return canCheckForUpdates_; }
    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool automatically);

    const UpdateGate& gate() const { return gate_; }

Q_SIGNALS:
    void isStartedChanged();
    void canCheckForUpdatesChanged();
    void automaticallyChecksForUpdatesChanged();

private:
    void startNow();
    void readUpdaterState();
    /// Takes in what the updater can do, Sparkle or another.
    void sparkleStateChanged(bool canCheck, bool inSession);
    void runPhaseChanged(bool isRunning);
    void runEnded();
    void offerRestart();
    void restartAnswered(bool first);
    void setStarted(bool started);

    TimerService& timers_;
    AskUser ask_;
    /// Outlives the updater, whose delegate it is.
    UpdateGate gate_;
    std::unique_ptr<Updater> updater_;
    bool isStarted_ = false;
    bool canCheckForUpdates_ = true;
    /// The user asked for a check before the updater was ready.
    bool pendingManualCheck_ = false;
    /// The question is on show.
    bool isAsking_ = false;
    /// The delayed start; a shared one, so that an action under way can tell that it was withdrawn.
    std::shared_ptr<Timer> startTask_;
    std::optional<QMetaObject::Connection> runObserver_;
    bool wasRunning_ = false;
};

} // namespace ostrella
