#pragma once

#include <optional>
#include <utility>

namespace ostrella {

/// How the log keeps its place: it follows the newest line until the user scrolls away, and takes
/// up following again once the user is back at the end. `LineID` is what tells lines apart.
template <class LineID>
class LogFollowing {
public:
    /// The newest lines on show bring the place along while the log follows.
    bool isFollowing() const { return isFollowing_; }

    /// The line at the bottom edge; absent at first.
    const std::optional<LineID>& position() const { return position_; }

    /// Another list is on show, or a longer one: its last line and the one before. A list that ends
    /// in a new line takes the place along if the log follows, or if the place was at the end of
    /// the list before.
    void linesChanged(std::optional<LineID> last, std::optional<LineID> nextToLast) {
        const auto previous = std::exchange(last_, std::move(last));
        nextToLast_ = std::move(nextToLast);
        if (!last_ || last_ == previous) {
            return;
        }
        if (isFollowing_ || !position_ || position_ == previous) {
            moveTo(last_);
        }
    }

    /// The user has scrolled to another line, or away from every line.
    void scrolledTo(std::optional<LineID> position) { moveTo(std::move(position)); }

    /// Switches following on or off; on, it goes to the end.
    void setFollowing(bool isOn) {
        if (std::exchange(isFollowing_, isOn) == isOn || !isOn || !last_) {
            return;
        }
        moveTo(last_);
    }

private:
    void moveTo(std::optional<LineID> position) {
        if (position == position_) {
            return;
        }
        position_ = std::move(position);
        if (position_) {
            setFollowing(position_ == last_ || position_ == nextToLast_);
        }
    }

    bool isFollowing_ = true;
    std::optional<LineID> position_;
    std::optional<LineID> last_;
    std::optional<LineID> nextToLast_;
};

} // namespace ostrella
