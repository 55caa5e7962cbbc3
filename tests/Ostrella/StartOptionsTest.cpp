#include "Ostrella/StartOptions.h"

#include "Platform/AppBundle.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Files = std::vector<std::filesystem::path>;

Files filesOf(const std::vector<std::string>& arguments) {
    const auto parsed = parseStartOptions(arguments);
    const auto* options = std::get_if<StartOptions>(&parsed);
    return options ? options->files : Files{"refused"};
}

StartReply replyTo(const std::vector<std::string>& arguments) {
    const auto parsed = parseStartOptions(arguments);
    const auto* reply = std::get_if<StartReply>(&parsed);
    return reply ? *reply : StartReply{"no reply"};
}

TEST(StartOptions, TheWindowAlone) {
    EXPECT_THAT(filesOf({}), IsEmpty());
}

TEST(StartOptions, FilesInTheirOrder) {
    EXPECT_THAT(
        filesOf({"b.stl", "/models/a.stl", "-"}), ElementsAre("b.stl", "/models/a.stl", "-"));
}

TEST(StartOptions, AddressesOfFiles) {
    EXPECT_THAT(filesOf({"file:///models/my%20wing.stl", "https://there/wing.stl"}),
        ElementsAre("/models/my wing.stl", "https://there/wing.stl"));
}

TEST(StartOptions, NamesThatBeginWithADash) {
    EXPECT_THAT(filesOf({"a.stl", "--", "--help", "-b.stl", "--"}),
        ElementsAre("a.stl", "--help", "-b.stl", "--"));
}

TEST(StartOptions, TheNumberOfTheProcessThatAStarterAdds) {
    EXPECT_THAT(filesOf({"-psn_0_12345", "a.stl"}), ElementsAre("a.stl"));
}

TEST(StartOptions, Help) {
    for (const char* const option : {"--help", "-h"}) {
        const StartReply reply = replyTo({"a.stl", option});
        EXPECT_FALSE(reply.isError);
        EXPECT_THAT(reply.text, StartsWith("Usage: ostrella [MODEL.stl…]\n"));
    }
}

TEST(StartOptions, Version) {
    const StartReply reply = replyTo({"--version"});
    EXPECT_FALSE(reply.isError);
    EXPECT_EQ(reply.text, "Ostrella " + AppBundle::version() + "\n");
}

TEST(StartOptions, UnknownOptions) {
    for (const char* const option : {"--velocity", "--help=yes", "-x", "--sample=sphere"}) {
        const StartReply reply = replyTo({"a.stl", option, "--help"});
        EXPECT_TRUE(reply.isError);
        EXPECT_THAT(reply.text, HasSubstr(std::string("there is no option ") + option + ";"));
        EXPECT_THAT(reply.text, HasSubstr("ostrella --help"));
    }
}

} // namespace
} // namespace ostrella
