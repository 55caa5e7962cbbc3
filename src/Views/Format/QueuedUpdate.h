#pragma once

#include <QMetaObject>
#include <QObject>

#include <functional>
#include <utility>

namespace ostrella {

/// Gathers what happens within one turn of the event loop into one update at its end: the shared
/// objects notify at every set, a view redraws once. Belongs to an object of the main thread.
class QueuedUpdate {
public:
    /// `update` is called on `owner`'s thread, never after the owner has gone.
    QueuedUpdate(QObject* owner, std::function<void()> update)
        : owner_(owner), update_(std::move(update)) {}
    QueuedUpdate(const QueuedUpdate&) = delete;
    QueuedUpdate& operator=(const QueuedUpdate&) = delete;

    /// Asks for the update; asking again before it comes changes nothing.
    void schedule() {
        if (std::exchange(isScheduled_, true)) {
            return;
        }
        QMetaObject::invokeMethod(
            owner_,
            [this] {
                isScheduled_ = false;
                update_();
            },
            Qt::QueuedConnection);
    }

private:
    QObject* owner_;
    std::function<void()> update_;
    bool isScheduled_ = false;
};

} // namespace ostrella
