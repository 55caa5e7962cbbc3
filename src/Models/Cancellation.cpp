#include "Models/Cancellation.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>

namespace ostrella {

namespace detail {

class CancellationState {
public:
    bool isCancelled() const noexcept { return cancelled_.load(std::memory_order_acquire); }

    void cancel() {
        std::map<std::uint64_t, std::function<void()>> callbacks;
        {
            const std::lock_guard lock(mutex_);
            if (cancelled_.exchange(true, std::memory_order_acq_rel)) {
                return;
            }
            callbacks.swap(callbacks_);
        }
        for (const auto& [id, callback] : callbacks) {
            callback();
        }
    }

    /// The registration's number, or 0 if the cancellation has come already.
    std::uint64_t add(std::function<void()>& callback) {
        const std::lock_guard lock(mutex_);
        if (isCancelled()) {
            return 0;
        }
        callbacks_.emplace(++lastID_, std::move(callback));
        return lastID_;
    }

    void remove(std::uint64_t id) noexcept {
        const std::lock_guard lock(mutex_);
        callbacks_.erase(id);
    }

private:
    std::mutex mutex_;
    std::atomic<bool> cancelled_ = false;
    std::uint64_t lastID_ = 0;
    std::map<std::uint64_t, std::function<void()>> callbacks_;
};

} // namespace detail

CancellationRegistration::CancellationRegistration(
    std::weak_ptr<detail::CancellationState> state, std::uint64_t id)
    : state_(std::move(state)), id_(id) {}

CancellationRegistration::CancellationRegistration(CancellationRegistration&& other) noexcept
    : state_(std::move(other.state_)), id_(std::exchange(other.id_, 0)) {}

CancellationRegistration& CancellationRegistration::operator=(
    CancellationRegistration&& other) noexcept {
    if (this != &other) {
        withdraw();
        state_ = std::move(other.state_);
        id_ = std::exchange(other.id_, 0);
    }
    return *this;
}

CancellationRegistration::~CancellationRegistration() {
    withdraw();
}

void CancellationRegistration::withdraw() noexcept {
    if (id_ == 0) {
        return;
    }
    if (const auto state = state_.lock()) {
        state->remove(id_);
    }
    id_ = 0;
}

CancellationToken::CancellationToken(std::shared_ptr<detail::CancellationState> state)
    : state_(std::move(state)) {}

bool CancellationToken::isCancelled() const noexcept {
    return state_ && state_->isCancelled();
}

void CancellationToken::throwIfCancelled() const {
    if (isCancelled()) {
        throw CancellationError();
    }
}

CancellationRegistration CancellationToken::onCancel(std::function<void()> callback) const {
    if (!state_) {
        return {};
    }
    const std::uint64_t id = state_->add(callback);
    if (id == 0) {
        callback();
        return {};
    }
    return CancellationRegistration(state_, id);
}

CancellationSource::CancellationSource() : state_(std::make_shared<detail::CancellationState>()) {}

CancellationToken CancellationSource::token() const {
    return CancellationToken(state_);
}

bool CancellationSource::isCancelled() const noexcept {
    return state_->isCancelled();
}

void CancellationSource::cancel() const {
    state_->cancel();
}

} // namespace ostrella
