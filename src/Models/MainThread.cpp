#include "Models/MainThread.h"

#include "Models/Precondition.h"

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>

namespace ostrella {

namespace {

/// What workers and the main thread share. Never destroyed, since a worker may outlive main().
struct Hub {
    std::mutex mutex;
    std::condition_variable finished;
    QObject* context = nullptr;
    /// What the main thread has been asked for, one event of its loop each.
    std::deque<std::function<void()>> queue;
};

Hub& hub() {
    static Hub* const instance = new Hub;
    return *instance;
}

void performNext() {
    std::function<void()> work;
    {
        const std::lock_guard lock(hub().mutex);
        if (hub().queue.empty()) {
            return;
        }
        work = std::move(hub().queue.front());
        hub().queue.pop_front();
    }
    work();
}

/// One piece of work that a worker waits for. The worker may give up on it when the loop ends.
struct Errand {
    enum class State { waiting, running, done, abandoned };
    State state = State::waiting;
    std::exception_ptr error;
};

} // namespace

MainThread::MainThread() {
    const std::lock_guard lock(hub().mutex);
    precondition(hub().context == nullptr, "MainThread is claimed once at a time");
    hub().context = new QObject;
}

MainThread::~MainThread() {
    QObject* context = nullptr;
    decltype(Hub::queue) dropped;
    {
        const std::lock_guard lock(hub().mutex);
        std::swap(context, hub().context);
        dropped.swap(hub().queue);
    }
    delete context;
    hub().finished.notify_all();
}

bool MainThread::isCurrent() {
    const std::lock_guard lock(hub().mutex);
    return hub().context && hub().context->thread() == QThread::currentThread();
}

void MainThread::post(std::function<void()> work) {
    const std::lock_guard lock(hub().mutex);
    if (hub().context) {
        // The event carries nothing: what it stands for passes under a lock that thread checkers
        // see.
        hub().queue.push_back(std::move(work));
        QMetaObject::invokeMethod(
            hub().context, [] { performNext(); }, Qt::QueuedConnection);
    }
}

void MainThread::runAndWait(const std::function<void()>& work) {
    if (isCurrent()) {
        work();
        return;
    }
    const auto errand = std::make_shared<Errand>();
    post([errand, &work] {
        {
            const std::lock_guard lock(hub().mutex);
            if (errand->state == Errand::State::abandoned) {
                return;
            }
            errand->state = Errand::State::running;
        }
        std::exception_ptr error;
        try {
            work();
        } catch (...) {
            error = std::current_exception();
        }
        {
            const std::lock_guard lock(hub().mutex);
            errand->error = error;
            errand->state = Errand::State::done;
        }
        hub().finished.notify_all();
    });
    std::unique_lock lock(hub().mutex);
    hub().finished.wait(lock, [&errand] {
        return errand->state == Errand::State::done ||
               (errand->state == Errand::State::waiting && !hub().context);
    });
    if (errand->state == Errand::State::waiting) {
        errand->state = Errand::State::abandoned;
        throw CancellationError();
    }
    if (errand->error) {
        std::rethrow_exception(errand->error);
    }
}

} // namespace ostrella
