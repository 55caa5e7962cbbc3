#include "Solver/Tools/LineDecoding.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using namespace std::string_literals;

struct Case {
    std::string bytes;
    std::string text;
};

TEST(LineDecoding, keepsValidText) {
    for (const std::string& text : {""s, "plain"s, "Größe · 3 × 10⁻⁵ m"s, "\U0001F600"s, "a\0b"s,
             "\uFEFFmarked"s, "\uFFFD"s, "\U0010FFFF"s}) {
        EXPECT_EQ(LineDecoding::decoded(text), text);
    }
}

TEST(LineDecoding, replacesEachLongestInvalidPieceByOneCharacter) {
    const Case cases[] = {
        {"a\xFFz", "a\uFFFDz"},
        {"\x80\x80", "\uFFFD\uFFFD"},
        // A three-byte character without its last byte is one piece; so is one without two of four.
        {"\xE2\x82z", "\uFFFDz"},
        {"\xF0\x9F", "\uFFFD"},
        // Overlong forms, a surrogate and a value beyond the last character: no byte continues.
        {"\xC0\xAF", "\uFFFD\uFFFD"},
        {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        // The piece ends where a valid character begins.
        {"\xE2\x82\xC3\xA9", "\uFFFDé"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(LineDecoding::decoded(one.bytes), one.text);
    }
}

TEST(LineDecoding, removesOneCarriageReturnAtTheEnd) {
    EXPECT_EQ(LineDecoding::line("abc\r"), "abc");
    EXPECT_EQ(LineDecoding::line("abc\r\r"), "abc\r");
    EXPECT_EQ(LineDecoding::line("10 %\r20 %\rdone"), "10 %\r20 %\rdone");
}

TEST(LineDecoding, dropsLinesOfBlanksAndTabsOnly) {
    for (const std::string& blank : {""s, " "s, "\t \t"s, "\r"s, "  \r"s, "\u00A0\u3000"s}) {
        EXPECT_EQ(LineDecoding::line(blank), std::nullopt);
    }
    EXPECT_EQ(LineDecoding::line("  indented \t"), "  indented \t");
    EXPECT_EQ(LineDecoding::line("\v"), "\v");
}

} // namespace
} // namespace ostrella
