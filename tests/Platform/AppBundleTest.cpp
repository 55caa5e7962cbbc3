#include "Platform/AppBundle.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;

class AppBundleTest : public testing::Test {
protected:
    test::TemporaryDirectory directory_;
    AppBundle bundle_{directory_.path()};
    fs::path tools_ = directory_.path() / "libexec" / "ostrella";
    fs::path share_ = directory_.path() / "share" / "ostrella";
};

TEST_F(AppBundleTest, HasTheUsualPrefixForm) {
    EXPECT_EQ(bundle_.toolsDirectory(), tools_);
    EXPECT_EQ(bundle_.resourcesDirectory(), share_);
}

TEST_F(AppBundleTest, OfTheRunningProgramLiesAboveItsFolder) {
    const fs::path program = fs::canonical("/proc/self/exe");
    EXPECT_EQ(AppBundle::main().root(), program.parent_path().parent_path());
}

TEST_F(AppBundleTest, FindsAResourceByNameExtensionAndFolder) {
    test::writeFile(share_ / "su2" / "templates" / "a.cfg", "x");
    EXPECT_EQ(bundle_.resource("a", "cfg", "su2/templates"), share_ / "su2/templates/a.cfg");
    EXPECT_EQ(bundle_.resource("b", "cfg", "su2/templates"), std::nullopt);
    EXPECT_EQ(bundle_.resource("a", "geo", "su2/templates"), std::nullopt);
    EXPECT_EQ(bundle_.resource("a", "cfg", "su2"), std::nullopt);
}

TEST_F(AppBundleTest, AFolderIsNoResource) {
    fs::create_directories(share_ / "su2" / "folder.cfg");
    EXPECT_EQ(bundle_.resource("folder", "cfg", "su2"), std::nullopt);
}

TEST_F(AppBundleTest, KnowsTheStandInByTheLink) {
    EXPECT_FALSE(bundle_.solverIsStandIn());
    test::writeFile(tools_ / "ostrella-preview-solver", "");
    EXPECT_FALSE(bundle_.solverIsStandIn());
    fs::create_symlink("ostrella-preview-solver", tools_ / "SU2_CFD");
    EXPECT_TRUE(bundle_.solverIsStandIn());
    fs::remove(tools_ / "SU2_CFD");
    test::writeFile(tools_ / "SU2_CFD", "");
    EXPECT_FALSE(bundle_.solverIsStandIn());
    fs::remove(tools_ / "SU2_CFD");
    fs::create_symlink("gone", tools_ / "SU2_CFD");
    EXPECT_FALSE(bundle_.solverIsStandIn());
}

TEST_F(AppBundleTest, TheSolversReleaseIsReadIfItWasRecorded) {
    EXPECT_EQ(bundle_.solverRelease(), std::nullopt);
    test::writeFile(share_ / "su2" / "release.txt", "8.3.0\n");
    EXPECT_EQ(bundle_.solverRelease(), "8.3.0");
    test::writeFile(share_ / "su2" / "release.txt", "");
    EXPECT_EQ(bundle_.solverRelease(), std::nullopt);
}

} // namespace
} // namespace ostrella
