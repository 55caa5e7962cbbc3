#include "Solver/Tools/LineForwarder.h"

#include "Models/MainThread.h"
#include "Models/Precondition.h"
#include "Platform/PipeReader.h"
#include "Solver/Tools/LineDecoding.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

namespace ostrella {

namespace {

/// How long the main thread takes lines before it looks after its other events.
constexpr std::chrono::milliseconds sliceDuration{4};

/// Lines between two looks at the clock.
constexpr int linesPerLook = 8;

} // namespace

/// What the forwarder, its two threads and its timer share; it lives until the last of them lets
/// go.
class LineForwarder::Channel {
public:
    Channel(const RunLog& log, LogStore::Level level, std::function<bool(const std::string&)> keep)
        : log_(log.store()), level_(level), keep_(std::move(keep)) {}

    /// Starts the thread that offers the main thread one slice of lines after the other. It waits
    /// for the main thread, never the other way round, and so the main thread's queue of events
    /// holds at most one slice.
    static void startConsumer(const std::shared_ptr<Channel>& channel) {
        std::thread([channel] { channel->consume(); }).detach();
    }

    static std::thread startReader(
        const std::shared_ptr<Channel>& channel, FileDescriptor readEnd) {
        channel->reader_.emplace(std::move(readEnd));
        return std::thread([channel] {
            channel->reader_->read(
                [&channel](std::span<const std::byte> bytes) { channel->ingest(bytes); });
            channel->close();
            const std::lock_guard lock(channel->mutex_);
            channel->reader_.reset();
        });
    }

    void ingest(std::span<const std::byte> bytes) {
        std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        const std::lock_guard lock(mutex_);
        if (closed_) {
            return;
        }
        for (std::size_t end = rest.find('\n'); end != std::string_view::npos;
             end = rest.find('\n')) {
            if (pending_.empty()) {
                emit(rest.substr(0, end));
            } else {
                pending_ += rest.substr(0, end);
                emit(pending_);
                pending_.clear();
            }
            rest.remove_prefix(end + 1);
        }
        pending_ += rest;
        changed_.notify_all();
    }

    void close() {
        const std::lock_guard lock(mutex_);
        if (closed_) {
            return;
        }
        closed_ = true;
        if (!pending_.empty()) {
            emit(pending_);
            pending_.clear();
        }
        if (reader_) {
            reader_->stop();
        }
        changed_.notify_all();
    }

    std::vector<std::string> waitForKeptLines() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return consumed_; });
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return std::move(kept_);
    }

    std::thread readerThread;

private:
    /// Under the lock.
    void emit(std::string_view bytes) {
        if (auto line = LineDecoding::line(bytes)) {
            queue_.push_back(std::move(*line));
        }
    }

    void consume() {
        std::exception_ptr failure;
        try {
            while (waitForLines()) {
                while (MainThread::run([this] { return deliverSlice(); })) {
                }
            }
            // Let go of where it lives; the channel itself may end on any thread.
            MainThread::run([this] { log_.clear(); });
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        failure_ = failure;
        consumed_ = true;
        changed_.notify_all();
    }

    /// False when there are no more to come.
    bool waitForLines() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return closed_ || !queue_.empty(); });
        return !queue_.empty();
    }

    /// On the main thread; true if lines are left.
    bool deliverSlice() {
        if (arrived_.empty()) {
            const std::lock_guard lock(mutex_);
            arrived_.swap(queue_);
        }
        const auto end = std::chrono::steady_clock::now() + sliceDuration;
        while (!arrived_.empty()) {
            for (int i = 0; i < linesPerLook && !arrived_.empty(); ++i) {
                deliver(std::move(arrived_.front()));
                arrived_.pop_front();
            }
            if (std::chrono::steady_clock::now() >= end) {
                break;
            }
        }
        return !arrived_.empty();
    }

    void deliver(std::string&& line) {
        if (keep_(line)) {
            kept_.push_back(line);
        }
        if (log_) {
            log_->append(std::move(line), level_);
        }
    }

    // The main thread's; the kept lines pass to the waiting worker at the end.
    QPointer<LogStore> log_;
    const LogStore::Level level_;
    const std::function<bool(const std::string&)> keep_;
    std::deque<std::string> arrived_;
    std::vector<std::string> kept_;

    // Set before its thread starts, reset by that thread under the lock.
    std::optional<PipeReader> reader_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string pending_;
    bool closed_ = false;
    std::deque<std::string> queue_;
    bool consumed_ = false;
    std::exception_ptr failure_;
};

LineForwarder::LineForwarder(
    const RunLog& log, LogStore::Level level, std::function<bool(const std::string&)> keep)
    : channel_(std::make_shared<Channel>(log, level, std::move(keep))) {
    Channel::startConsumer(channel_);
}

LineForwarder::~LineForwarder() {
    close();
    if (channel_->readerThread.joinable()) {
        channel_->readerThread.join();
    }
}

void LineForwarder::attach(int readEnd) {
    precondition(!channel_->readerThread.joinable(), "a forwarder reads one pipe");
    channel_->readerThread = Channel::startReader(channel_, FileDescriptor(readEnd));
}

void LineForwarder::ingest(std::span<const std::byte> bytes) {
    channel_->ingest(bytes);
}

void LineForwarder::close() {
    channel_->close();
}

std::vector<std::string> LineForwarder::drain(double timeoutSeconds, TimerService& timers) {
    precondition(
        !MainThread::isCurrent(), "the main thread takes the lines and cannot wait for them");
    const Timer timer = timers.after(
        std::chrono::duration<double>(timeoutSeconds), [weak = std::weak_ptr(channel_)] {
            if (const auto channel = weak.lock()) {
                channel->close();
            }
        });
    std::vector<std::string> kept = channel_->waitForKeptLines();
    if (channel_->readerThread.joinable()) {
        channel_->readerThread.join();
    }
    return kept;
}

} // namespace ostrella
