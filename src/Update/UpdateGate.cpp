#include "Update/UpdateGate.h"

#include "Models/MainThread.h"
#include "Models/Precondition.h"

#include <utility>

namespace ostrella {

namespace {

void requireMainThread() {
    precondition(MainThread::isCurrent(), "an updater calls its delegate on the main thread");
}

} // namespace

void UpdateGate::didFindValidUpdate(const AppcastItem&) {
    requireMainThread();
    if (onFoundUpdate) {
        onFoundUpdate();
    }
}

bool UpdateGate::shouldPostponeRelaunch(const AppcastItem& item, std::function<void()> install) {
    requireMainThread();
    if (!isRunning()) {
        return false;
    }
    pendingInstall = std::move(install);
    pendingVersion = item.displayVersionString;
    offeredRestart = false;
    if (onPostponed) {
        onPostponed();
    }
    if (log) {
        log->append(
            "Update " + *pendingVersion + " is ready. It installs when the simulation ends.",
            LogStore::Level::info);
    }
    return true;
}

bool UpdateGate::supportsGentleScheduledUpdateReminders() const {
    requireMainThread();
    return true;
}

bool UpdateGate::shouldHandleShowingScheduledUpdate(const AppcastItem&, bool) {
    requireMainThread();
    return !isRunning();
}

void UpdateGate::willHandleShowingUpdate(bool handleShowingUpdate, const AppcastItem&) {
    requireMainThread();
    if (!handleShowingUpdate) {
        deferredUpdate = true;
    }
}

void UpdateGate::willFinishUpdateSession() {
    requireMainThread();
    deferredUpdate = false;
}

void UpdateGate::readyUpdateChanged(const AppcastItem* ready) {
    requireMainThread();
    if (!pendingInstall || (ready && pendingVersion == ready->displayVersionString)) {
        return;
    }
    // What has been agreed to, or put off, was another one.
    offeredRestart = false;
    if (ready) {
        pendingVersion = ready->displayVersionString;
    } else {
        pendingInstall = {};
        pendingVersion.reset();
    }
}

} // namespace ostrella
