#include "Solver/Tools/ManagedProcess.h"

#include "Models/MainThread.h"
#include "Models/Precondition.h"
#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <utility>

namespace ostrella::ManagedProcess {

namespace {

/// A child and whether its run was cancelled. Start and cancellation exclude each other, so that a
/// child whose run is cancelled either never starts or is stopped.
class Handle {
public:
    explicit Handle(TimerService& timers) : timers_(timers) {}

    void launch(const ChildProcess::Program& program, int output) {
        const std::lock_guard lock(mutex_);
        if (cancelled_) {
            throw CancellationError();
        }
        child_->start(program, output);
    }

    std::int32_t wait() { return child_->wait(); }

    /// Stops the child politely, and 3 seconds later by force. Safe on every thread and at any
    /// time.
    void cancel() {
        const std::lock_guard lock(mutex_);
        cancelled_ = true;
        if (!child_->isRunning()) {
            return;
        }
        child_->terminate();
        killTimer_ = timers_.after(
            std::chrono::duration<double>(killDelay), [child = child_] { child->kill(); });
    }

    /// After the child's end: withdraws what is left of the stop, and tells whether there was one.
    bool finish() {
        const std::lock_guard lock(mutex_);
        killTimer_.cancel();
        return cancelled_;
    }

private:
    std::mutex mutex_;
    TimerService& timers_;
    std::shared_ptr<ChildProcess> child_ = std::make_shared<ChildProcess>();
    bool cancelled_ = false;
    Timer killTimer_;
};

std::int32_t runChild(
    const ChildProcess::Program& program, LineForwarder& forwarder, Handle& handle) {
    Pipe pipe = Pipe::make();
    forwarder.attach(pipe.readEnd.release());
    handle.launch(program, pipe.writeEnd.get());
    // The child's are now the only writing ends, so that its end is the end of the pipe.
    pipe.writeEnd.close();
    return handle.wait();
}

/// Shows what the child wrote before `run` failed; that failure counts, not one of these.
void drainAfterFailure(LineForwarder& forwarder, TimerService& timers) {
    forwarder.close();
    try {
        forwarder.drain(drainTimeout, timers);
    } catch (const std::exception&) {
        return;
    }
}

} // namespace

Outcome run(const std::filesystem::path& executable, const std::vector<std::string>& arguments,
    const std::filesystem::path& directory, LineForwarder& forwarder,
    const CancellationToken& token, TimerService& timers) {
    precondition(!MainThread::isCurrent(), "the main thread does not wait for a child program");
    const auto handle = std::make_shared<Handle>(timers);
    const CancellationRegistration registration = token.onCancel([handle] { handle->cancel(); });

    Outcome outcome;
    try {
        outcome.status = runChild({executable, arguments, directory}, forwarder, *handle);
    } catch (...) {
        drainAfterFailure(forwarder, timers);
        throw;
    }
    outcome.keptLines = forwarder.drain(drainTimeout, timers);
    // The token is set an instant before the handle hears of it.
    if (handle->finish() || token.isCancelled()) {
        throw CancellationError();
    }
    return outcome;
}

} // namespace ostrella::ManagedProcess
