#include "Solver/Flow/VTKScanner.h"

#include "Models/NumberWord.h"
#include "Solver/Flow/VTKParseError.h"

#include <fmt/format.h>

#include <charconv>
#include <system_error>

namespace ostrella {

namespace {

using QuickNumber::isBlank;

std::optional<std::int64_t> integerWord(std::string_view word) {
    const char* first = word.data();
    const char* const end = first + word.size();
    // from_chars knows the minus alone.
    if (word.starts_with('+') && !word.starts_with("+-"))
        ++first;
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(first, end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

} // namespace

void VTKScanner::rewind() {
    at_ = begin_;
    past_ = 0;
    skipBlanks();
}

std::string_view VTKScanner::word() const {
    if (isAtEnd())
        return {};
    const char* end = at_;
    while (!isBlank(*end))
        ++end;
    return {at_, static_cast<std::size_t>(end - at_)};
}

void VTKScanner::skip() {
    if (isAtEnd()) {
        ++past_;
        return;
    }
    while (!isBlank(*at_))
        ++at_;
    skipBlanks();
}

bool VTKScanner::find(std::string_view wanted) {
    const std::string_view text(begin_, static_cast<std::size_t>(beyond_ - begin_));
    auto place = static_cast<std::size_t>(at_ - begin_);
    // Numbers hold no capital letters, so the look for the first one passes over them in bulk.
    while ((place = text.find(wanted, place)) != std::string_view::npos) {
        const bool startsWord = place == 0 || isBlank(text[place - 1]);
        if (startsWord && isBlank(text[place + wanted.size()])) {
            at_ = begin_ + place;
            return true;
        }
        ++place;
    }
    at_ = beyond_;
    return false;
}

std::optional<std::int64_t> VTKScanner::takeIntegerIfAny() {
    const auto value = integerWord(word());
    if (value)
        skip();
    return value;
}

std::int64_t VTKScanner::takeUnusualInteger() {
    if (const auto value = takeIntegerIfAny())
        return *value;
    throw VTKParseError::malformed(fmt::format("expected int at token {}", tokenNumber()));
}

float VTKScanner::takeUnusualFloat() {
    const auto value = floatWord(word());
    if (!value)
        throw VTKParseError::malformed(fmt::format("expected float at token {}", tokenNumber()));
    skip();
    return *value;
}

std::size_t VTKScanner::tokenNumber() const {
    std::size_t count = past_;
    bool wasBlank = true;
    for (const char* byte = begin_; byte != at_; ++byte) {
        const bool blank = isBlank(*byte);
        count += wasBlank && !blank ? 1 : 0;
        wasBlank = blank;
    }
    return count;
}

} // namespace ostrella
