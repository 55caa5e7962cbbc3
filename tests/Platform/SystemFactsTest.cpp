#include "Platform/SystemFacts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/utsname.h>

namespace ostrella {
namespace {

TEST(SystemFacts, TheKernelsMajorAndMinorVersion) {
    utsname system{};
    ASSERT_EQ(uname(&system), 0);
    int major = 0;
    int minor = 0;
    ASSERT_EQ(std::sscanf(system.release, "%d.%d", &major, &minor), 2);
    const LogStore::BootFacts facts = SystemFacts::bootFacts();
    EXPECT_EQ(facts.systemMajor, major);
    EXPECT_EQ(facts.systemMinor, minor);
    EXPECT_TRUE(facts.version.has_value());
}

TEST(SystemFacts, TheGraphicsInterfaceHasANameOrIsSaidToBeMissing) {
    EXPECT_THAT(
        SystemFacts::graphicsLabel(), testing::AnyOf("OpenGL", "Vulkan", "no graphics device"));
}

TEST(SystemFacts, AKnownGraphicsInterfaceIsTakenOver) {
    const LogStore::BootFacts facts = SystemFacts::bootFacts("Vulkan");
    EXPECT_EQ(facts.graphicsLabel, "Vulkan");
    EXPECT_EQ(facts.systemMajor, SystemFacts::bootFacts().systemMajor);
}

TEST(SystemFacts, AMacsLabelFollowsTheFamiliesOfItsDevice) {
    const auto supports = [](std::vector<int> families) {
        return [families](int family) {
            return std::find(families.begin(), families.end(), family) != families.end();
        };
    };
    EXPECT_EQ(SystemFacts::metalLabel(26, {}), "no Metal device");
    EXPECT_EQ(SystemFacts::metalLabel(26, supports({5001, 5002})), "Metal 4");
    EXPECT_EQ(SystemFacts::metalLabel(26, supports({5001})), "Metal 3");
    EXPECT_EQ(SystemFacts::metalLabel(26, supports({})), "Metal 2");
    EXPECT_EQ(SystemFacts::metalLabel(14, supports({})), "Metal 2");
    bool askedForTheFourth = false;
    EXPECT_EQ(SystemFacts::metalLabel(25,
                  [&](int family) {
                      askedForTheFourth |= family == 5002;
                      return true;
                  }),
        "Metal 3");
    EXPECT_FALSE(askedForTheFourth) << "a system before 26 does not know it";
}

TEST(SystemFacts, TheProcessorsNameIsThatOfTheFirstOne) {
    EXPECT_EQ(
        SystemFacts::chipNameIn("processor\t: 0\nmodel\t\t: 143\nmodel name\t:  A Chip @ 2 GHz "
                                "\nprocessor\t: 1\nmodel name\t: Another\n"),
        "A Chip @ 2 GHz");
    EXPECT_EQ(SystemFacts::chipNameIn("model name: no newline"), "no newline");
}

TEST(SystemFacts, AProcessorMayHaveNoName) {
    EXPECT_EQ(SystemFacts::chipNameIn(""), std::nullopt);
    EXPECT_EQ(SystemFacts::chipNameIn("model name\t: \t\n"), std::nullopt);
    EXPECT_EQ(SystemFacts::chipNameIn("model name\n"), std::nullopt);
    EXPECT_EQ(SystemFacts::chipNameIn("model names\t: two\nvendor\t: x\n"), std::nullopt);
}

TEST(SystemFacts, FreeSpaceOfAVolume) {
    const auto free = SystemFacts::availableCapacity(std::filesystem::temp_directory_path());
    ASSERT_TRUE(free);
    EXPECT_GT(*free, 0);
    EXPECT_EQ(SystemFacts::availableCapacity("/no/such/place"), std::nullopt);
    EXPECT_EQ(SystemFacts::availableCapacity(""), std::nullopt);
}

} // namespace
} // namespace ostrella
