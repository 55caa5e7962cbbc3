#include "Models/UTF8.h"

#include <gtest/gtest.h>

#include <string>

namespace ostrella {

namespace {

std::string encoded(unsigned code) {
    const auto tail = [code](
                          int shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80)
        return {static_cast<char>(code)};
    if (code < 0x800)
        return {static_cast<char>(0xC0 | code >> 6), tail(0)};
    if (code < 0x10000)
        return {static_cast<char>(0xE0 | code >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

TEST(UTF8, EveryCharacterButSurrogatesIsValid) {
    for (unsigned code = 0; code < 0x110000; ++code)
        ASSERT_EQ(UTF8::isValid(encoded(code)), code < 0xD800 || code > 0xDFFF) << code;
    EXPECT_FALSE(UTF8::isValid(encoded(0x110000)));
}

TEST(UTF8, EveryPairOfBytesIsJudgedRight) {
    for (unsigned first = 0; first < 256; ++first)
        for (unsigned second = 0; second < 256; ++second) {
            const std::string text = {static_cast<char>(first), static_cast<char>(second)};
            const bool valid = (first < 0x80 && second < 0x80) ||
                               (first >= 0xC2 && first < 0xE0 && second >= 0x80 && second < 0xC0);
            ASSERT_EQ(UTF8::isValid(text), valid) << first << ' ' << second;
        }
}

TEST(UTF8, AFaultIsFoundAtAnyPlaceOfALongText) {
    for (std::size_t place = 0; place < 40; ++place) {
        std::string text(40, 'a');
        text[place] = '\x80';
        EXPECT_FALSE(UTF8::isValid(text)) << place;
    }
    EXPECT_TRUE(UTF8::isValid(std::string(40, 'a')));
    EXPECT_TRUE(UTF8::isValid(""));
}

TEST(UTF8, OneByteMakesATextOtherThanASCIIAtAnyPlace) {
    for (const std::size_t size : {0, 1, 127, 128, 129, 300}) {
        const std::string text(size, '\x7F');
        EXPECT_TRUE(UTF8::isASCII(text)) << size;
        for (std::size_t place = 0; place < size; ++place) {
            std::string other = text;
            other[place] = '\x80';
            ASSERT_FALSE(UTF8::isASCII(other)) << size << ' ' << place;
        }
    }
}

TEST(UTF8, WhiteSpaceIsTheseCharactersAndNoOthers) {
    for (unsigned code = 0; code < 0x10000; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue;
        const std::string text = encoded(code) + "\n";
        const bool isSpace = (code >= 0x09 && code <= 0x0D) || code == 0x20 || code == 0x85 ||
                             code == 0xA0 || code == 0x1680 || (code >= 0x2000 && code <= 0x200A) ||
                             code == 0x2028 || code == 0x2029 || code == 0x202F || code == 0x205F ||
                             code == 0x3000;
        ASSERT_EQ(UTF8::whiteSpace(text), isSpace ? text.size() - 1 : 0) << code;
    }
    EXPECT_EQ(UTF8::whiteSpace(""), 0U);
}

TEST(UTF8, TheLineEndsAndBlanksAreTheseAndNoOthers) {
    for (unsigned code = 0; code < 0x10000; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue;
        const std::string text = encoded(code) + "x";
        const bool ends =
            code == '\n' || code == '\r' || code == 0x85 || code == 0x2028 || code == 0x2029;
        const bool blank = code == '\t' || code == ' ' || code == 0xA0 || code == 0x1680 ||
                           (code >= 0x2000 && code <= 0x200A) || code == 0x202F || code == 0x205F ||
                           code == 0x3000;
        ASSERT_EQ(UTF8::lineEnd(text), ends ? text.size() - 1 : 0) << code;
        ASSERT_EQ(UTF8::blank(text), blank ? text.size() - 1 : 0) << code;
    }
    EXPECT_EQ(UTF8::lineEnd("\r\nx"), 2U);
    EXPECT_EQ(UTF8::lineEnd("\r"), 1U);
    EXPECT_EQ(UTF8::lineEnd(""), 0U);
    EXPECT_EQ(UTF8::blank(""), 0U);
}

} // namespace

} // namespace ostrella
