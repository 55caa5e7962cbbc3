#pragma once

#include "ForeignWindow.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <filesystem>
#include <optional>

namespace ostrella::test {

/// The application in a package of its own, with a home and a session of the test's own.
class StartedApplication {
public:
    StartedApplication();

    Package& package() { return package_; }
    BatchProcess& process() { return process_; }
    std::filesystem::path program() const { return package_.root() / "bin" / "ostrella"; }
    /// Folder of what belongs to the session, such as sockets.
    const std::filesystem::path& session() const { return session_.path(); }

    /// Starts it with the sample "sphere" and waits for the window with the model in it.
    void openSphere();
    /// Presses the keys of "Run Simulation" until the tool has noted its number in `note`.
    void run(const std::filesystem::path& note);

    const ForeignWindow& window() const { return *window_; }

private:
    TemporaryDirectory session_;
    Package package_;
    BatchProcess process_;
    std::optional<ForeignWindow> window_;
};

/// True unless the process that noted its number in `file` has ended, reaped or not.
bool isRunning(const std::filesystem::path& file);

} // namespace ostrella::test
