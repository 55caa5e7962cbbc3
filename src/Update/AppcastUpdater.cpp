#include "Update/AppcastUpdater.h"

#include "Models/MainThread.h"
#include "Solver/Tools/Background.h"
#include "Update/Appcast.h"
#include "Update/UpdateDownload.h"
#include "Update/UpdateRefusal.h"
#include "Update/UpdaterDelegate.h"
#include "Update/VersionOrder.h"

#include <QByteArray>
#include <QPointer>
#include <QUrl>

#include <fmt/format.h>

#include <algorithm>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

using Level = LogStore::Level;

/// The schedule goes by the clock on the wall, which runs on while the machine sleeps, and timers
/// do not: it is looked at this often.
constexpr std::chrono::duration<double> longestWait = std::chrono::hours(1);

const AppcastItem* newest(const std::vector<AppcastItem>& items) {
    const auto found = std::max_element(
        items.begin(), items.end(), [](const AppcastItem& one, const AppcastItem& other) {
            return VersionOrder::isNewer(other.version, one.version);
        });
    return found == items.end() ? nullptr : &*found;
}

/// A line of the log without what stands before the reason.
std::string reasonIn(const std::string& line) {
    return line.starts_with(UpdateRefusal::prefix) ? line.substr(UpdateRefusal::prefix.size())
                                                   : line;
}

UpdateDownload::Setup downloadSetup(const AppcastUpdater::Surroundings& surroundings) {
    UpdateDownload::Setup setup{.timers = surroundings.timers,
        .folder = surroundings.cache,
        .allowsFiles = surroundings.allowsFileAddresses};
    if (surroundings.trust) {
        setup.tls = *surroundings.trust;
    }
    return setup;
}

bool isPublicKey(const std::string& base64) {
    constexpr qsizetype bytesOfKey = 32;
    const auto key = QByteArray::fromBase64Encoding(
        QByteArray::fromStdString(base64), QByteArray::AbortOnBase64DecodingErrors);
    return key && (*key).size() == bytesOfKey;
}

} // namespace

AppcastUpdater::AppcastUpdater(Surroundings surroundings, QObject* parent)
    : Updater(parent),
      surroundings_(std::move(surroundings)),
      preferences_(surroundings_.preferences),
      installation_(surroundings_.root),
      download_(std::make_unique<UpdateDownload>(downloadSetup(surroundings_))),
      work_(new Work{{}, UpdateInstaller(installation_.root(), surroundings_.installer)}) {
    if (surroundings_.information) {
        presentVersion_ = UpdateInstaller::version(*surroundings_.information);
        feed_ = stringOf(*surroundings_.information, InformationKeys::feed).value_or("");
        key_ = stringOf(*surroundings_.information, InformationKeys::key).value_or("");
    }
    if (!surroundings_.failedVersion.empty()) {
        preferences_.setSkippedVersion(surroundings_.failedVersion);
        surroundings_.report(UpdateRefusal(fmt::format("Version {} did not start; the version "
                                                       "before is in place again.",
                                               surroundings_.failedVersion))
                                 .what(),
            Level::warn);
    }
}

AppcastUpdater::~AppcastUpdater() {
    cancellation_.cancel();
}

std::optional<std::string> AppcastUpdater::startUpdater() {
    if (isStarted_) {
        return std::nullopt;
    }
    if (!feed_.empty()) {
        const QUrl address(QString::fromStdString(feed_), QUrl::StrictMode);
        const bool isFile = address.isLocalFile() && surroundings_.allowsFileAddresses;
        if (!isFile && (address.scheme() != QStringLiteral("https") || address.host().isEmpty())) {
            return "The address of the update feed is not one of HTTPS.";
        }
        if (presentVersion_.empty()) {
            return "This copy of Ostrella does not tell its version.";
        }
        if (!isPublicKey(key_)) {
            return "The key to check updates with is not 32 bytes in base64.";
        }
    }
    isStarted_ = true;
    if (installation_.isOwn()) {
        takeOverLeftovers();
    }
    schedule();
    Q_EMIT canCheckForUpdatesChanged();
    return std::nullopt;
}

