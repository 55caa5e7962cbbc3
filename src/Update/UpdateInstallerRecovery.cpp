// What a start of the application does for the update that came before it.

#include "Platform/AppBundle.h"
#include "Update/FileSteps.h"
#include "Update/Installation.h"
#include "Update/UpdateInstaller.h"
#include "Update/UpdateRefusal.h"
#include "Update/VersionOrder.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

using namespace FileSteps;

namespace {

constexpr std::string_view previousSuffix = ".previous";

/// The record of an update that has been put in place: its version, and once it has been started
/// without being watched, this after it.
constexpr std::string_view wasStarted = "started";

} // namespace

std::optional<InformationDictionary> UpdateInstaller::adopt(const std::string& presentVersion) {
    if (!isOwnFolder(work()) || isThere(record()) || !isThere(ready())) {
        return std::nullopt;
    }
    try {
        takeLock();
    } catch (const UpdateRefusal&) {
        return std::nullopt;
    }
    // It was moved there whole, after all checks.
    auto information = AppBundle(ready()).information();
    if (!information || !VersionOrder::isNewer(version(*information), presentVersion)) {
        release();
        return std::nullopt;
    }
    return information;
}

bool UpdateInstaller::confirmStarted(const std::string& running, FileDescriptor claim) {
    if (!isOwnFolder(work())) {
        return false;
    }
    const auto installing = words(record());
    if (installing.empty() || installing.front() != running) {
        return false;
    }
    if (claim.get() >= 0) {
        lock_ = std::move(claim);
    }
    // What the user has put into the folder meanwhile lies there now.
    if (isThere(previous()) && Installation(previous()).isOwn()) {
        clear(obsolete());
        if (moveTo(previous(), obsolete())) {
            return false;
        }
    }
    clear(record());
    return true;
}

void UpdateInstaller::removePrevious() {
    if (!isOwnFolder(work()) || isThere(record())) {
        return;
    }
    clear(work());
    release();
}

bool UpdateInstaller::recoverFromPrevious(Recovery& recovery) {
    const std::string name = root_.filename().string();
    if (!std::string_view(name).ends_with(previousSuffix)) {
        return false;
    }
    UpdateInstaller whole(
        root_.parent_path() / name.substr(0, name.size() - previousSuffix.size()), options_);
    if (!isOwnFolder(whole.work()) || !isThere(whole.record()) || isThere(whole.root_) ||
        moveTo(root_, whole.root_)) {
        return false;
    }
    recovery.startInstead = whole.program();
    clear(whole.record());
    clear(whole.work());
    return true;
}

UpdateInstaller::Recovery UpdateInstaller::recover() {
    Recovery recovery;
    try {
        if (recoverFromPrevious(recovery)) {
            return recovery;
        }
        // What somebody else wrote beside the root is not to be believed.
        if (!isOwnFolder(work())) {
            return recovery;
        }
        if (const auto failed = words(failure()); !failed.empty()) {
            recovery.failedVersion = failed.front();
            clear(failure());
        }
        if (isThere(record())) {
            takeLock();
            if (const auto installing = words(record()); !installing.empty()) {
                finishExchange(installing.front(), recovery);
            }
            recovery.claim = std::move(lock_);
            if (!isThere(record())) {
                recovery.claim.close();
            }
        }
    } catch (const UpdateRefusal&) {
        // Another process watches this one or is at it, or the application works as it is.
    }
    return recovery;
}

void UpdateInstaller::finishExchange(const std::string& installing, Recovery& recovery) {
    if (version(root_) != installing) {
        // It ended before the exchange, or after the way back.
        if (isThere(previous()) && version(previous()) == installing) {
            clear(obsolete());
            moveTo(previous(), obsolete());
            recovery.failedVersion = installing;
        }
        clear(record());
        return;
    }
    if (!isThere(previous()) && isThere(ready())) {
        moveTo(ready(), previous());
    }
    if (!isThere(previous())) {
        // It had come up already.
        clear(record());
        return;
    }
    const auto state = words(record());
    if (state.size() > 1 && state.back() == wasStarted) {
        // Told of by the version that is started instead.
        rollBack();
        recovery.failedVersion = installing;
        recovery.startInstead = program();
        return;
    }
    write(record(), fmt::format("{}\n{}\n", installing, wasStarted));
}

} // namespace ostrella
