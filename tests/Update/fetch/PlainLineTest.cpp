#include "Update/PlainLine.h"

#include <gtest/gtest.h>

#include <string>

namespace ostrella {
namespace {

std::string plain(const char* text, qsizetype most = 100) {
    return plainLine(QString::fromUtf8(text), most);
}

TEST(PlainLineTest, OneLineStays) {
    EXPECT_EQ(plain("Größe · 12 × 3"), "Größe · 12 × 3");
    EXPECT_EQ(plain(""), "");
}

TEST(PlainLineTest, ManyLinesBecomeOne) {
    EXPECT_EQ(plain("  a\r\n\tb\n\n c\xC2\xA0 "), "a b c");
}

TEST(PlainLineTest, WhatIsNotPrintedBecomesSpace) {
    EXPECT_EQ(plain("a\x1b[31mb\x07\xC2\x9B"), "a [31mb");
    EXPECT_EQ(plain("a\xE2\x80\xAE"
                    "gnp.exe"),
        "a gnp.exe");
}

TEST(PlainLineTest, NoCharacterIsCutInTwo) {
    const std::string storm = "\xF0\x9F\x8C\xAA";
    EXPECT_EQ(plain((storm + storm + storm).c_str(), 2), storm + storm);
    EXPECT_EQ(plain("abc def", 4), "abc");
}

} // namespace
} // namespace ostrella
