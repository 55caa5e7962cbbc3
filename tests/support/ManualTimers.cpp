#include "support/ManualTimers.h"

#include <algorithm>

namespace ostrella::test {

Timer ManualTimers::after(std::chrono::duration<double> delay, std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    const Key key{now_ + std::max(delay.count(), 0.0), ++lastID_};
    actions_.emplace(key, std::move(action));
    return Timer([this, key] {
        decltype(actions_)::node_type withdrawn;
        const std::lock_guard withdrawing(mutex_);
        withdrawn = actions_.extract(key);
    });
}

void ManualTimers::advance(double seconds) {
    std::unique_lock lock(mutex_);
    const double end = now_ + seconds;
    while (!actions_.empty() && actions_.begin()->first.first <= end) {
        auto next = actions_.extract(actions_.begin());
        now_ = std::max(now_, next.key().first);
        lock.unlock();
        next.mapped()();
        next = {};
        lock.lock();
    }
    now_ = end;
}

std::vector<double> ManualTimers::pending() const {
    const std::lock_guard lock(mutex_);
    std::vector<double> delays;
    for (const auto& [key, action] : actions_) {
        delays.push_back(key.first - now_);
    }
    return delays;
}

double ManualTimers::now() const {
    const std::lock_guard lock(mutex_);
    return now_;
}

} // namespace ostrella::test
