#include "ConfigValue.h"

#include "Failure.h"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace ostrella::preview {

bool readNumber(std::string_view text, double& value) {
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto result = fast_float::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() &&
           std::isfinite(value);
}

std::string upper(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return result;
}

ConfigValue::ConfigValue(std::string name, std::string_view text)
    : name_(std::move(name)), text_(text) {
    constexpr std::string_view separators = " \t\r\n(),{};";
    std::size_t at = 0;
    while ((at = text.find_first_not_of(separators, at)) != std::string_view::npos) {
        const std::size_t end = text.find_first_of(separators, at);
        words_.emplace_back(text.substr(at, end - at));
        if (end == std::string_view::npos)
            break;
        at = end;
    }
}

void ConfigValue::refuse(const std::string& reason) const {
    throw Failure(fmt::format("{}= {}: {}", name_, text_, reason));
}

const std::string& ConfigValue::word() const {
    if (words_.size() != 1)
        refuse("one value is expected.");
    return words_.front();
}

std::string ConfigValue::keyword() const {
    return upper(word());
}

std::vector<std::string> ConfigValue::keywords() const {
    std::vector<std::string> result;
    for (const auto& each : words_)
        result.push_back(upper(each));
    return result;
}

double ConfigValue::number() const {
    double value = 0;
    if (!readNumber(word(), value))
        refuse("a finite number is expected.");
    return value;
}

double ConfigValue::positive() const {
    const double value = number();
    if (!(value > 0))
        refuse("a number above 0 is expected.");
    return value;
}

std::vector<double> ConfigValue::numbers() const {
    std::vector<double> result;
    for (const auto& each : words_) {
        double value = 0;
        if (!readNumber(each, value))
            refuse("finite numbers are expected.");
        result.push_back(value);
    }
    return result;
}

int ConfigValue::integer(int least) const {
    const double value = number();
    if (value != std::floor(value) || value < least || value > std::numeric_limits<int>::max())
        refuse(fmt::format("a whole number of at least {} is expected.", least));
    return static_cast<int>(value);
}

bool ConfigValue::flag() const {
    const std::string value = keyword();
    if (value != "YES" && value != "NO" && value != "TRUE" && value != "FALSE" && value != "1" &&
        value != "0")
        refuse("YES or NO is expected.");
    return value == "YES" || value == "TRUE" || value == "1";
}

} // namespace ostrella::preview
