#pragma once

#include "Models/Cancellation.h"
#include "Models/LogStore.h"
#include "Solver/Tools/ManagedProcess.h"
#include "support/ManualTimers.h"

#include <atomic>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace ostrella::test {

/// One of the small child programs of the tests.
std::filesystem::path program(const std::string& name);

std::vector<std::string> texts(const LogStore& log);

/// The rest of the first line that begins so, once it is in the log; empty if it does not come.
std::string waitForLine(const LogStore& log, const std::string& beginning);

/// True as long as the process exists, be it a zombie.
bool exists(pid_t pid);

/// A child program that runs on a worker of its own, so that a test can cancel it and move its
/// time.
class ProcessRun {
public:
    using Keep = std::function<bool(const std::string&)>;

    ProcessRun(
        LogStore& log, TimerService& timers, const std::filesystem::path& executable,
        const std::vector<std::string>& arguments = {}, const CancellationToken& token = {},
        Keep keep = [](const std::string&) { return false; });
    ~ProcessRun();
    ProcessRun(const ProcessRun&) = delete;
    ProcessRun& operator=(const ProcessRun&) = delete;

    bool isDone() const { return done_; }

    /// Serves the main thread until the run has ended; its outcome, or throws what it threw.
    ManagedProcess::Outcome finish();

private:
    std::atomic<bool> done_ = false;
    ManagedProcess::Outcome outcome_;
    std::exception_ptr error_;
    std::thread worker_;
};

} // namespace ostrella::test
