#include "Ostrella/ApplicationUpdates.h"

#include "Models/LogStore.h"
#include "Update/QuietUpdater.h"
#include "Update/SparkleUpdater.h"

#include <optional>
#include <utility>

namespace ostrella {

void ApplicationUpdates::adoptWatch() {}

ApplicationUpdates::ApplicationUpdates(AppBundle bundle) : bundle_(std::move(bundle)) {}

std::unique_ptr<UpdateController> ApplicationUpdates::makeController(
    const Surroundings& surroundings) {
    const auto info = bundle_.information();
    std::unique_ptr<Updater> updater;
    const auto feed = info ? stringOf(*info, InformationKeys::feed) : std::nullopt;
    if (feed && !feed->empty()) {
        updater = makeSparkleUpdater();
    } else {
        updater = std::make_unique<QuietUpdater>(
            surroundings.preferences, [&log = surroundings.log](const std::string& text,
                                          LogStore::Level level) { log.append(text, level); });
    }
    return std::make_unique<UpdateController>(
        std::move(updater), TimerService::system(), surroundings.ask);
}

// The framework has windows of its own.
std::unique_ptr<QObject> ApplicationUpdates::showSessions(
    MainWindow&, std::function<void(const std::string&)>) {
    return nullptr;
}

// The framework keeps, installs and starts what it has fetched by itself.
void ApplicationUpdates::confirmStarted() {}

void ApplicationUpdates::leaveToAnother() {}

bool ApplicationUpdates::restartsAtQuit() const {
    return false;
}

void ApplicationUpdates::installAtQuit() {}

} // namespace ostrella
