#pragma once

#include "Views/Panel/LogRow.h"

#include <algorithm>
#include <compare>
#include <cstddef>

namespace ostrella {

/// A place in the log's text: a line, by its place in the whole log, and a position in it.
struct LogPlace {
    std::size_t number = 0;
    qsizetype position = 0;

    auto operator<=>(const LogPlace&) const = default;
};

/// What is selected of the log's text, from where the user began to where the pointer is, either of
/// which may come first.
class LogSelection {
public:
    bool empty() const { return anchor_ == cursor_; }
    LogPlace from() const { return std::min(anchor_, cursor_); }
    LogPlace to() const { return std::max(anchor_, cursor_); }

    void clear() { anchor_ = cursor_ = {}; }
    void begin(LogPlace place) { anchor_ = cursor_ = place; }
    void extend(LogPlace place) { cursor_ = place; }
    void set(LogPlace from, LogPlace to) {
        anchor_ = from;
        cursor_ = to;
    }

    /// What of a line of `length` is selected.
    LogRow::Span within(std::size_t number, qsizetype length) const;

private:
    LogPlace anchor_;
    LogPlace cursor_;
};

} // namespace ostrella
