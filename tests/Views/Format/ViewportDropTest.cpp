#include "Views/Format/ViewportDrop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using namespace ViewportFormat;
using Paths = std::vector<std::filesystem::path>;

TEST(DropKind, ByTheName) {
    EXPECT_EQ(dropKind("a.stl", {}), DropKind::stl);
    EXPECT_EQ(dropKind("a.STL", {}), DropKind::stl);
    EXPECT_EQ(dropKind("b.png", {}), DropKind::other);
    EXPECT_EQ(dropKind("B.PNG", {}), DropKind::other);
    EXPECT_EQ(dropKind(std::nullopt, {}), DropKind::unknown);
    EXPECT_EQ(dropKind("noextension", {}), DropKind::unknown);
    EXPECT_EQ(dropKind(".stl", {}), DropKind::unknown);
    EXPECT_EQ(dropKind("a.", {}), DropKind::unknown);
    EXPECT_EQ(dropKind("a.qzxnosuchtype", {}), DropKind::unknown);
}

TEST(DropKind, ByTheTypeWhateverTheName) {
    EXPECT_EQ(dropKind("b.png", {"text/uri-list", "model/stl"}), DropKind::stl);
    EXPECT_EQ(dropKind(std::nullopt, {"model/stl"}), DropKind::stl);
    // What every file is says nothing.
    EXPECT_EQ(dropKind(std::nullopt, {"application/octet-stream"}), DropKind::unknown);
    EXPECT_EQ(dropKind(std::nullopt, {"text/uri-list", "image/png", "no/such-type", ""}),
        DropKind::unknown);
}

TEST(DropPreview, ADragIsRefusedIfItCanHoldNoModel) {
    EXPECT_EQ(previewOf({}), DropPreview::refuse());
    EXPECT_EQ(previewOf({DropKind::other, DropKind::other}), DropPreview::refuse());
    EXPECT_EQ(previewOf({DropKind::other, DropKind::unknown}), DropPreview::pending());
    EXPECT_EQ(previewOf({DropKind::stl}), DropPreview::pending());
}

TEST(DropOutcome, TakesTheFirstModel) {
    const DropOutcome outcome(Paths{"/d/b.png", "/d/a.STL", "/d/c.stl"});
    EXPECT_EQ(outcome.stl, "/d/a.STL");
    EXPECT_EQ(outcome.ignored, (Paths{"/d/b.png", "/d/c.stl"}));
    EXPECT_EQ(outcome.preview(), DropPreview::accept("a.STL"));
}

TEST(DropOutcome, WithoutAModel) {
    const DropOutcome outcome(Paths{"/d/b.png"});
    EXPECT_FALSE(outcome.stl);
    EXPECT_EQ(outcome.preview(), DropPreview::refuse());
    EXPECT_EQ(DropOutcome(Paths()).preview(), DropPreview::pending());
}

TEST(IgnoredNotice, TellsWhatWasLeftOutAndWhy) {
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"a.stl"})), std::nullopt);
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"a.stl", "b.stl"})),
        "Ignored b.stl · only one .stl file loads at a time");
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"a.stl", "b.png", "c.png"})),
        "Ignored 2 other files · only .stl files can be loaded");
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"b.png", "c.png"})),
        "Ignored 2 files · only .stl files can be loaded");
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"a.stl", "b.png", "C.STL"})),
        "Ignored 2 other files · only one .stl file loads at a time");
    EXPECT_EQ(ignoredNotice(DropOutcome(Paths{"x/b.png"})),
        "Ignored b.png · only .stl files can be loaded");
}

TEST(IgnoredLogLine, NamesTheFirst) {
    EXPECT_EQ(ignoredLogLine(DropOutcome(Paths{"a.stl"}), 3), std::nullopt);
    EXPECT_EQ(ignoredLogLine(DropOutcome(Paths{"a", "b", "c", "d", "e"}), 3),
        "Ignored a, b, c and 2 more · only .stl files can be loaded");
    EXPECT_EQ(ignoredLogLine(DropOutcome(Paths{"a", "b", "c"}), 3),
        "Ignored a, b, c · only .stl files can be loaded");
    EXPECT_EQ(ignoredLogLine(DropOutcome(Paths{"a.stl", "b.stl"}), 3),
        "Ignored b.stl · only one .stl file loads at a time");
}

TEST(IgnoredLogLine, OfFiveHundredFiles) {
    Paths files{"model.stl"};
    for (int i = 0; i < 500; ++i) {
        files.emplace_back(std::to_string(i) + ".png");
    }
    EXPECT_EQ(ignoredLogLine(DropOutcome(files), 3),
        "Ignored 0.png, 1.png, 2.png and 497 more · only .stl files can be loaded");
    EXPECT_EQ(ignoredNotice(DropOutcome(files)),
        "Ignored 500 other files · only .stl files can be loaded");
}

TEST(DropOverlay, TextAndSymbol) {
    EXPECT_EQ(dropText(DropPreview::pending()), "Drop an STL to load");
    EXPECT_EQ(dropText(DropPreview::accept("")), "Drop an STL to load");
    EXPECT_EQ(dropText(DropPreview::accept("wing.stl")), "Drop to load wing.stl");
    EXPECT_EQ(dropText(DropPreview::refuse()), "Only .stl files can be loaded");
    EXPECT_EQ(dropSymbol(DropPreview::pending()), "arrow.down.doc");
    EXPECT_EQ(dropSymbol(DropPreview::accept("wing.stl")), "arrow.down.doc");
    EXPECT_EQ(dropSymbol(DropPreview::refuse()), "nosign");
}

} // namespace
} // namespace ostrella
