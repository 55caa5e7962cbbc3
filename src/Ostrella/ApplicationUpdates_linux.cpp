#include "Ostrella/ApplicationUpdates.h"

#include "Models/LogStore.h"
#include "Models/UpdatePolicy.h"
#include "Ostrella/UpdateLink.h"
#include "Update/AppcastUpdater.h"
#include "Update/UpdateRestart.h"
#include "Views/MainWindow.h"

#include <QStandardPaths>

#include <utility>

namespace ostrella {

namespace {

/// Whether the maker of this copy has allowed a feed of files, for copies without a network.
bool allowsFileFeed(const std::optional<InformationDictionary>& info) {
    const auto found = info ? info->find(InformationKeys::allowsFileFeed) : decltype(info->end())();
    if (!info || found == info->end()) {
        return false;
    }
    const bool* allowed = std::get_if<bool>(&found->second);
    return allowed && *allowed;
}

} // namespace

void ApplicationUpdates::adoptWatch() {
    UpdateRestart::adoptWatch();
}

ApplicationUpdates::ApplicationUpdates(AppBundle bundle) : bundle_(std::move(bundle)) {
    auto recovery = AppcastUpdater::recover(bundle_.root());
    startInstead_ = std::move(recovery.startInstead);
    failedVersion_ = std::move(recovery.failedVersion);
    claim_ = std::move(recovery.claim);
}

std::unique_ptr<UpdateController> ApplicationUpdates::makeController(
    const Surroundings& surroundings) {
    const auto info = bundle_.information();
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    auto updater =
        std::make_unique<AppcastUpdater>(AppcastUpdater::Surroundings{.root = bundle_.root(),
            .information = info,
            .preferences = surroundings.preferences,
            .cache = std::filesystem::path(cache.toStdString()) / "updates",
            .report = [&log = surroundings.log](const std::string& text,
                          LogStore::Level level) { log.append(text, level); },
            .quit = surroundings.quit,
            .failedVersion = failedVersion_,
            .allowsFileAddresses = allowsFileFeed(info)});
    updater_ = updater.get();
    return std::make_unique<UpdateController>(
        std::move(updater), TimerService::system(), surroundings.ask);
}

std::unique_ptr<QObject> ApplicationUpdates::showSessions(
    MainWindow& window, std::function<void(const std::string& address)> openAddress) {
    return std::make_unique<UpdateLink>(*updater_, window.engine(), window.window(),
        UpdatePolicy::versionText(bundle_.information()), std::move(openAddress));
}

void ApplicationUpdates::confirmStarted() {
    updater_->confirmStarted(std::move(claim_));
}

void ApplicationUpdates::leaveToAnother() {
    UpdateRestart::confirm();
}

bool ApplicationUpdates::restartsAtQuit() const {
    return updater_->restartsAtQuit();
}

void ApplicationUpdates::installAtQuit() {
    updater_->installAtQuit();
}

} // namespace ostrella
