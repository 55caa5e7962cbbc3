#pragma once

#include "Models/LogStore.h"
#include "Models/Timers.h"
#include "Solver/Tools/RunLog.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ostrella {

/// Takes the output of one child program, cuts it into lines, shows each in the log and keeps those
/// that the caller asks for. However fast the child writes, it never waits for the main thread:
/// between the two lies a queue without limit. Serves one child and is not reused. Safe on every
/// thread.
class LineForwarder {
public:
    /// `keep` is called on the main thread for each line, in the order of arrival.
    LineForwarder(
        const RunLog& log, LogStore::Level level, std::function<bool(const std::string&)> keep);
    /// Closes. Lines that have arrived still reach the log.
    ~LineForwarder();
    LineForwarder(const LineForwarder&) = delete;
    LineForwarder& operator=(const LineForwarder&) = delete;

    /// Reads a pipe on a thread of its own until it ends or close() is called, then closes it.
    /// Takes the descriptor over. Called once. Throws std::system_error when the system refuses a
    /// thread or pipe.
    void attach(int readEnd);

    /// Takes bytes as they come; a line ends with a line feed.
    void ingest(std::span<const std::byte> bytes);

    /// Ends the input: a last line without line feed is delivered, later bytes are dropped. May be
    /// called any number of times.
    void close();

    /// Waits on a worker until the input has ended and every line is in the log; the kept lines.
    /// After `timeoutSeconds` the forwarder closes by itself. Called once. Throws CancellationError
    /// if the main loop has ended.
    std::vector<std::string> drain(double timeoutSeconds, TimerService& timers);

private:
    class Channel;
    std::shared_ptr<Channel> channel_;
};

} // namespace ostrella
