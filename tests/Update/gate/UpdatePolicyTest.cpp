#include "Models/UpdatePolicy.h"

#include "Solver/Tools/AboutInfo.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using UpdatePolicy::versionText;

TEST(UpdatePolicy, namesVersionAndBuild) {
    EXPECT_EQ(versionText(InformationDictionary{
                  {"CFBundleShortVersionString", "1.2.0"}, {"CFBundleVersion", "345"}}),
        "1.2.0 (345)");
}

TEST(UpdatePolicy, namesTheVersionAloneWithoutABuild) {
    const std::string version("1.2.0");
    EXPECT_EQ(versionText(InformationDictionary{{"CFBundleShortVersionString", version}}), version);
    EXPECT_EQ(versionText(InformationDictionary{
                  {"CFBundleShortVersionString", version}, {"CFBundleVersion", std::string()}}),
        version);
    EXPECT_EQ(versionText(InformationDictionary{
                  {"CFBundleShortVersionString", version}, {"CFBundleVersion", std::int64_t{345}}}),
        version);
}

TEST(UpdatePolicy, hasAVersionForACopyThatTellsNone) {
    EXPECT_EQ(versionText(std::nullopt), "0.0.0");
    EXPECT_EQ(versionText(InformationDictionary()), "0.0.0");
    EXPECT_EQ(versionText(InformationDictionary{{"CFBundleShortVersionString", 1.2}}), "0.0.0");
    EXPECT_EQ(versionText(InformationDictionary{
                  {"CFBundleShortVersionString", true}, {"CFBundleVersion", "345"}}),
        "0.0.0 (345)");
}

TEST(UpdatePolicy, takesAnEmptyVersionAtItsWord) {
    EXPECT_EQ(
        versionText(InformationDictionary{{"CFBundleShortVersionString", std::string()}}), "");
    EXPECT_EQ(versionText(InformationDictionary{
                  {"CFBundleShortVersionString", std::string()}, {"CFBundleVersion", "345"}}),
        " (345)");
}

TEST(UpdatePolicy, givesTheAboutWindowItsLine) {
    EXPECT_EQ(AboutInfo::versionLine(std::nullopt), "Version 0.0.0");
    EXPECT_EQ(AboutInfo::versionLine(InformationDictionary{
                  {"CFBundleShortVersionString", "1.2.0"}, {"CFBundleVersion", "345"}}),
        "Version 1.2.0 (345)");
}

} // namespace
} // namespace ostrella
