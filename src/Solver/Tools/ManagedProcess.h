#pragma once

#include "Models/Cancellation.h"
#include "Models/Timers.h"
#include "Solver/Tools/LineForwarder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace ostrella {

/// The one way to run gmsh and the solver.
namespace ManagedProcess {

struct Outcome {
    /// Exit status, or the bare signal number of a child killed by a signal. Judged by the caller.
    std::int32_t status = 0;
    /// The lines that the forwarder was to keep, in order.
    std::vector<std::string> keptLines;
};

/// Seconds that a cancelled child has between SIGTERM and SIGKILL.
inline constexpr double killDelay = 3.0;
/// Seconds after the child's end for which its output is waited for, if a descendant holds the
/// pipe.
inline constexpr double drainTimeout = 2.0;

/// Runs a program in `directory` to its end, its standard output and standard error merged into the
/// forwarder. Blocks the calling worker. Throws std::system_error if the program cannot be started,
/// and CancellationError if the token is cancelled at any time before the return, after the child
/// has ended and its output is in the log. There is no time limit.
Outcome run(const std::filesystem::path& executable, const std::vector<std::string>& arguments,
    const std::filesystem::path& directory, LineForwarder& forwarder,
    const CancellationToken& token, TimerService& timers = TimerService::system());

} // namespace ManagedProcess

} // namespace ostrella
