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

TEST_F(AppBundleTest, TellsWhatThePackageSaysOfItself) {
    test::writeFile(share_ / "Info.json",
        "{\"CFBundleShortVersionString\": \"1.2.0\", \"CFBundleVersion\": \"345\", "
        "\"number\": 1.5, \"yes\": true, \"list\": [1], \"nothing\": null}\n");
    EXPECT_EQ(
        bundle_.information(), (InformationDictionary{{"CFBundleShortVersionString", "1.2.0"},
                                   {"CFBundleVersion", "345"}, {"number", 1.5}, {"yes", true}}));
}

TEST_F(AppBundleTest, TellsNothingFromAFileThatIsMissingOrRubbish) {
    const fs::path file = share_ / "Info.json";
    EXPECT_EQ(bundle_.information(), std::nullopt);
    for (const std::string& text : {std::string(), std::string("{"), std::string("[\"a\"]"),
             std::string("\0\1\2", 3), "{\"a\": \"" + std::string(1 << 16, 'x') + "\"}"}) {
        test::writeFile(file, text);
        EXPECT_EQ(bundle_.information(), std::nullopt) << text.substr(0, 20);
    }
    fs::remove(file);
    fs::create_directories(file);
    EXPECT_EQ(bundle_.information(), std::nullopt);
    test::writeFile(file.parent_path() / "another.json", "{}");
    fs::remove(file);
    fs::create_symlink("/dev/zero", file);
    EXPECT_EQ(bundle_.information(), std::nullopt);
}

TEST_F(AppBundleTest, ThePackageIsOfTheVersionThatItsProgramsTell) {
    const auto info = AppBundle(OSTRELLA_STAGE_DIR).information();
    ASSERT_TRUE(info);
    EXPECT_EQ(stringOf(*info, InformationKeys::version), AppBundle::version());
    // What was not set is not there; an empty address would be a feed that fails.
    for (const std::string_view key : {InformationKeys::feed, InformationKeys::key}) {
        EXPECT_NE(stringOf(*info, key), "");
    }
}

} // namespace
} // namespace ostrella