void AppcastUpdater::checkForUpdates() {
    if (!isStarted_) {
        return;
    }
    if (feed_.empty()) {
        surroundings_.report(
            "No update feed is configured for this copy of Ostrella.", Level::info);
    } else if (isShown_) {
        Q_EMIT attentionRequested();
    } else if (isHeld_) {
        // Nobody asked for it by name: it does not take the front from other programs.
        show();
    } else if (sessionInProgress()) {
        // A scheduled check is under way: now the user waits for it.
        session_.userInitiated = true;
        isShown_ = true;
        Q_EMIT sessionChanged();
    } else if (ready_) {
        isShown_ = true;
        setSession({.stage = Stage::ready, .item = *ready_, .userInitiated = true});
    } else {
        beginCheck(true);
    }
}

bool AppcastUpdater::canCheckForUpdates() const {
    return isStarted_;
}

bool AppcastUpdater::sessionInProgress() const {
    return session_.stage != Stage::idle;
}

bool AppcastUpdater::automaticallyChecksForUpdates() const {
    return preferences_.automatic();
}

void AppcastUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    if (automatically == preferences_.automatic()) {
        return;
    }
    preferences_.setAutomatic(automatically);
    schedule();
    Q_EMIT automaticallyChecksForUpdatesChanged();
}

void AppcastUpdater::setDelegate(UpdaterDelegate* delegate) {
    delegate_ = delegate;
}

const UpdateSession& AppcastUpdater::session() const {
    static const UpdateSession nothing;
    return isShown_ ? session_ : nothing;
}

void AppcastUpdater::schedule() {
    timer_.cancel();
    if (!isStarted_ || feed_.empty() || sessionInProgress() || !preferences_.automatic()) {
        return;
    }
    timer_ = surroundings_.timers.after(
        std::min(untilCheck(), longestWait), [self = QPointer<AppcastUpdater>(this)] {
            MainThread::post([self] {
                if (self) {
                    self->checkBySchedule();
                }
            });
        });
}

std::chrono::duration<double> AppcastUpdater::untilCheck() const {
    const auto last = preferences_.lastCheck();
    const Date now = surroundings_.clock.now();
    // A check yet to come is one by a clock that was wrong.
    if (!last || *last > now) {
        return std::chrono::duration<double>::zero();
    }
    return std::max<std::chrono::duration<double>>(
        checkInterval - (now - *last), std::chrono::duration<double>::zero());
}

void AppcastUpdater::checkBySchedule() {
    if (sessionInProgress() || !preferences_.automatic()) {
        return;
    }
    if (untilCheck() > std::chrono::duration<double>::zero()) {
        schedule();
    } else {
        beginCheck(false);
    }
}

void AppcastUpdater::beginCheck(bool userInitiated) {
    timer_.cancel();
    ++searches_;
    isShown_ = userInitiated;
    setSession({.stage = Stage::checking, .userInitiated = userInitiated});
    download_->fetchFeed(
        feed_, [this](const std::string& text) { readFeed(text); },
        [this](const std::string& line) { fail(line); });
}

void AppcastUpdater::readFeed(const std::string& text) {
    // Of megabytes it takes a while.
    Background::run(
        [text, present = presentVersion_, self = QPointer<AppcastUpdater>(this),
            search = searches_] {
            const auto tell = [&](const std::function<void(AppcastUpdater&)>& step) {
                MainThread::post([self, search, step] {
                    if (self && self->searches_ == search &&
                        self->session_.stage == Stage::checking) {
                        step(*self);
                    }
                });
            };
            try {
                tell([items = Appcast::items(text, Appcast::platform(), present)](
                         AppcastUpdater& updater) { updater.choose(items); });
            } catch (const UpdateRefusal& refusal) {
                tell([line = std::string(refusal.what())](
                         AppcastUpdater& updater) { updater.fail(line); });
            }
        },
        Background::Priority::userInitiated);
}

