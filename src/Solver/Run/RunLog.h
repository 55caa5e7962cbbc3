#pragma once

#include "Models/LogStore.h"
#include "Models/MainThread.h"

#include <QPointer>

#include <string>
#include <utility>

namespace ostrella {

/// The driver's pen: each line hops to the main thread and back before the driver goes on.
class RunLog {
public:
    explicit RunLog(LogStore& log) : log_(&log) {}

    void append(std::string text, LogStore::Level level) const {
        MainThread::run([&] {
            if (log_) {
                log_->append(std::move(text), level);
            }
        });
    }
    void info(std::string text) const { append(std::move(text), LogStore::Level::info); }
    void warn(std::string text) const { append(std::move(text), LogStore::Level::warn); }

private:
    QPointer<LogStore> log_;
};

} // namespace ostrella
