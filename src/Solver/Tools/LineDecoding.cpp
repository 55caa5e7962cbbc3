#include "Solver/Tools/LineDecoding.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ostrella::LineDecoding {

namespace {

constexpr std::string_view replacement = "\uFFFD";

/// Every character of the general category "space separator", and the tab.
constexpr std::array<std::string_view, 18> blanks{" ", "\t", "\u00A0", "\u1680", "\u2000", "\u2001",
    "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
    "\u202F", "\u205F", "\u3000"};

unsigned char at(std::string_view bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

/// What may follow a leading byte: how many bytes, and the range of the first of them, which keeps
/// out overlong forms, surrogates and values beyond U+10FFFF (table 3-7 of the standard).
struct Sequence {
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
};

Sequence sequence(unsigned char lead) {
    if (lead < 0x80) {
        return {.length = 1};
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {.length = 2};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {.length = 3,
            .low = static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            .high = static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {.length = 4,
            .low = static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
            .high = static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

/// Length of the valid beginning of the sequence at `start`, at least 1.
std::size_t validLength(std::string_view bytes, std::size_t start, const Sequence& expected) {
    std::size_t length = 1;
    while (length < expected.length && start + length < bytes.size()) {
        const unsigned char next = at(bytes, start + length);
        const bool fits = length == 1 ? next >= expected.low && next <= expected.high
                                      : next >= 0x80 && next <= 0xBF;
        if (!fits) {
            break;
        }
        ++length;
    }
    return length;
}

bool isBlank(std::string_view text) {
    while (!text.empty()) {
        const auto* const blank = std::find_if(blanks.begin(), blanks.end(),
            [text](std::string_view candidate) { return text.starts_with(candidate); });
        if (blank == blanks.end()) {
            return false;
        }
        text.remove_prefix(blank->size());
    }
    return true;
}

} // namespace

std::string decoded(std::string_view bytes) {
    const bool isASCII = std::all_of(
        bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (isASCII) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const Sequence expected = sequence(at(bytes, i));
        const std::size_t length = validLength(bytes, i, expected);
        text += length == expected.length ? bytes.substr(i, length) : replacement;
        i += length;
    }
    return text;
}

std::optional<std::string> line(std::string_view bytes) {
    std::string text = decoded(bytes);
    if (text.ends_with('\r')) {
        text.pop_back();
    }
    if (isBlank(text)) {
        return std::nullopt;
    }
    return text;
}

} // namespace ostrella::LineDecoding
