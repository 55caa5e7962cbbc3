#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>

namespace ostrella {

/// Thrown where work was stopped because somebody asked for it. It is never wrapped in another
/// error.
class CancellationError final : public std::exception {
public:
    const char* what() const noexcept override { return "The operation was cancelled."; }
};

namespace detail {
class CancellationState;
}

/// Keeps a callback registered with a token; the destructor withdraws it.
class CancellationRegistration {
public:
    CancellationRegistration() = default;
    CancellationRegistration(CancellationRegistration&& other) noexcept;
    CancellationRegistration& operator=(CancellationRegistration&& other) noexcept;
    CancellationRegistration(const CancellationRegistration&) = delete;
    CancellationRegistration& operator=(const CancellationRegistration&) = delete;
    ~CancellationRegistration();

private:
    friend class CancellationToken;
    CancellationRegistration(std::weak_ptr<detail::CancellationState> state, std::uint64_t id);
    void withdraw() noexcept;

    std::weak_ptr<detail::CancellationState> state_;
    std::uint64_t id_ = 0;
};

/// The reading end of a cancellation: cheap to copy, safe on every thread. A default token is never
/// cancelled.
class CancellationToken {
public:
    CancellationToken() = default;

    bool isCancelled() const noexcept;
    /// Throws CancellationError if the work is to stop.
    void throwIfCancelled() const;
    /// Calls `callback` once, on the cancelling thread, when the cancellation comes; at once and on
    /// this thread if it has come already. The callback must own what it touches.
    [[nodiscard]] CancellationRegistration onCancel(std::function<void()> callback) const;

private:
    friend class CancellationSource;
    explicit CancellationToken(std::shared_ptr<detail::CancellationState> state);

    std::shared_ptr<detail::CancellationState> state_;
};

/// The writing end of a cancellation. Copies share one state.
class CancellationSource {
public:
    CancellationSource();

    CancellationToken token() const;
    bool isCancelled() const noexcept;
    /// Sets the state and calls what is registered. A second call does nothing.
    void cancel() const;

private:
    std::shared_ptr<detail::CancellationState> state_;
};

} // namespace ostrella
