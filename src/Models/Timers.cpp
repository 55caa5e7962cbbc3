#include "Models/Timers.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ostrella {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// Whatever is asked for beyond a year comes after a year; the clock's count cannot overflow.
constexpr std::chrono::duration<double> longestDelay = std::chrono::hours(24 * 365);

class SystemTimers final : public TimerService {
public:
    SystemTimers() : thread_([this] { serve(); }) { thread_.detach(); }

    Timer after(std::chrono::duration<double> delay, std::function<void()> action) override {
        const auto wait = std::clamp(delay, std::chrono::duration<double>::zero(), longestDelay);
        const auto due =
            SteadyClock::now() + std::chrono::duration_cast<SteadyClock::duration>(wait);
        Key key;
        {
            const std::lock_guard lock(mutex_);
            key = {due, ++lastID_};
            actions_.emplace(key, std::move(action));
        }
        changed_.notify_one();
        return Timer([this, key] { withdraw(key); });
    }

private:
    using Key = std::pair<SteadyClock::time_point, std::uint64_t>;

    void withdraw(const Key& key) {
        // What the action holds is let go of outside the lock.
        decltype(actions_)::node_type withdrawn;
        const std::lock_guard lock(mutex_);
        withdrawn = actions_.extract(key);
    }

    [[noreturn]] void serve() {
        std::unique_lock lock(mutex_);
        while (true) {
            if (actions_.empty()) {
                changed_.wait(lock);
                continue;
            }
            const auto due = actions_.begin()->first.first;
            if (SteadyClock::now() < due) {
                changed_.wait_until(lock, due);
                continue;
            }
            auto next = actions_.extract(actions_.begin());
            lock.unlock();
            next.mapped()();
            next = {};
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t lastID_ = 0;
    std::map<Key, std::function<void()>> actions_;
    std::thread thread_;
};

/// What a sleeper and those who can wake it share.
struct Sleep {
    enum class State { asleep, over, cut };

    void end(State reason) {
        {
            const std::lock_guard lock(mutex);
            if (state == State::asleep) {
                state = reason;
            }
        }
        woken.notify_all();
    }

    std::mutex mutex;
    std::condition_variable woken;
    State state = State::asleep;
};

} // namespace

Timer::Timer(std::function<void()> withdraw) : withdraw_(std::move(withdraw)) {}

Timer::Timer(Timer&& other) noexcept : withdraw_(std::exchange(other.withdraw_, nullptr)) {}

Timer& Timer::operator=(Timer&& other) noexcept {
    if (this != &other) {
        cancel();
        withdraw_ = std::exchange(other.withdraw_, nullptr);
    }
    return *this;
}

Timer::~Timer() {
    cancel();
}

void Timer::cancel() noexcept {
    if (const auto withdraw = std::exchange(withdraw_, nullptr)) {
        withdraw();
    }
}

void Timer::detach() noexcept {
    withdraw_ = nullptr;
}

bool TimerService::sleep(std::chrono::duration<double> duration, const CancellationToken& token) {
    const auto sleep = std::make_shared<Sleep>();
    const CancellationRegistration registration =
        token.onCancel([sleep] { sleep->end(Sleep::State::cut); });
    const Timer timer = after(duration, [sleep] { sleep->end(Sleep::State::over); });
    std::unique_lock lock(sleep->mutex);
    sleep->woken.wait(lock, [&sleep] { return sleep->state != Sleep::State::asleep; });
    return sleep->state == Sleep::State::over;
}

TimerService& TimerService::system() {
    // Never destroyed: its thread may still serve while the process ends.
    static SystemTimers* const timers = new SystemTimers;
    return *timers;
}

} // namespace ostrella
