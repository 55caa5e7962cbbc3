#pragma once

#include "Update/AppcastItem.h"

#include <functional>

namespace ostrella {

/// Whom an updater asks before it shows an update or starts the application anew. Called on the
/// main thread only.
class UpdaterDelegate {
public:
    virtual ~UpdaterDelegate() = default;

    /// The feed has an update for this copy.
    virtual void didFindValidUpdate(const AppcastItem& item) = 0;

    /// The update lies ready and the application is about to be started anew. True holds that back:
    /// `install` performs it later; where it is never called, the update is installed at quit.
    virtual bool shouldPostponeRelaunch(const AppcastItem& item, std::function<void()> install) = 0;

    /// Whether the delegate can remind of a scheduled update in its own way and time.
    virtual bool supportsGentleScheduledUpdateReminders() const = 0;

    /// A scheduled check has found an update. False: the updater is to take no step of its own to
    /// show it. `immediateFocus` tells that it would come to the front at once.
    virtual bool shouldHandleShowingScheduledUpdate(
        const AppcastItem& item, bool immediateFocus) = 0;

    /// An update is about to be shown: by the updater, or, where `handleShowingUpdate` is false,
    /// not before the delegate asks for it with another check.
    virtual void willHandleShowingUpdate(bool handleShowingUpdate, const AppcastItem& item) = 0;

    /// The present check, with all that came of it, is over.
    virtual void willFinishUpdateSession() = 0;

    /// What is installed at quit, or by an `install` that was held back, is another update now, or
    /// none any more.
    virtual void readyUpdateChanged(const AppcastItem* /*ready*/) {}
};

} // namespace ostrella
