#pragma once

#include "Models/LogStore.h"
#include "Models/PreferenceStore.h"
#include "Update/UpdatePreferences.h"
#include "Update/Updater.h"

#include <functional>
#include <string>

namespace ostrella {

/// The updater of a copy that no feed was set for: it starts, finds nothing, and tells whoever asks
/// why. The user's choice about checks is kept for a copy that has a feed.
class QuietUpdater final : public Updater {
    Q_OBJECT

public:
    /// A line for the log.
    using Report = std::function<void(const std::string& text, LogStore::Level level)>;

    /// `preferences` outlives the updater.
    QuietUpdater(PreferenceStore& preferences, Report report, QObject* parent = nullptr);

    std::optional<std::string> startUpdater() override;
    void checkForUpdates() override;
    bool canCheckForUpdates() const override { return isStarted_; }
    bool sessionInProgress() const override { return false; }
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    /// There is never anything to ask it.
    void setDelegate(UpdaterDelegate*) override {}

private:
    UpdatePreferences preferences_;
    Report report_;
    bool isStarted_ = false;
};

} // namespace ostrella
