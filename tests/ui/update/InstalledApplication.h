#pragma once

#include "support/SigningKey.h"
#include "ui/application/ForeignWindow.h"
#include "ui/application/StartedApplication.h"

#include <Qt>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ostrella::test {

/// The application in a folder of the user's, of version 1.0, with a feed in files and a maker's
/// key of the test's own. Nothing of it outlives the object.
class InstalledApplication {
public:
    InstalledApplication();
    ~InstalledApplication();

    /// The maker's feed offers a version whose program is the one under test.
    void release(const std::string& version) const;
    /// The same with a shell script as its program.
    void releaseScript(const std::string& version, const std::string& script) const;

    void start();
    /// Starts it where it finds no device to draw with, waits until it says so, and kills it.
    void startInVain();
    /// Chooses "Check for Updates…" in the menu and takes what is offered, until that lies ready.
    void fetchUpdate();
    /// In the update window.
    void restart();
    void later();
    /// Closes the main window and waits for the end; the exit status.
    int quit();

    /// Another process of the installed program than the started one; nothing while there is none.
    std::optional<std::int64_t> successor() const;
    /// Waits until it shows its window, closes that, and waits for its end.
    bool closeSuccessor() const;

    /// Starts the program once more beside the running one, as an update's restart does; whether it
    /// tells the one that waits for it that all is well.
    bool confirmsBesideTheRunningOne() const;

    std::filesystem::path root() const;
    /// Folder of what belongs to the session, such as sockets.
    const std::filesystem::path& session() const { return application_.session(); }
    /// Of the installed copy.
    std::string version() const;
    bool hasPrevious() const;
    BatchProcess& process() { return application_.process(); }

private:
    std::filesystem::path makeTree(const std::string& version) const;
    void publish(const std::filesystem::path& tree, const std::string& version) const;
    std::vector<std::int64_t> processes() const;
    std::optional<ForeignWindow> windowOf(std::int64_t process, const std::string& title) const;
    /// Waits for a window of the started process.
    ForeignWindow window(const std::string& title);
    /// By the menu; the window that comes.
    ForeignWindow checkForUpdates();
    void press(const ForeignWindow& window, const std::vector<Qt::Key>& keys) const;

    SigningKey key_;
    TemporaryDirectory maker_;
    StartedApplication application_;
    /// The process that start() has started.
    std::int64_t started_ = 0;
};

} // namespace ostrella::test
