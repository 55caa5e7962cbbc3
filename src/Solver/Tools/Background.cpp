#include "Solver/Tools/Background.h"

#include "Models/MainThread.h"
#include "Models/Precondition.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ostrella::Background {

namespace {

constexpr std::size_t threadsPerPool = 2;

/// A queue of chores and the threads that serve it, made as they are needed and kept.
class Pool {
public:
    void start(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(work));
        if (idleCount_ < queue_.size() && threadCount_ < threadsPerPool) {
            std::thread([this] { serve(); }).detach();
            ++threadCount_;
        }
        filled_.notify_one();
    }

private:
    [[noreturn]] void serve() {
        std::unique_lock lock(mutex_);
        while (true) {
            ++idleCount_;
            filled_.wait(lock, [this] { return !queue_.empty(); });
            --idleCount_;
            std::function<void()> work = std::move(queue_.front());
            queue_.pop_front();
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable filled_;
    std::deque<std::function<void()>> queue_;
    std::size_t threadCount_ = 0;
    std::size_t idleCount_ = 0;
};

/// Never destroyed: the application does not wait for chores when it quits.
Pool& pool(Priority priority) {
    static Pool* const utility = new Pool;
    static Pool* const userInitiated = new Pool;
    return priority == Priority::utility ? *utility : *userInitiated;
}

} // namespace

Chore::Chore(std::shared_future<void> end) : end_(std::move(end)) {}

bool Chore::isDone() const {
    return !end_.valid() ||
           end_.wait_for(std::chrono::seconds::zero()) == std::future_status::ready;
}

void Chore::wait() const {
    precondition(!MainThread::isCurrent(), "the main thread does not wait for a chore");
    if (end_.valid()) {
        end_.get();
    }
}

Chore run(std::function<void()> work, Priority priority) {
    const auto task = std::make_shared<std::packaged_task<void()>>(std::move(work));
    Chore chore(task->get_future().share());
    pool(priority).start([task] { (*task)(); });
    return chore;
}

} // namespace ostrella::Background