void AppcastUpdater::choose(const std::vector<AppcastItem>& items) {
    preferences_.setLastCheck(surroundings_.clock.now());
    const AppcastItem* const best = newest(items);
    if (best && VersionOrder::isNewer(best->version, presentVersion_)) {
        const bool isKnown = best->version == preferences_.skippedVersion() ||
                             (ready_ && ready_->version == best->version);
        if (session_.userInitiated || !isKnown) {
            offer(*best);
        } else {
            endSession();
        }
        return;
    }
    if (best && VersionOrder::isNewer(presentVersion_, best->version)) {
        surroundings_.report(UpdateRefusal(fmt::format("Version {} of the feed is older than {}.",
                                               best->version, presentVersion_))
                                 .what(),
            Level::info);
    }
    if (isShown_) {
        setSession({.stage = Stage::upToDate, .userInitiated = true});
    } else {
        endSession();
    }
}

void AppcastUpdater::offer(const AppcastItem& item) {
    const bool userInitiated = session_.userInitiated;
    UpdateSession next{.stage = Stage::found, .item = item, .userInitiated = userInitiated};
    if (!installation_.isOwn()) {
        next.stage = Stage::noticeOnly;
        next.text = fmt::format("This copy is not replaced: {}.", installation_.managedBecause());
    } else if (item.archiveAddress.empty()) {
        next.stage = Stage::noticeOnly;
        next.text = "It cannot be installed from here.";
    }
    if (delegate_) {
        delegate_->didFindValidUpdate(item);
    }
    const bool waits = !userInitiated && delegate_ &&
                       delegate_->supportsGentleScheduledUpdateReminders() &&
                       !delegate_->shouldHandleShowingScheduledUpdate(item, false);
    setSession(std::move(next));
    if (waits) {
        isHeld_ = true;
        delegate_->willHandleShowingUpdate(false, item);
    } else {
        show();
    }
}

void AppcastUpdater::show() {
    isHeld_ = false;
    if (delegate_) {
        delegate_->willHandleShowingUpdate(true, session_.item);
    }
    isShown_ = true;
    Q_EMIT sessionChanged();
}

void AppcastUpdater::remindLater() {
    if (isShown(Stage::found) || isShown(Stage::ready)) {
        endSession();
    }
}

void AppcastUpdater::skipVersion() {
    if (isShown(Stage::found)) {
        preferences_.setSkippedVersion(session_.item.version);
        endSession();
    }
}

void AppcastUpdater::cancel() {
    if (isShown(Stage::checking) || isShown(Stage::downloading)) {
        download_->cancel();
        endSession();
    } else if (isShown(Stage::preparing)) {
        leavePreparing();
        endSession();
    }
}

void AppcastUpdater::acknowledge() {
    if (isShown(Stage::noticeOnly)) {
        preferences_.setSkippedVersion(session_.item.version);
    }
    if (isShown(Stage::noticeOnly) || isShown(Stage::upToDate) || isShown(Stage::failed)) {
        endSession();
    }
}

void AppcastUpdater::setSession(UpdateSession session) {
    const bool wasInProgress = sessionInProgress();
    session_ = std::move(session);
    Q_EMIT sessionChanged();
    if (wasInProgress != sessionInProgress()) {
        Q_EMIT sessionInProgressChanged();
    }
}

void AppcastUpdater::setStage(Stage stage, const std::string& text) {
    UpdateSession next = session_;
    next.stage = stage;
    next.text = text;
    setSession(std::move(next));
}

void AppcastUpdater::fail(const std::string& line) {
    surroundings_.report(line, Level::warn);
    if (session_.stage == Stage::checking) {
        preferences_.setLastCheck(surroundings_.clock.now());
    }
    if (!isShown_) {
        endSession();
        return;
    }
    setStage(Stage::failed, reasonIn(line));
}

void AppcastUpdater::endSession() {
    isHeld_ = false;
    if (delegate_) {
        delegate_->willFinishUpdateSession();
    }
    setSession({});
    isShown_ = false;
    schedule();
}

} // namespace ostrella
