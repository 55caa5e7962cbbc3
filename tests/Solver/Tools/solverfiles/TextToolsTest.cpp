#include "Solver/Tools/TextTemplate.h"
#include "Solver/Tools/TextTrimming.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(ReplaceAll, replacesEveryOccurrence) {
    EXPECT_EQ(replaceAll("{{A}} and {{A}}{{A}}", "{{A}}", "x"), "x and xx");
    EXPECT_EQ(replaceAll("{{A}}", "{{A}}", ""), "");
    EXPECT_EQ(replaceAll("", "{{A}}", "x"), "");
}

TEST(ReplaceAll, leavesOtherTextAlone) {
    EXPECT_EQ(replaceAll("{A} {{B}} {{ A }}", "{{A}}", "x"), "{A} {{B}} {{ A }}");
    EXPECT_EQ(replaceAll("text", "", "x"), "text");
}

TEST(ReplaceAll, doesNotLookAtWhatAValueBringsIn) {
    EXPECT_EQ(replaceAll("{{A}}!", "{{A}}", "{{A}}{{A}}"), "{{A}}{{A}}!");
    EXPECT_EQ(replaceAll("aaa", "aa", "a"), "aa");
}

TEST(TrimmedBlanks, dropsBlanksAtBothEnds) {
    EXPECT_EQ(trimmedBlanks(" \t a b \t"), "a b");
    EXPECT_EQ(trimmedBlanks("\u00A0\u2003\u3000a\u202F\u205F\u1680"), "a");
    EXPECT_EQ(trimmedBlanks(" \t "), "");
    EXPECT_EQ(trimmedBlanks(""), "");
}

TEST(TrimmedBlanks, keepsLineEnds) {
    EXPECT_EQ(trimmedBlanks(" a\r "), "a\r");
    EXPECT_EQ(trimmedBlanks("\na"), "\na");
}

TEST(TrimmedWhiteSpace, dropsLineEndsToo) {
    EXPECT_EQ(trimmedWhiteSpace("\r\n\v\f \u2028a\u0085\u2029\t\n"), "a");
    EXPECT_EQ(trimmedWhiteSpace("\n"), "");
}

TEST(TrimmedWhiteSpace, keepsOtherCharacters) {
    EXPECT_EQ(trimmedWhiteSpace("\u200Ba\u00AD"), "\u200Ba\u00AD");
    EXPECT_EQ(trimmedWhiteSpace("é"), "é");
    EXPECT_EQ(trimmedWhiteSpace("\xA0x\x85"), "\xA0x\x85") << "bytes that are no UTF-8";
}

} // namespace
} // namespace ostrella
