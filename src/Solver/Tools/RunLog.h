#pragma once

#include "Models/LogStore.h"
#include "Models/MainThread.h"

#include <QPointer>

#include <string>
#include <utility>

namespace ostrella {

/// A worker's pen: each line hops to the main thread and back before the worker goes on. The log is
/// held weakly, so that a worker may outlive it; made where the log cannot go meanwhile, and copied
/// from there.
class RunLog {
public:
    /// Implicit: whoever takes a pen can be handed the log itself.
    RunLog(LogStore& log) : log_(&log) {}

    void append(std::string text, LogStore::Level level) const {
        MainThread::run([&] {
            if (log_) {
                log_->append(std::move(text), level);
            }
        });
    }
    void info(std::string text) const { append(std::move(text), LogStore::Level::info); }
    void warn(std::string text) const { append(std::move(text), LogStore::Level::warn); }

    /// Read on the main thread only; null once the log has gone.
    const QPointer<LogStore>& store() const { return log_; }

private:
    QPointer<LogStore> log_;
};

} // namespace ostrella
