#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace ostrella {

/// One child program: started once, waited for once, and signalled only while its process
/// identifier is certain to be its own. All calls are safe on every thread.
class ChildProcess {
public:
    struct Program {
        std::filesystem::path executable;
        std::vector<std::string> arguments;
        /// Working directory; the parent's if absent.
        std::optional<std::filesystem::path> directory;
        /// The null device as standard input, instead of the parent's.
        bool nullInput = false;
    };

    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// A child that nobody waited for is killed and reaped, so that none is left behind.
    ~ChildProcess();

    /// Starts the program with `output` as its standard output and standard error. It inherits the
    /// environment, no other descriptor, no blocked and no ignored signal. On Linux it is killed
    /// when this process ends, in whatever way. Throws std::system_error with a text for the user
    /// if the system refuses.
    void start(const Program& program, int output);

    /// Blocks until the child has ended, and reaps it. The exit status, or the bare number of the
    /// signal that killed it. Called once, after start().
    std::int32_t wait();

    bool isRunning() const;

    /// Sends SIGTERM or SIGKILL to the child alone; nothing if it is not running.
    void terminate();
    void kill();

    /// Kills every child of the process that is running and lets none start from then on: start()
    /// throws. For a process that is about to end and waits for nobody.
    static void killAllForGood();

private:
    void signal(int number);

    mutable std::mutex mutex_;
    pid_t pid_ = 0;
    bool running_ = false;
};

} // namespace ostrella
