#include "Update/VersionOrder.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ostrella::VersionOrder {

namespace {

enum class Kind { separator, number, word };

struct Token {
    Kind kind = Kind::separator;
    std::string_view text;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// ASCII white space and punctuation; the bytes of other characters count as letters.
bool isSeparator(char c) {
    const auto code = static_cast<unsigned char>(c);
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return code < 0x80 && !isLetter && !isDigit(c);
}

Kind kindOf(char c) {
    if (isDigit(c)) {
        return Kind::number;
    }
    return isSeparator(c) ? Kind::separator : Kind::word;
}

/// Compares two runs of digits, each of any length; an empty one is 0.
std::weak_ordering compareNumbers(std::string_view a, std::string_view b) {
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    if (a.size() != b.size()) {
        return a.size() <=> b.size();
    }
    return a <=> b;
}

/// A version in the two parts that are compared by rules of their own.
struct Version {
    /// The numbers between the periods it begins with.
    std::vector<std::string_view> numbers;
    /// What follows them: "b", "1", " (", "1234", ")".
    std::vector<Token> rest;

    explicit Version(std::string_view text) {
        text = text.substr(0, text.find('-'));
        const auto headEnd = std::find_if_not(
            text.begin(), text.end(), [](char c) { return isDigit(c) || c == '.'; });
        auto head = text.substr(0, static_cast<std::size_t>(headEnd - text.begin()));
        text.remove_prefix(head.size());
        for (auto period = head.find('.'); period != head.npos; period = head.find('.')) {
            numbers.push_back(head.substr(0, period));
            head.remove_prefix(period + 1);
        }
        numbers.push_back(head);
        while (!text.empty()) {
            const Kind kind = kindOf(text.front());
            std::size_t length = 1;
            while (length < text.size() && kindOf(text[length]) == kind) {
                ++length;
            }
            rest.push_back({kind, text.substr(0, length)});
            text.remove_prefix(length);
        }
    }
};

std::weak_ordering compareTokens(const Token& a, const Token& b) {
    if (a.kind != b.kind) {
        // A word is the least, then what separates, then a number.
        const auto rank = [](Kind kind) {
            return kind == Kind::word ? 0 : kind == Kind::separator ? 1 : 2;
        };
        return rank(a.kind) <=> rank(b.kind);
    }
    switch (a.kind) {
    case Kind::number:
        return compareNumbers(a.text, b.text);
    case Kind::word:
        return a.text <=> b.text;
    case Kind::separator:
        break;
    }
    return std::weak_ordering::equivalent;
}

} // namespace

std::weak_ordering compare(std::string_view a, std::string_view b) {
    const Version left(a);
    const Version right(b);
    const auto numberOf = [](const Version& version, std::size_t i) {
        return i < version.numbers.size() ? version.numbers[i] : std::string_view();
    };
    for (std::size_t i = 0; i < std::max(left.numbers.size(), right.numbers.size()); ++i) {
        if (const auto order = compareNumbers(numberOf(left, i), numberOf(right, i)); order != 0) {
            return order;
        }
    }
    const std::size_t common = std::min(left.rest.size(), right.rest.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (const auto order = compareTokens(left.rest[i], right.rest[i]); order != 0) {
            return order;
        }
    }
    if (left.rest.size() == right.rest.size()) {
        return std::weak_ordering::equivalent;
    }
    const bool leftIsLonger = left.rest.size() > right.rest.size();
    const bool longerIsOlder = (leftIsLonger ? left : right).rest[common].kind == Kind::word;
    return leftIsLonger == longerIsOlder ? std::weak_ordering::less : std::weak_ordering::greater;
}

bool isNewer(std::string_view candidate, std::string_view present) {
    return compare(candidate, present) > 0;
}

} // namespace ostrella::VersionOrder
