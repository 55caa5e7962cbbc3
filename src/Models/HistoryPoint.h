#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace ostrella {

/// The name of a series, held once per process and compared by address, so that a history of a
/// million points costs no million strings. Safe on every thread; names are never given back, as a
/// solver has a few dozen of them.
class SeriesName {
public:
    /// The empty name.
    SeriesName();
    template <class Text>
    requires std::is_convertible_v<const Text&, std::string_view> SeriesName(const Text& text)
        : text_(interned(text)) {}

    const std::string& string() const { return *text_; }
    operator std::string_view() const { return *text_; }

    friend bool operator==(SeriesName a, SeriesName b) { return a.text_ == b.text_; }

private:
    static const std::string* interned(std::string_view text);

    const std::string* text_;
};

/// One value of one series.
struct HistoryPoint {
    SeriesName label;
    /// The solver's own count, from 0.
    std::int64_t iter = 0;
    double value = 0;

    /// Identity in lists: label, "#", iteration.
    std::string id() const;

    bool operator==(const HistoryPoint&) const = default;
};

} // namespace ostrella
