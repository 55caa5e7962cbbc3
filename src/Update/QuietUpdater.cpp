#include "Update/QuietUpdater.h"

#include <utility>

namespace ostrella {

QuietUpdater::QuietUpdater(PreferenceStore& preferences, Report report, QObject* parent)
    : Updater(parent), preferences_(preferences), report_(std::move(report)) {}

std::optional<std::string> QuietUpdater::startUpdater() {
    if (!std::exchange(isStarted_, true)) {
        Q_EMIT canCheckForUpdatesChanged();
    }
    return std::nullopt;
}

void QuietUpdater::checkForUpdates() {
    report_("No update feed is configured for this copy of Ostrella.", LogStore::Level::info);
}

bool QuietUpdater::automaticallyChecksForUpdates() const {
    return preferences_.automatic();
}

void QuietUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    if (automatically != automaticallyChecksForUpdates()) {
        preferences_.setAutomatic(automatically);
        Q_EMIT automaticallyChecksForUpdatesChanged();
    }
}

} // namespace ostrella
