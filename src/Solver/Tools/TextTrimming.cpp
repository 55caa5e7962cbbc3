#include "Solver/Tools/TextTrimming.h"

#include <array>
#include <span>

namespace ostrella {

namespace {

using Characters = std::span<const std::string_view>;

/// Tab and the category Zs, in UTF-8.
constexpr std::array<std::string_view, 18> blanks{" ", "\t", "\u00A0", "\u1680", "\u2000", "\u2001",
    "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A",
    "\u202F", "\u205F", "\u3000"};
constexpr std::array<std::string_view, 7> lineEnds{
    "\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"};

std::size_t lengthAtFront(std::string_view text, Characters characters) {
    for (const std::string_view character : characters) {
        if (text.starts_with(character)) {
            return character.size();
        }
    }
    return 0;
}

std::size_t lengthAtBack(std::string_view text, Characters characters) {
    for (const std::string_view character : characters) {
        if (text.ends_with(character)) {
            return character.size();
        }
    }
    return 0;
}

std::string_view trimmed(std::string_view text, Characters first, Characters second) {
    const auto either = [&](auto measure) {
        const std::size_t length = measure(text, first);
        return length > 0 ? length : measure(text, second);
    };
    for (std::size_t length = either(lengthAtFront); length > 0; length = either(lengthAtFront)) {
        text.remove_prefix(length);
    }
    for (std::size_t length = either(lengthAtBack); length > 0; length = either(lengthAtBack)) {
        text.remove_suffix(length);
    }
    return text;
}

} // namespace

std::string_view trimmedBlanks(std::string_view text) {
    return trimmed(text, blanks, {});
}

std::string_view trimmedWhiteSpace(std::string_view text) {
    return trimmed(text, blanks, lineEnds);
}

} // namespace ostrella
