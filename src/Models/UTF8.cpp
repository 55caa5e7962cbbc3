#include "Models/UTF8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ostrella::UTF8 {

namespace {

unsigned char byteAt(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

/// The bytes of the well-formed character at the start of `text`, 0 if it is ill-formed. The table
/// is "Well-Formed UTF-8 Byte Sequences" of the Unicode Standard, chapter 3.
std::size_t characterSize(std::string_view text) {
    const unsigned char lead = byteAt(text, 0);
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < size)
        return 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    switch (lead) {
    case 0xE0:
        low = 0xA0;
        break;
    case 0xED:
        high = 0x9F;
        break;
    case 0xF0:
        low = 0x90;
        break;
    case 0xF4:
        high = 0x8F;
        break;
    default:
        break;
    }
    if (byteAt(text, 1) < low || byteAt(text, 1) > high)
        return 0;
    for (std::size_t i = 2; i < size; ++i)
        if ((byteAt(text, i) & 0xC0) != 0x80)
            return 0;
    return size;
}

} // namespace

bool isASCII(std::string_view text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    constexpr std::ptrdiff_t group = 128; // long enough for whole vector registers
    for (; end - at >= group; at += group) {
        unsigned char all = 0;
        for (std::ptrdiff_t i = 0; i < group; ++i)
            all |= static_cast<unsigned char>(at[i]);
        if (all >= 0x80)
            return false;
    }
    return std::all_of(at, end, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isValid(std::string_view text) {
    while (!text.empty()) {
        std::uint64_t word = 0;
        while (text.size() >= sizeof word) {
            std::memcpy(&word, text.data(), sizeof word);
            if ((word & 0x8080808080808080U) != 0)
                break;
            text.remove_prefix(sizeof word);
        }
        if (text.empty())
            return true;
        const std::size_t size = characterSize(text);
        if (size == 0)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

std::size_t lineEnd(std::string_view text) {
    if (text.empty())
        return 0;
    switch (byteAt(text, 0)) {
    case '\n':
        return 1;
    case '\r':
        return text.size() > 1 && text[1] == '\n' ? 2 : 1;
    case 0xC2:
        return byteAt(text, 1) == 0x85 ? 2 : 0;
    case 0xE2:
        return byteAt(text, 1) == 0x80 && (byteAt(text, 2) == 0xA8 || byteAt(text, 2) == 0xA9) ? 3
                                                                                               : 0;
    default:
        return 0;
    }
}

std::size_t blank(std::string_view text) {
    if (text.empty())
        return 0;
    const unsigned char lead = byteAt(text, 0);
    if (lead == ' ' || lead == '\t')
        return 1;
    if (lead == 0xC2) // U+00A0
        return byteAt(text, 1) == 0xA0 ? 2 : 0;
    if (lead != 0xE1 && lead != 0xE2 && lead != 0xE3)
        return 0;
    const unsigned code =
        (lead & 0x0FU) << 12 | (byteAt(text, 1) & 0x3FU) << 6 | (byteAt(text, 2) & 0x3FU);
    const bool isSpace = code == 0x1680 || (code >= 0x2000 && code <= 0x200A) || code == 0x202F ||
                         code == 0x205F || code == 0x3000;
    return isSpace ? 3 : 0;
}

std::size_t whiteSpace(std::string_view text) {
    if (text.empty())
        return 0;
    if (text[0] == ' ' || (text[0] >= '\t' && text[0] <= '\r'))
        return 1;
    const std::size_t space = blank(text);
    return space != 0 ? space : lineEnd(text);
}

} // namespace ostrella::UTF8
