#pragma once

#include "Models/Clock.h"

#include <mutex>

namespace ostrella::test {

/// A clock that a test sets: it begins at the epoch and stands still until it is moved. Safe on
/// every thread.
class ManualClock final : public Clock {
public:
    Date now() const override {
        const std::lock_guard lock(mutex_);
        return now_;
    }

    void advance(double seconds) {
        const std::lock_guard lock(mutex_);
        now_ += std::chrono::duration_cast<Date::duration>(std::chrono::duration<double>(seconds));
    }

private:
    mutable std::mutex mutex_;
    Date now_;
};

} // namespace ostrella::test
