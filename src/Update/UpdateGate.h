#pragma once

#include "Models/LogStore.h"
#include "Update/UpdaterDelegate.h"

#include <QPointer>

#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// Holds every update back while a run is going on: none shows itself, and none starts the
/// application anew. What was held back is kept for later. Main thread only.
class UpdateGate final : public UpdaterDelegate {
public:
    /// Is a run going on.
    std::function<bool()> isRunning = [] { return false; };
    QPointer<LogStore> log;
    /// Called when the updater finds a valid update.
    std::function<void()> onFoundUpdate;
    /// Performs the relaunch that was postponed.
    std::function<void()> pendingInstall;
    /// Version of that update, as people read it.
    std::optional<std::string> pendingVersion;
    /// A scheduled update was found and not shown to the user.
    bool deferredUpdate = false;
    /// The restart has been offered for the present `pendingInstall`.
    bool offeredRestart = false;
    /// Called after a relaunch was postponed.
    std::function<void()> onPostponed;

    void didFindValidUpdate(const AppcastItem& item) override;
    bool shouldPostponeRelaunch(const AppcastItem& item, std::function<void()> install) override;
    bool supportsGentleScheduledUpdateReminders() const override;
    bool shouldHandleShowingScheduledUpdate(const AppcastItem& item, bool immediateFocus) override;
    void willHandleShowingUpdate(bool handleShowingUpdate, const AppcastItem& item) override;
    void willFinishUpdateSession() override;
    void readyUpdateChanged(const AppcastItem* ready) override;
};

} // namespace ostrella
