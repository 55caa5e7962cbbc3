#include "Solver/Flow/QuickNumber.h"

#include "Models/NumberWord.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>

#include <locale.h>

namespace ostrella {

namespace {

/// The number by the short road, nothing where it leaves the word to the long one.
std::optional<float> quickly(const std::string& word) {
    const std::string text = word + " " + std::string(16, '\0');
    const char* at = text.data();
    float value = 0.0F;
    if (!QuickNumber::decimal(at, value)) {
        EXPECT_EQ(at, text.data());
        return std::nullopt;
    }
    EXPECT_EQ(at, text.data() + word.size());
    return value;
}

/// The short road must give what the C library gives, or nothing. True if it gave something.
bool agrees(const std::string& word) {
    const auto quick = quickly(word);
    if (!quick)
        return false;
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    const float slow = strtof_l(word.c_str(), &end, plain);
    EXPECT_EQ(end, word.c_str() + word.size()) << word;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(*quick), std::bit_cast<std::uint32_t>(slow)) << word;
    return true;
}

class RandomWords {
public:
    explicit RandomWords(std::uint32_t seed) : random_(seed) {}

    int upTo(int most) { return static_cast<int>(random_() % (static_cast<unsigned>(most) + 1)); }

    float anyFloat() { return std::bit_cast<float>(static_cast<std::uint32_t>(random_())); }

    std::string digits(int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += static_cast<char>('0' + upTo(9));
        return text;
    }

    /// Something like a decimal number: sign, digits, point and exponent come and go.
    std::string decimal() {
        std::string word = std::string(1, "+- "[upTo(2)]);
        if (word == " ")
            word.clear();
        word += digits(upTo(upTo(1) == 0 ? 3 : 12));
        if (upTo(3) != 0)
            word += "." + digits(upTo(upTo(1) == 0 ? 7 : 14));
        if (upTo(1) == 0)
            word += fmt::format("{}{}{}", "eE"[upTo(1)], upTo(1) == 0 ? "-" : "", upTo(45));
        return word;
    }

private:
    std::mt19937 random_;
};

TEST(QuickNumber, SolversFloatsAgreeWithTheCLibrary) {
    RandomWords random(1);
    int quick = 0;
    constexpr int count = 400000;
    for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
        const float value = static_cast<float>(random.upTo(2000000) - 1000000) *
                            std::pow(10.0F, static_cast<float>(random.upTo(24) - 20));
        quick += agrees(fmt::format("{:.6e}", value)) ? 1 : 0;
    }
    EXPECT_EQ(quick, count) << "what solvers write takes the short road";
}

TEST(QuickNumber, AnyFloatInAnyFormAgreesWithTheCLibrary) {
    RandomWords random(2);
    int quick = 0;
    for (int i = 0; i < 500000 && !testing::Test::HasFailure(); ++i) {
        const float value = random.anyFloat();
        if (!std::isfinite(value))
            continue;
        quick += agrees(fmt::format("{:.9g}", value)) ? 1 : 0;
        quick += agrees(fmt::format("{:.6e}", value)) ? 1 : 0;
        quick += agrees(fmt::format("{}", value)) ? 1 : 0;
        quick += agrees(fmt::format("{:.16e}", static_cast<double>(value))) ? 1 : 0;
    }
    EXPECT_GT(quick, 300000);
}

TEST(QuickNumber, ValuesNearTheMiddleOfTwoFloatsAgreeWithTheCLibrary) {
    RandomWords random(3);
    int quick = 0;
    for (int i = 0; i < 300000 && !testing::Test::HasFailure(); ++i) {
        const auto low = static_cast<std::uint32_t>(0x20000000 + random.upTo(0x3FFFFFFF));
        const double middle = (static_cast<double>(std::bit_cast<float>(low)) +
                                  static_cast<double>(std::bit_cast<float>(low + 1))) /
                              2;
        for (const int precision : {6, 8, 10, 12, 14, 16})
            quick += agrees(fmt::format("{:.{}e}", middle, precision)) ? 1 : 0;
    }
    EXPECT_GT(quick, 300000);
}

TEST(QuickNumber, WordsOfAllShapesAgreeWithTheCLibrary) {
    RandomWords random(4);
    int quick = 0;
    for (int i = 0; i < 2000000 && !testing::Test::HasFailure(); ++i)
        quick += agrees(random.decimal()) ? 1 : 0;
    EXPECT_GT(quick, 1000000);
}

TEST(QuickNumber, NoOneByteChangeMakesItAcceptWhatIsNoNumber) {
    for (const std::string word : {"-1.234567e+05", "1.234567", "12345", "0.5e1"})
        for (std::size_t place = 0; place < word.size(); ++place)
            for (int byte = 0; byte < 256; ++byte) {
                std::string other = word;
                other[place] = static_cast<char>(byte);
                if (!QuickNumber::isBlank(other[place]) && quickly(other)) {
                    EXPECT_EQ(quickly(other), floatWord(other)) << other;
                }
            }
}

std::optional<std::int64_t> quickInteger(const std::string& word) {
    const std::string text = word + "\n" + std::string(16, '\0');
    const char* at = text.data();
    std::int64_t value = 0;
    if (!QuickNumber::integer(at, value)) {
        EXPECT_EQ(at, text.data());
        return std::nullopt;
    }
    EXPECT_EQ(at, text.data() + word.size());
    return value;
}

TEST(QuickNumber, IntegersOfUpToSevenDigits) {
    for (std::int64_t number = 0; number < 10000000; number += number < 100000 ? 1 : 997) {
        ASSERT_EQ(quickInteger(fmt::format("{}", number)), number);
        if (number < 10000) {
            ASSERT_EQ(quickInteger(fmt::format("{:07}", number)), number);
        }
    }
    EXPECT_EQ(quickInteger("9999999"), 9999999);
}

TEST(QuickNumber, OtherIntegersAreLeftToTheLongRoad) {
    for (const char* word : {"", "-1", "+1", "12345678", "1.0", "1e3", "x", "12x", "1/", "1:"})
        EXPECT_EQ(quickInteger(word), std::nullopt) << word;
}

TEST(QuickNumber, NoOtherByteIsTakenForADigit) {
    for (std::size_t place = 0; place < 5; ++place)
        for (int byte = 0; byte < 256; ++byte) {
            std::string word = "12345";
            word[place] = static_cast<char>(byte);
            const bool isDigit = byte >= '0' && byte <= '9';
            if (!QuickNumber::isBlank(word[place])) {
                EXPECT_EQ(quickInteger(word).has_value(), isDigit) << place << ' ' << byte;
            }
        }
}

} // namespace

} // namespace ostrella
