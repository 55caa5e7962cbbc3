#include "Views/Format/NotesText.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

std::string plain(std::string_view text) {
    return NotesText::plain(text, 64 * 1024);
}

TEST(NotesText, LeavesPlainTextAsItIs) {
    EXPECT_EQ(plain("Faster meshes.\n\n- fewer cells\n- a < b & c\n"),
        "Faster meshes.\n\n- fewer cells\n- a < b & c");
    EXPECT_EQ(plain(""), "");
    EXPECT_EQ(plain(" \r\n\t "), "");
}

TEST(NotesText, TakesSignsOfControlOutOfPlainText) {
    EXPECT_EQ(plain("one\r\ntwo\x1b[31m\x07"), "one\ntwo[31m");
}

TEST(NotesText, SetsParagraphsAndHeadingsApart) {
    EXPECT_EQ(plain("<h2>Version 2</h2>\n<p>Faster\n  <b>meshes</b>.</p><p>More.</p>"),
        "Version 2\n\nFaster meshes.\n\nMore.");
}

TEST(NotesText, MarksPointsOfLists) {
    EXPECT_EQ(plain("<p>New:</p><ul><li>one</li>\n<li> two </li></ul>end"),
        "New:\n\n• one\n• two\n\nend");
}

TEST(NotesText, BreaksLinesWhereHTMLDoes) {
    EXPECT_EQ(plain("one<br>two<BR/>three<div>four</div>"), "one\ntwo\nthree\nfour");
}

TEST(NotesText, KeepsNothingOfScriptsStylesPicturesAndComments) {
    EXPECT_EQ(plain("<style>p { color: red }</style>a<script>if (1 < 2) alert('x')</script >b"
                    "<!-- <p>hidden</p> --><img src=\"https://tracker.example/1.png\">c"),
        "abc");
}

TEST(NotesText, EndsATagBehindItsQuotes) {
    EXPECT_EQ(plain("<a title=\"a > b\" href='>'>link</a>"), "link");
}

TEST(NotesText, KnowsEntities) {
    EXPECT_EQ(plain("<p>a &lt; b &amp; c &#8805; d &#x2265; e&hellip;</p>"), "a < b & c ≥ d ≥ e…");
}

TEST(NotesText, DoesNotReadWhatEntitiesMakeAsTags) {
    EXPECT_EQ(plain("<p>&lt;script&gt;x&lt;/script&gt;</p>"), "<script>x</script>");
}

TEST(NotesText, TakesRubbishForText) {
    EXPECT_EQ(plain("<p>&; &bogus; &#; &#xD800;&#1114112;&#0; 1 < 2 &"), "&; &bogus; &#; 1 < 2 &");
    EXPECT_EQ(plain("<p>text<b"), "text");
    EXPECT_EQ(plain("<!-- never ends"), "");
    EXPECT_EQ(plain("a<script>never ends"), "a");
}

TEST(NotesText, CutsLongTextsBetweenCharacters) {
    EXPECT_EQ(NotesText::plain("abcdef", 6), "abcdef");
    EXPECT_EQ(NotesText::plain("abcdefg", 6), "abcdef…");
    EXPECT_EQ(NotesText::plain("äöü", 3), "ä…");
    EXPECT_EQ(NotesText::plain("<p>äöü</p>", 3), "ä…");
}

TEST(NotesText, IsQuickWithHostileTexts) {
    const std::string opened(2'000'000, '<');
    EXPECT_EQ(NotesText::plain(opened, 10), "<<<<<<<<<<…");
    std::string tags;
    for (int i = 0; i < 200'000; ++i) {
        tags += "<ul><li>";
    }
    EXPECT_EQ(NotesText::plain(tags + "end", 100), "• end");
}

} // namespace
} // namespace ostrella
