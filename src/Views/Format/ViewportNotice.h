#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace ostrella {

/// The one short-lived notice of the viewport. Each lives for its own time: a newer one takes the
/// place of the one before, whose end then no longer counts.
class ViewportNotice {
public:
    /// Seconds that a notice stands, and that it takes to fade.
    static constexpr double seconds = 3;
    static constexpr double fadeSeconds = 0.4;

    struct Notice {
        std::int64_t id = 0;
        std::string text;

        bool operator==(const Notice&) const = default;
    };

    /// Shows a text and gives the notice's identity, for its end.
    std::int64_t show(std::string text) {
        current_ = Notice{++lastID_, std::move(text)};
        return lastID_;
    }

    /// The time of a notice is over; false if another one stands by now, or none.
    bool expire(std::int64_t id) {
        if (!current_ || current_->id != id) {
            return false;
        }
        current_.reset();
        return true;
    }

    const std::optional<Notice>& current() const { return current_; }

private:
    std::int64_t lastID_ = 0;
    std::optional<Notice> current_;
};

} // namespace ostrella
