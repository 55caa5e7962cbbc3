#pragma once

#include "Models/Cancellation.h"
#include "Models/Clock.h"
#include "Models/InformationDictionary.h"
#include "Models/LogStore.h"
#include "Models/PreferenceStore.h"
#include "Models/Timers.h"
#include "Update/Installation.h"
#include "Update/UpdateInstaller.h"
#include "Update/UpdatePreferences.h"
#include "Update/UpdateSession.h"
#include "Update/Updater.h"

#include <QSslConfiguration>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace ostrella {

class UpdateDownload;

/// Keeps a copy of the application up to date by a feed: looks at it every six hours or when asked,
/// fetches what the user wants, checks and unpacks it, and puts it in place when the application
/// ends. Every refusal is one line of the log, and nothing is installed then. What it shows is told
/// by session(), and the answers to that are the methods below it. Main thread only.
///
/// In main(): UpdateRestart::adoptWatch() first of all; recover() once this process is known to be
/// the only one, and in its place the program that it names, if any; confirmStarted() after the
/// first frame; installAtQuit() last, and before another process may take this one's place, unless
/// restartsAtQuit().
class AppcastUpdater final : public Updater {
    Q_OBJECT

public:
    struct Surroundings {
        /// Of the copy that is kept up to date.
        std::filesystem::path root;
        /// What the copy says of itself: its version, the feed and the key.
        std::optional<InformationDictionary> information;
        PreferenceStore& preferences;
        /// Where archives under way are kept, even from one start to the next; made where missing.
        std::filesystem::path cache;
        /// A line for the log.
        std::function<void(const std::string& text, LogStore::Level level)> report;
        /// Ends the event loop.
        std::function<void()> quit;
        /// What recover() has found.
        std::string failedVersion = {};

        TimerService& timers = TimerService::system();
        const Clock& clock = Clock::system();
        /// Whom to trust; the system's authorities where absent.
        std::optional<QSslConfiguration> trust = {};
        /// A feed may be a file, and its archives with it.
        bool allowsFileAddresses = false;
        UpdateInstaller::Options installer = {};
        /// How long a new version may take to come up when it is started at once.
        std::chrono::milliseconds patience = std::chrono::seconds(30);
    };

    explicit AppcastUpdater(Surroundings surroundings, QObject* parent = nullptr);
    ~AppcastUpdater() override;

    std::optional<std::string> startUpdater() override;
    void checkForUpdates() override;
    bool canCheckForUpdates() const override;
    bool sessionInProgress() const override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    void setDelegate(UpdaterDelegate* delegate) override;

    /// What there is to show; idle while nothing is.
    const UpdateSession& session() const;

    /// `found`: fetch and prepare it.
    void install();
    /// `found`: not now, but the next scheduled check shows it again. `ready`: it is installed when
    /// the application ends.
    void remindLater();
    /// `found`: scheduled checks do not show this version again.
    void skipVersion();
    /// `checking`, `downloading`, `preparing`: leave it.
    void cancel();
    /// `upToDate`, `noticeOnly`, `failed`: has been read. A notice is not shown again by schedule.
    void acknowledge();
    /// `ready`: puts it in place and ends the application, unless the delegate postpones that.
    void installAndRestart();

    /// The application shows its window. Where this process is the start of an update that somebody
    /// waits for, watching it or by the claim of recover(), nobody takes that back from here on,
    /// and the version before is removed behind the scenes. `done` is called after that.
    void confirmStarted(FileDescriptor claim, std::function<void()> done = {});

    /// The new version is started by installAtQuit(), and needs the place of the single instance.
    bool restartsAtQuit() const { return restarts_; }

    /// After the event loop, when windows are gone: puts a version that lies ready in place. After
    /// installAndRestart() it starts the new one and waits until that has come up, else takes it
    /// back and starts this one again.
    void installAtQuit();

    /// Early, in the process that serves the user: finishes or takes back what was interrupted. Its
    /// claim is held until it is handed to confirmStarted().
    static UpdateInstaller::Recovery recover(const std::filesystem::path& root);

    static constexpr std::chrono::hours checkInterval{6};

Q_SIGNALS:
    void sessionChanged();
    /// The user asks for what is on show already: to the front with it.
    void attentionRequested();

private:
    using Stage = UpdateSession::Stage;
    /// What one worker at a time works with.
    struct Work {
        std::mutex mutex;
        UpdateInstaller installer;
    };

    void checkBySchedule();
    void beginCheck(bool userInitiated);
    void readFeed(const std::string& text);
    void choose(const std::vector<AppcastItem>& items);
    void offer(const AppcastItem& item);
    void show();
    void prepare(const std::filesystem::path& archive);
    void finishPreparing(const std::string& refusal);
    void leavePreparing();
    void setReady(std::optional<AppcastItem> item);
    void takeOverLeftovers();
    void exchange();
    void relaunch();

    void setSession(UpdateSession session);
    void setStage(Stage stage, const std::string& text = {});
    bool isShown(Stage stage) const { return isShown_ && session_.stage == stage; }
    void fail(const std::string& line);
    void endSession();
    void schedule();
    std::chrono::duration<double> untilCheck() const;

    Surroundings surroundings_;
    UpdatePreferences preferences_;
    Installation installation_;
    std::string presentVersion_;
    /// Empty where there are no updates.
    std::string feed_;
    std::string key_;
    UpdaterDelegate* delegate_ = nullptr;
    bool isStarted_ = false;

    UpdateSession session_;
    /// Of `session_`; otherwise nothing is shown.
    bool isShown_ = false;
    /// A scheduled update waits for the delegate to ask for it.
    bool isHeld_ = false;
    /// Lies ready to be put in place.
    std::optional<AppcastItem> ready_;
    /// The new version is in place, and is to be started when this process ends.
    bool restarts_ = false;

    std::unique_ptr<UpdateDownload> download_;
    /// Counts the checks, so that a worker's answer to one that was left is not taken for another.
    std::uint64_t searches_ = 0;
    std::shared_ptr<Work> work_;
    std::uint64_t preparations_ = 0;
    CancellationSource cancellation_;
    Timer timer_;
};

} // namespace ostrella
