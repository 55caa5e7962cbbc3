#include "Platform/HandOver.h"

#include "Platform/desktop/DesktopBench.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using namespace std::string_literals;
using std::filesystem::path;

std::string message(const std::string& body) {
    return "ostrella-open " + std::to_string(body.size()) + "\n" + body;
}

TEST(HandOverTest, IsALengthAndTheTokenAndTheDocuments) {
    EXPECT_EQ((HandOver{{"/a b", "/c"}, "tok"}.encoded()), "ostrella-open 12\ntok\0/a b\0/c\0"s);
    EXPECT_EQ(HandOver{}.encoded(), "ostrella-open 1\n\0"s);
}

TEST(HandOverTest, ComesOutAsItWentIn) {
    const HandOver handOver{{"/häuser/a\nb.stl", "/no\xFFutf8.stl"}, "abc_TIME0"};
    EXPECT_EQ(HandOver::decoded(handOver.encoded().value()), handOver);
    EXPECT_EQ(HandOver::decoded(HandOver{}.encoded().value()), HandOver{});
}

TEST(HandOverTest, WhatWouldBeRefusedIsNotSent) {
    EXPECT_EQ((HandOver{{"relative.stl"}, ""}.encoded()), std::nullopt);
    EXPECT_EQ((HandOver{{}, "two words"}.encoded()), std::nullopt);
    EXPECT_EQ((HandOver{{}, std::string(257, 'x')}.encoded()), std::nullopt);
    EXPECT_EQ((HandOver{{"/" + std::string(4096, 'x')}, ""}.encoded()), std::nullopt);
    EXPECT_EQ((HandOver{std::vector<path>(257, "/a"), ""}.encoded()), std::nullopt);
    // 256 paths of 4096 bytes and their ends are 256 bytes more than a megabyte.
    EXPECT_EQ((HandOver{std::vector<path>(256, "/" + std::string(4095, 'x')), ""}.encoded()),
        std::nullopt);
    EXPECT_TRUE((HandOver{std::vector<path>(256, "/a"), std::string(256, 'x')}.encoded()));
}

TEST(HandOverTest, WhatIsNoMessageIsRefused) {
    for (const std::string& text : {""s, "x"s, "GET / HTTP/1.1\r\n"s, "ostrella-open 0\n"s,
             "ostrella-open -1\n\0"s, "ostrella-open  1\n\0"s, "ostrella-open 1x\n\0"s,
             "ostrella-open 99999999\n"s, "ostrella-open 18446744073709551615\n"s,
             "ostrella-open 2\n\0"s, "ostrella-open 1\n\0\0"s, message("no end"),
             message("\0relative\0"s), message("\0/a\0\0"s), message("bad token\0/a\0"s),
             message("t\x01\0"s), message("\0/"s + std::string(4096, 'x') + '\0')}) {
        EXPECT_EQ(HandOver::decoded(text), std::nullopt) << text;
    }
    std::string many(1, '\0');
    for (int i = 0; i < 257; ++i) {
        many += "/a\0"s;
    }
    EXPECT_EQ(HandOver::decoded(message(many)), std::nullopt);
}

TEST(HandOverTest, TheHeadTellsHowLongItWillBe) {
    EXPECT_EQ(HandOver::messageLength(""), std::nullopt);
    EXPECT_EQ(HandOver::messageLength("ostre"), std::nullopt);
    EXPECT_EQ(HandOver::messageLength("ostrella-open 12"), std::nullopt);
    EXPECT_EQ(HandOver::messageLength("ostrella-open 12\nto"), 29U);
    EXPECT_EQ(HandOver::messageLength("other"), 0U);
    EXPECT_EQ(HandOver::messageLength("ostrella-open 1048560\n"), 0U);
    EXPECT_EQ(HandOver::messageLength("ostrella-open 1048554\n"), 1048576U);
    EXPECT_EQ(HandOver::messageLength("ostrella-open 0000000001\n"), 0U);
}

TEST(HandOverTest, OfThisStartHasAbsolutePathsAndTheDesktopsToken) {
    const test::EnvironmentVariable none("XDG_ACTIVATION_TOKEN", std::nullopt);
    const test::EnvironmentVariable old("DESKTOP_STARTUP_ID", "old-id");
    const path here = std::filesystem::current_path();
    EXPECT_EQ(HandOver::ofThisStart({"a.stl", "/x/../b.stl"}),
        (HandOver{{here / "a.stl", "/b.stl"}, "old-id"}));
    const test::EnvironmentVariable token("XDG_ACTIVATION_TOKEN", "new-id");
    EXPECT_EQ(HandOver::ofThisStart({}).activationToken, "new-id");
    const test::EnvironmentVariable bad("XDG_ACTIVATION_TOKEN", "a b");
    EXPECT_EQ(HandOver::ofThisStart({}).activationToken, "old-id");
}

} // namespace
} // namespace ostrella
