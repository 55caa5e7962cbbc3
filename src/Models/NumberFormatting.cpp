#include "Models/NumberFormatting.h"

#include "Models/Precondition.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrella::NumberFormatting {

std::string grouped(std::int64_t n) {
    return grouped(n, "\u00A0");
}

std::string grouped(std::int64_t n, std::string_view separator) {
    // The magnitude as an unsigned number, so that the lowest integer has one too.
    const auto bits = static_cast<std::uint64_t>(n);
    const std::string digits = fmt::format("{}", n < 0 ? 0 - bits : bits);
    std::string result = n < 0 ? "-" : "";
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) {
            result += separator;
        }
        result += digits[i];
    }
    return result;
}

std::string fixed(double value, int digits) {
    std::string text = fmt::format("{:.{}f}", value, std::max(digits, 0));
    // Judged by the digits: a number parser would ask the user's language for the decimal mark.
    if (text.starts_with('-') && text.find_first_not_of("0.", 1) == std::string::npos) {
        text.erase(0, 1);
    }
    return text;
}

std::string bytes(std::int64_t n) {
    constexpr std::array units{"KB", "MB", "GB", "TB", "PB"};
    n = std::max<std::int64_t>(n, 0);
    if (n < 1000) {
        return fmt::format("{} bytes", n);
    }
    double value = static_cast<double>(n) / 1000;
    std::size_t unit = 0;
    // 999.95 and not 1000: one decimal would round the rest up to "1000.0".
    while (value >= 999.95 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    return fmt::format("{} {}", fixed(value, 1), units[unit]);
}

std::string duration(double seconds) {
    precondition(std::abs(seconds) < 9.2e18, "a duration is a finite number of whole seconds");
    const auto whole = static_cast<std::int64_t>(std::llround(std::max(seconds, 0.0)));
    if (whole < 60) {
        return fmt::format("{} s", whole);
    }
    if (whole < 3600) {
        return fmt::format("{} min {:02} s", whole / 60, whole % 60);
    }
    return fmt::format("{} h {:02} min", whole / 3600, whole % 3600 / 60);
}

} // namespace ostrella::NumberFormatting
