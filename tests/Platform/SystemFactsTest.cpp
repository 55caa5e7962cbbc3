#include "Platform/SystemFacts.h"

#include <gmock/gmock.h>

#include <cstdio>

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

} // namespace
} // namespace ostrella
