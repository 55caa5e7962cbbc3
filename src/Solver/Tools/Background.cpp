#include "Solver/Tools/Background.h"

#include "Models/MainThread.h"
#include "Models/Precondition.h"

#include <QThreadPool>

#include <chrono>
#include <memory>
#include <utility>

namespace ostrella::Background {

namespace {

constexpr int threadsPerPool = 2;

/// Never destroyed: a pool's destructor would wait for its chores, and the application does not
/// wait when it quits.
QThreadPool& pool(Priority priority) {
    const auto make = [](QThread::Priority threadPriority) {
        auto* const made = new QThreadPool;
        made->setMaxThreadCount(threadsPerPool);
        made->setThreadPriority(threadPriority);
        return made;
    };
    static QThreadPool* const utility = make(QThread::LowPriority);
    static QThreadPool* const userInitiated = make(QThread::NormalPriority);
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
