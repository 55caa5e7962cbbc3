#include "Update/Installation.h"

#include "Update/CopyMaker.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using testing::HasSubstr;
namespace fs = std::filesystem;

class InstallationTest : public testing::Test {
protected:
    InstallationTest() {
        makeCopy(root_, "1.0.0");
        // Reachable for whom a test becomes.
        fs::permissions(directory_.path(), fs::perms(0755));
    }

    std::string reason() const { return Installation(root_).managedBecause(); }

    TemporaryDirectory directory_;
    fs::path root_ = directory_.path() / "place" / "ostrella";
};

TEST_F(InstallationTest, ACopyInAFolderOfTheUsersIsOwn) {
    writeFile(root_ / "bin/ostrella-batch", "");
    writeFile(root_ / "lib/libQt6Core.so.6", "");
    writeFile(root_ / "share/icons/hicolor/48x48/apps/org.ostrella.Ostrella.png", "");
    writeFile(root_ / "share/applications/org.ostrella.Ostrella.desktop", "");
    writeFile(root_ / "share/ostrella/samples/anything.stl", "");
    const Installation installation(root_);
    EXPECT_TRUE(installation.isOwn()) << installation.managedBecause();
    EXPECT_EQ(installation.root(), root_);
}

TEST_F(InstallationTest, WhatThePackageManagerKeepsIsManaged) {
    for (const std::string folder : {"/usr", "/usr/lib", "/bin"}) {
        EXPECT_THAT(Installation(folder).managedBecause(),
            HasSubstr("which the system's package manager keeps"))
            << folder;
    }
}

TEST_F(InstallationTest, ALinkIsNotWhatItLeadsTo) {
    const fs::path link = directory_.path() / "link";
    fs::create_directory_symlink("/usr", link);
    EXPECT_FALSE(Installation(link).isOwn());
    EXPECT_EQ(Installation(link).root(), "/usr");

    const fs::path toOwn = directory_.path() / "current";
    fs::create_directory_symlink(root_, toOwn);
    EXPECT_TRUE(Installation(toOwn).isOwn());
    EXPECT_EQ(Installation(toOwn).root(), root_);
}

TEST_F(InstallationTest, WithoutProgramOrVersionItIsNoneOfOurs) {
    EXPECT_THAT(Installation(directory_.path() / "nowhere").managedBecause(),
        HasSubstr("there is no installation in "));
    EXPECT_THAT(Installation("/").managedBecause(), HasSubstr("there is no installation in "));
    fs::remove(root_ / "share/ostrella/Info.json");
    EXPECT_THAT(reason(), HasSubstr("does not tell its version"));
    fs::remove(root_ / "bin/ostrella");
    EXPECT_THAT(reason(), HasSubstr("there is no installation in "));
}

TEST_F(InstallationTest, ItSharesItsFolderWithNobody) {
    for (const std::string foreign : {"readme.txt", ".profile", "src/a.c", "bin/python3",
             "libexec/other/tool", "lib/systemd/unit", "share/man/man1/ls.1", "share/other.txt"}) {
        writeFile(root_ / foreign, "foreign");
        EXPECT_THAT(reason(), HasSubstr("it shares its folder with ")) << foreign;
        fs::remove_all(directory_.path() / "place");
        makeCopy(root_, "1.0.0");
        EXPECT_EQ(reason(), "");
    }
}

TEST_F(InstallationTest, ALinkInThePlaceOfAFolderIsForeign) {
    fs::rename(root_ / "libexec", directory_.path() / "libexec");
    fs::create_directory_symlink(directory_.path() / "libexec", root_ / "libexec");
    EXPECT_THAT(reason(), HasSubstr("it shares its folder with "));
}

TEST_F(InstallationTest, WhereItIsBuiltItIsMadeAnewAnyway) {
    const fs::path cache = directory_.path() / "CMakeCache.txt";
    writeFile(cache, "");
    EXPECT_EQ(reason(), "it lies in " + directory_.path().string() + ", where it was built");
    fs::remove(cache);
    EXPECT_EQ(reason(), "");
}

TEST_F(InstallationTest, TheUserMustBeAllowedToWriteTheFolderAndTheOneAround) {
    const OrdinaryUser user(root_.parent_path());
    ASSERT_EQ(reason(), "");
    for (const fs::path& folder : {root_, root_.parent_path()}) {
        fs::permissions(folder, fs::perms(0555));
        EXPECT_EQ(reason(), "the folder " + folder.string() + " is not writable");
        fs::permissions(folder, fs::perms(0755));
    }
}

} // namespace
