#include "Models/NumberWord.h"

#include <fast_float/fast_float.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <system_error>

#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

namespace ostrella {

namespace {

/// The point is the decimal mark in files, whatever the user's language is.
locale_t plainLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

bool isBlankToStrtof(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

std::optional<float> floatWord(std::string_view word) {
    if (word.empty())
        return std::nullopt;
    float value = 0.0F;
    const char* end = word.data() + word.size();
    const auto quick = fast_float::from_chars(word.data(), end, value);
    if (quick.ec == std::errc() && quick.ptr == end)
        return value;
    if (isBlankToStrtof(word.front()))
        return std::nullopt;
    const std::string terminated(word);
    char* stop = nullptr;
    value = strtof_l(terminated.c_str(), &stop, plainLocale());
    if (stop != terminated.c_str() + terminated.size())
        return std::nullopt;
    return value;
}

} // namespace ostrella
