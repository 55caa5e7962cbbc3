#include "Views/Format/NumberField.h"

#include "Models/NumberFormatting.h"
#include "Models/ParameterTable.h"
#include "Models/UTF8.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

std::string_view withoutBlanks(std::string_view text) {
    while (const std::size_t bytes = UTF8::blank(text)) {
        text.remove_prefix(bytes);
    }
    // What follows is a number only if it is ASCII, so any other blank at the end is found by where
    // a well-formed character begins.
    while (!text.empty()) {
        std::size_t begin = text.size() - 1;
        while (begin > 0 && (static_cast<unsigned char>(text[begin]) & 0xC0U) == 0x80U) {
            --begin;
        }
        if (UTF8::blank(text.substr(begin)) != text.size() - begin) {
            break;
        }
        text = text.substr(0, begin);
    }
    return text;
}

} // namespace

NumberField NumberField::of(const ParameterInfo& info, int fewestDigits, int mostDigits) {
    return {info.minimum, info.maximum, fewestDigits, mostDigits};
}

double NumberField::inRange(double value) const {
    return std::isfinite(value) ? std::clamp(value, from, to) : from;
}

std::string NumberField::text(double value) const {
    std::string text = NumberFormatting::fixed(inRange(value), mostDigits);
    const std::size_t point = text.find('.');
    if (point == std::string::npos) {
        return text;
    }
    const std::size_t shortest = point + 1 + static_cast<std::size_t>(std::max(fewestDigits, 0));
    while (text.size() > shortest && text.back() == '0') {
        text.pop_back();
    }
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

std::optional<double> NumberField::number(std::string_view text) {
    if (!UTF8::isValid(text)) {
        return std::nullopt;
    }
    text = withoutBlanks(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    // Neither "inf" nor "nan": those are letters.
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
        return std::nullopt;
    }
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = fast_float::from_chars(text.data(), end, value);
    if (parsed != end || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> NumberField::value(std::string_view text) const {
    const auto number = NumberField::number(text);
    return number ? std::optional(inRange(*number)) : std::nullopt;
}

} // namespace ostrella
