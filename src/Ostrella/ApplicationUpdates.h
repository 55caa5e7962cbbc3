#pragma once

#include "Platform/AppBundle.h"
#include "Platform/FileDescriptor.h"
#include "Update/UpdateAlert.h"
#include "Update/UpdateController.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrella {

class AppcastUpdater;
class LogStore;
class MainWindow;
class PreferenceStore;

/// Which updater keeps the running copy up to date, and what main() does for it. Main thread only.
class ApplicationUpdates {
public:
    struct Surroundings {
        PreferenceStore& preferences;
        LogStore& log;
        AskUser ask;
        /// Ends the event loop.
        std::function<void()> quit;
    };

    /// Early in main(), before anything else looks at the environment.
    static void adoptWatch();

    /// In the process that serves the user, before it shows anything: finishes or takes back what
    /// an earlier update left half done.
    explicit ApplicationUpdates(AppBundle bundle);

    /// The program to become in place of this one, whose files an update has taken the place of.
    const std::optional<std::filesystem::path>& startInstead() const { return startInstead_; }

    /// The controller of this copy's updater; once. What is handed in outlives it.
    std::unique_ptr<UpdateController> makeController(const Surroundings& surroundings);

    /// What shows the updater's sessions beside the main window; null where the updater does that
    /// itself. It goes before the window and the controller do.
    std::unique_ptr<QObject> showSessions(
        MainWindow& window, std::function<void(const std::string& address)> openAddress);

    /// The application has come up: an update that brought it is kept.
    void confirmStarted();

    /// In a process that leaves the user to one that serves him already: nobody waits for it.
    static void leaveToAnother();

    /// Whether installAtQuit() starts the new version, which is to be the next to serve the user.
    bool restartsAtQuit() const;

    /// Last, while the controller still lives: windows are gone. Puts an update that lies ready in
    /// place; no other process is to be started meanwhile, unless by this.
    void installAtQuit();

private:
    AppBundle bundle_;
    std::optional<std::filesystem::path> startInstead_;
    /// The version that was taken back.
    std::string failedVersion_;
    /// On the version that has not come up yet.
    FileDescriptor claim_;
    AppcastUpdater* updater_ = nullptr;
};

} // namespace ostrella
