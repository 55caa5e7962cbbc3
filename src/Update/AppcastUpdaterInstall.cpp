// From the user's word to the new version in its place.

#include "Models/MainThread.h"
#include "Solver/Tools/Background.h"
#include "Update/AppcastUpdater.h"
#include "Update/PartialArchive.h"
#include "Update/UpdateDownload.h"
#include "Update/UpdateRefusal.h"
#include "Update/UpdateRestart.h"
#include "Update/UpdateSignature.h"
#include "Update/UpdaterDelegate.h"

#include <QPointer>

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <mutex>
#include <system_error>
#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

using Level = LogStore::Level;

/// When the log is not on show any more.
void tellOnTerminal(const std::string& line) {
    std::fputs(("ostrella: " + line + "\n").c_str(), stderr);
}

} // namespace

void AppcastUpdater::install() {
    if (!isShown(Stage::found)) {
        return;
    }
    if (session_.item.signature.empty()) {
        fail(UpdateRefusal("The update archive bears no signature.").what());
        return;
    }
    UpdateSession next = session_;
    next.stage = Stage::downloading;
    next.expected = next.item.archiveLength;
    setSession(std::move(next));
    download_->fetchArchive(
        feed_, session_.item,
        [this](std::int64_t received, std::int64_t expected) {
            session_.received = received;
            session_.expected = expected;
            Q_EMIT sessionChanged();
        },
        [this](const fs::path& archive) { prepare(archive); },
        [this](const std::string& line) { fail(line); });
}

void AppcastUpdater::prepare(const fs::path& archive) {
    setStage(Stage::preparing);
    cancellation_ = CancellationSource();
    const auto preparation = ++preparations_;
    const auto finish = [self = QPointer<AppcastUpdater>(this), preparation, item = session_.item](
                            const std::string& refusal) {
        MainThread::post([self, preparation, item, refusal] {
            if (!self) {
                return;
            }
            if (self->preparations_ == preparation) {
                self->finishPreparing(refusal);
            } else if (refusal.empty() && self->ready_) {
                // Left too late: it lies where the one before lay.
                self->setReady(item);
            }
        });
    };
    Background::run(
        [work = work_, archive, item = session_.item, key = key_, present = presentVersion_,
            token = cancellation_.token(), isFirst = !ready_, finish] {
            const std::lock_guard lock(work->mutex);
            try {
                token.throwIfCancelled();
                {
                    const auto held = PartialArchive::hold(archive);
                    UpdateSignature::verify(archive, item.signature, key);
                    work->installer.stage(archive, item, present, token);
                }
                if (isFirst && token.isCancelled()) {
                    // Left too late, and not to be found by the next start.
                    work->installer.discard();
                    return;
                }
                finish("");
            } catch (const CancellationError&) {
                // Nobody waits for it.
            } catch (const UpdateRefusal& refusal) {
                finish(refusal.what());
            } catch (const std::exception& error) {
                finish(UpdateRefusal(error.what()).what());
            }
        },
        Background::Priority::userInitiated);
}

void AppcastUpdater::finishPreparing(const std::string& refusal) {
    download_->discardArchives();
    if (!refusal.empty()) {
        fail(refusal);
        return;
    }
    setReady(session_.item);
    setStage(Stage::ready);
}

void AppcastUpdater::leavePreparing() {
    cancellation_.cancel();
    ++preparations_;
}

void AppcastUpdater::setReady(std::optional<AppcastItem> item) {
    ready_ = std::move(item);
    if (delegate_) {
        delegate_->readyUpdateChanged(ready_ ? &*ready_ : nullptr);
    }
}

