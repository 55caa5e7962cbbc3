#include "Update/UpdateController.h"

#include "Models/LogStore.h"
#include "Models/MainThread.h"
#include "Solver/Run/SimulationController.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace ostrella {

namespace {

constexpr std::chrono::seconds startDelay{10};

} // namespace

UpdateController::UpdateController(
    std::unique_ptr<Updater> updater, TimerService& timers, AskUser ask, QObject* parent)
    : QObject(parent), timers_(timers), ask_(std::move(ask)), updater_(std::move(updater)) {
    gate_.onFoundUpdate = [this] { pendingManualCheck_ = false; };
    gate_.onPostponed = [this] { readUpdaterState(); };
    updater_->setDelegate(&gate_);
    // At the next turn of the event loop: the updater may be in the middle of its change.
    connect(updater_.get(), &Updater::canCheckForUpdatesChanged, this,
        &UpdateController::readUpdaterState, Qt::QueuedConnection);
    connect(updater_.get(), &Updater::sessionInProgressChanged, this,
        &UpdateController::readUpdaterState, Qt::QueuedConnection);
    connect(updater_.get(), &Updater::automaticallyChecksForUpdatesChanged, this,
        &UpdateController::automaticallyChecksForUpdatesChanged);
}

UpdateController::~UpdateController() {
    updater_->setDelegate(nullptr);
}

void UpdateController::attach(SimulationController& simulation, LogStore& log) {
    gate_.isRunning = [observed = QPointer<SimulationController>(&simulation)] {
        return observed && observed->phase().isActive();
    };
    gate_.log = &log;
    if (runObserver_) {
        return;
    }
    wasRunning_ = simulation.phase().isActive();
    runObserver_ = connect(&simulation, &SimulationController::phaseChanged, this,
        [this, &simulation] { runPhaseChanged(simulation.phase().isActive()); });
}

void UpdateController::runPhaseChanged(bool isRunning) {
    if (isRunning == std::exchange(wasRunning_, isRunning) || isRunning) {
        return;
    }
    // Later: the controller of the run is still in the middle of its end.
    QMetaObject::invokeMethod(this, &UpdateController::runEnded, Qt::QueuedConnection);
}

void UpdateController::startAfterLaunch() {
    if (isStarted_ || startTask_) {
        return;
    }
    startTask_ = std::make_shared<Timer>();
    const std::weak_ptr<Timer> task = startTask_;
    *startTask_ = timers_.after(startDelay, [self = QPointer<UpdateController>(this), task] {
        MainThread::post([self, task] {
            if (self && !task.expired()) {
                self->startNow();
            }
        });
    });
}

void UpdateController::startNow() {
    startTask_.reset();
    if (isStarted_) {
        return;
    }
    if (const auto failure = updater_->startUpdater()) {
        if (gate_.log) {
            gate_.log->append("Updates are unavailable: " + *failure, LogStore::Level::warn);
        }
        pendingManualCheck_ = false;
    } else {
        setStarted(true);
    }
    readUpdaterState();
}

void UpdateController::readUpdaterState() {
    sparkleStateChanged(updater_->canCheckForUpdates(), updater_->sessionInProgress());
}

void UpdateController::sparkleStateChanged(bool canCheck, bool inSession) {
    const bool can = canCheck || !isStarted_ || static_cast<bool>(gate_.pendingInstall);
    if (can != std::exchange(canCheckForUpdates_, can)) {
        Q_EMIT canCheckForUpdatesChanged();
    }
    if (pendingManualCheck_ && isStarted_ && canCheck && !inSession) {
        pendingManualCheck_ = false;
        updater_->checkForUpdates();
    }
}

void UpdateController::checkForUpdates() {
    if (gate_.pendingInstall) {
        if (!gate_.isRunning()) {
            offerRestart();
        }
    } else if (!isStarted_) {
        pendingManualCheck_ = true;
        startNow();
    } else {
        updater_->checkForUpdates();
    }
}

void UpdateController::runEnded() {
    if (gate_.isRunning()) {
        // The next one has begun already; what waits, waits for its end.
        return;
    }
    if (gate_.pendingInstall && !gate_.offeredRestart) {
        offerRestart();
    } else if (std::exchange(gate_.deferredUpdate, false)) {
        updater_->checkForUpdates();
    }
}

void UpdateController::offerRestart() {
    if (!gate_.pendingInstall || isAsking_) {
        return;
    }
    gate_.offeredRestart = true;
    isAsking_ = true;
    ask_({.message = "Install Ostrella " + gate_.pendingVersion.value_or("") + "?",
             .text = "The simulation has ended. Ostrella restarts to install the update. Choose "
                     "Later to keep working; the update installs when you quit.",
             .firstButton = "Restart Now",
             .secondButton = "Later"},
        [self = QPointer<UpdateController>(this)](bool first) {
            if (self) {
                self->restartAnswered(first);
            }
        });
}

void UpdateController::restartAnswered(bool first) {
    isAsking_ = false;
    if (gate_.isRunning()) {
        // A run has begun while the question stood: what was agreed to waits for its end.
        gate_.offeredRestart = gate_.offeredRestart && !first;
    } else if (!gate_.offeredRestart) {
        // A newer update has come meanwhile: the question was about another.
        offerRestart();
    } else if (first) {
        // Taken before it is called: the install may ask the gate again.
        const auto install = std::exchange(gate_.pendingInstall, {});
        readUpdaterState();
        install();
    }
}

void UpdateController::setStarted(bool started) {
    if (started != std::exchange(isStarted_, started)) {
        Q_EMIT isStartedChanged();
    }
}

bool UpdateController::automaticallyChecksForUpdates() const {
    return updater_->automaticallyChecksForUpdates();
}

void UpdateController::setAutomaticallyChecksForUpdates(bool automatically) {
    updater_->setAutomaticallyChecksForUpdates(automatically);
}

} // namespace ostrella
