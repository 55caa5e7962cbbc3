#include "Models/NumberWord.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace ostrella {

namespace {

TEST(NumberWord, WholeNumbersOfEveryFormAreTaken) {
    EXPECT_EQ(floatWord("0"), 0.0F);
    EXPECT_EQ(floatWord("-1.5"), -1.5F);
    EXPECT_EQ(floatWord("+1.5"), 1.5F);
    EXPECT_EQ(floatWord(".5"), 0.5F);
    EXPECT_EQ(floatWord("5."), 5.0F);
    EXPECT_EQ(floatWord("1E+2"), 100.0F);
    EXPECT_EQ(floatWord("0x1p3"), 8.0F);
    EXPECT_EQ(floatWord("+inf"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(floatWord("-INFINITY"), -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(floatWord("NaN").value()));
    EXPECT_TRUE(std::isnan(floatWord("nan(7)").value()));
}

TEST(NumberWord, AnythingElseIsNothing) {
    for (const char* word : {"", "1.5abc", "1,5", "-", "+", ".", "e5", "1e", "0x", "--1", "+-1",
             "1 ", " 1", "\t1", "nan(", "infin", "1.2.3", "1f"})
        EXPECT_EQ(floatWord(word), std::nullopt) << word;
}

TEST(NumberWord, OutOfRangeIsInfinityOrWhatIsLeft) {
    EXPECT_EQ(floatWord("1e99"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(floatWord("-1e99"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(floatWord("1e-99"), 0.0F);
    EXPECT_EQ(floatWord("1e-45"), std::numeric_limits<float>::denorm_min());
}

TEST(NumberWord, ValuesAreThoseOfStrtof) {
    for (const char* word : {"0.1", "3.4028235e38", "3.40282357e38", "16777217", "1.17549435e-38",
             "0.333333333333333333333333333333", "123456789012345678901234567890", "8.589973e9",
             "0.000000000000000000000000000000000000000000012"})
        EXPECT_EQ(floatWord(word), std::strtof(word, nullptr)) << word;
}

TEST(NumberWord, AZeroByteInTheWordIsNoNumber) {
    EXPECT_EQ(floatWord(std::string_view("+1\0", 3)), std::nullopt);
}

} // namespace

} // namespace ostrella