void AppcastUpdater::takeOverLeftovers() {
    const auto take = [self = QPointer<AppcastUpdater>(this)](const AppcastItem& item) {
        MainThread::post([self, item] {
            if (self && !self->ready_) {
                self->setReady(item);
                self->surroundings_.report(
                    fmt::format("Update {} lies ready since an earlier start. It installs at quit.",
                        item.displayVersionString),
                    Level::info);
            }
        });
    };
    Background::run([work = work_, present = presentVersion_, take] {
        const std::lock_guard lock(work->mutex);
        UpdateInstaller& installer = work->installer;
        // What lies ready by now is no leftover.
        if (installer.isStaged()) {
            return;
        }
        if (const auto information = installer.adopt(present)) {
            AppcastItem item;
            item.version = UpdateInstaller::version(*information);
            item.displayVersionString =
                stringOf(*information, InformationKeys::version).value_or(item.version);
            take(item);
        } else {
            installer.discard();
        }
    });
}

void AppcastUpdater::installAndRestart() {
    if (!isShown(Stage::ready) || !ready_) {
        return;
    }
    const auto later = [self = QPointer<AppcastUpdater>(this)] {
        if (self) {
            self->relaunch();
        }
    };
    if (delegate_ && delegate_->shouldPostponeRelaunch(*ready_, later)) {
        endSession();
    } else {
        relaunch();
    }
}

void AppcastUpdater::exchange() {
    // Nobody waits for another that is being prepared.
    leavePreparing();
    const auto item = ready_;
    setReady(std::nullopt);
    const std::lock_guard lock(work_->mutex);
    try {
        work_->installer.exchange();
    } catch (const UpdateInstaller::InUse&) {
        setReady(item);
        throw;
    } catch (const UpdateRefusal&) {
        work_->installer.discard();
        throw;
    }
}

void AppcastUpdater::relaunch() {
    if (!ready_) {
        surroundings_.report(
            "The update that lay ready is not there any more. Looking for one again.", Level::info);
        checkForUpdates();
        return;
    }
    download_->cancel();
    UpdateSession next{.stage = Stage::ready, .item = *ready_, .userInitiated = true};
    try {
        exchange();
    } catch (const UpdateRefusal& refusal) {
        isShown_ = true;
        setSession(std::move(next));
        fail(refusal.what());
        return;
    }
    restarts_ = true;
    endSession();
    surroundings_.quit();
}

void AppcastUpdater::confirmStarted(FileDescriptor claim, std::function<void()> done) {
    const bool isAwaited = UpdateRestart::isWatched() || claim.get() >= 0;
    // First, so that nobody waits for what follows.
    UpdateRestart::confirm();
    bool isUpdate = false;
    if (isAwaited) {
        // At once: the application may end before a worker comes to it.
        const std::lock_guard lock(work_->mutex);
        UpdateInstaller& installer = work_->installer;
        isUpdate = installer.confirmStarted(presentVersion_, std::move(claim));
        std::error_code error;
        if (isUpdate && fs::exists(installer.previous(), error)) {
            surroundings_.report(
                fmt::format("The version before stays in {}: {}.", installer.previous().string(),
                    Installation(installer.previous()).managedBecause()),
                Level::info);
        }
    }
    Background::run([work = work_, isUpdate, done = std::move(done)]() mutable {
        if (isUpdate) {
            const std::lock_guard lock(work->mutex);
            work->installer.removePrevious();
        }
        if (done) {
            MainThread::post(std::move(done));
        }
    });
}

void AppcastUpdater::installAtQuit() {
    UpdateInstaller& installer = work_->installer;
    if (ready_) {
        try {
            exchange();
            // The next start is to find nobody at it.
            const std::lock_guard lock(work_->mutex);
            installer.release();
        } catch (const UpdateRefusal& refusal) {
            tellOnTerminal(refusal.what());
        }
    }
    if (!std::exchange(restarts_, false) ||
        UpdateRestart::startAndWatch(installer.program(), surroundings_.patience)) {
        return;
    }
    try {
        installer.rollBack();
        tellOnTerminal(UpdateRefusal("The new version did not start.").what());
    } catch (const UpdateRefusal& refusal) {
        tellOnTerminal(refusal.what());
    }
    UpdateRestart::start(installer.program());
}

UpdateInstaller::Recovery AppcastUpdater::recover(const fs::path& root) {
    std::error_code error;
    const fs::path whole = fs::canonical(root, error);
    return UpdateInstaller(error ? root : whole).recover();
}

} // namespace ostrella
