#pragma once

#include "Solver/Flow/QuickNumber.h"
#include "Solver/Flow/VTKText.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrella {

/// A cursor over the words of a text, which are what stands between white space. It keeps no list
/// of them: a word's number, counted from zero, is found by counting where an error asks for it.
/// Lives no longer than the text.
class VTKScanner {
public:
    explicit VTKScanner(const VTKText& text)
        : begin_(text.begin()), beyond_(text.end() + 1), at_(begin_) {
        skipBlanks();
    }

    /// Back to the first word.
    void rewind();

    bool isAtEnd() const { return at_ == beyond_; }

    /// The word at the cursor, empty at the end.
    std::string_view word() const;

    /// Moves on by one word. Behind the last word it goes on counting.
    void skip();

    /// Moves on to the next word that equals `wanted`, which is not empty; false, and the cursor at
    /// the end, if there is none.
    bool find(std::string_view wanted);

    /// Takes the integer at the cursor: a sign or none, then ASCII digits, within 64 bits. Nothing,
    /// and the cursor where it was, if there is none.
    std::optional<std::int64_t> takeIntegerIfAny();

    /// As takeIntegerIfAny, but throws VTKParseError, "expected int at token N".
    std::int64_t takeInteger() {
        std::int64_t value = 0;
        if (QuickNumber::integer(at_, value)) [[likely]] {
            skipBlanks();
            return value;
        }
        return takeUnusualInteger();
    }

    /// Takes what strtof reads as a whole in the C locale. Throws VTKParseError, "expected float at
    /// token N".
    float takeFloat() {
        float value = 0.0F;
        if (QuickNumber::decimal(at_, value)) [[likely]] {
            skipBlanks();
            return value;
        }
        return takeUnusualFloat();
    }

    /// The number of the word at the cursor, counted from zero. Takes as long as the text is.
    std::size_t tokenNumber() const;

    /// The most numbers that can follow the cursor: each takes a byte, and a blank behind it.
    std::size_t mostNumbersLeft() const { return static_cast<std::size_t>(beyond_ - at_) / 2; }

private:
    /// The byte behind the text's guarding blank is not blank, so this stops there.
    void skipBlanks() {
        while (QuickNumber::isBlank(*at_))
            ++at_;
    }

    std::int64_t takeUnusualInteger();
    float takeUnusualFloat();

    const char* begin_;
    const char* beyond_;   ///< one byte behind the blank that ends the text
    const char* at_;       ///< the start of a word, or `beyond_`
    std::size_t past_ = 0; ///< words that were skipped behind the last
};

} // namespace ostrella
