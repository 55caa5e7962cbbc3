#include "Solver/Tools/RunDirectories.h"

#include "Platform/FileAttributes.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using RunDirectories::Entry;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string A = "Ostrella-0000000A";
const std::string B = "Ostrella-0000000B";
const std::string C = "Ostrella-0000000C";
const std::string D = "Ostrella-0000000D";

Date day(int number) {
    return Date(std::chrono::hours(24 * number));
}

/// A, B, C, D from oldest to newest.
const std::vector<Entry> fourEntries{{B, day(2)}, {D, day(4)}, {A, day(1)}, {C, day(3)}};

TEST(RunDirectories, haveANameOfTheirOwn) {
    EXPECT_TRUE(RunDirectories::isRunDirectoryName("Ostrella-1A2B3C4D"));
    EXPECT_TRUE(RunDirectories::isRunDirectoryName("Ostrella-00000000"));
    EXPECT_TRUE(RunDirectories::isRunDirectoryName("Ostrella-FFFFFFFF"));
    for (const char* other : {"Ostrella-1a2b3c4d", "Ostrella-1A2B3C4", "Ostrella-1A2B3C4DE",
             "Ostrella-1A2B3C4G", "ostrella-1A2B3C4D", "Ostrella_1A2B3C4D", "Ostrella-", "",
             "1A2B3C4D", " Ostrella-1A2B3C4D", "Ostrella-1A2B3C4D/", "Ostrella-1A2B3C4@",
             "Ostrella-1A2B3C4:", "Ostrella-../../.."}) {
        EXPECT_FALSE(RunDirectories::isRunDirectoryName(other)) << other;
    }
}

TEST(RunDirectories, getFreshNames) {
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i) {
        names.insert(RunDirectories::makeName());
    }
    EXPECT_EQ(names.size(), 1000U);
    for (const std::string& name : names) {
        EXPECT_TRUE(RunDirectories::isRunDirectoryName(name)) << name;
    }
}

TEST(RunDirectories, keepTheShownAndTheTwoNewestOthers) {
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, A, {}, 2), ElementsAre(B));
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, std::nullopt, {}, 2), ElementsAre(B, A));
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, D, {}, 2), ElementsAre(A));
}

TEST(RunDirectories, goAtOnceWhenDiscarded) {
    EXPECT_THAT(
        RunDirectories::namesToDelete(fourEntries, std::nullopt, {D}, 2), ElementsAre(D, A));
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, D, {D}, 2), ElementsAre(A))
        << "what is shown stays";
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, std::nullopt, {A, D, B}, 0),
        ElementsAre(B, D, A, C))
        << "the discarded in the order of the entries, then the others, newest first";
}

TEST(RunDirectories, allGoWhenNoneIsToBeKept) {
    EXPECT_THAT(
        RunDirectories::namesToDelete(fourEntries, std::nullopt, {}, 0), ElementsAre(D, C, B, A));
    EXPECT_THAT(
        RunDirectories::namesToDelete(fourEntries, std::nullopt, {}, -1), ElementsAre(D, C, B, A));
    EXPECT_THAT(RunDirectories::namesToDelete(fourEntries, std::nullopt, {}, 9), IsEmpty());
}

TEST(RunDirectories, ofOneAgeAreNewerByTheHigherName) {
    const std::vector<Entry> same{{A, day(1)}, {C, day(1)}, {B, day(1)}};
    EXPECT_THAT(RunDirectories::namesToDelete(same, std::nullopt, {}, 1), ElementsAre(B, A));
}

TEST(RunDirectories, neverIncludeAForeignName) {
    const std::vector<Entry> entries{{"Documents", day(1)}, {"Ostrella-1a2b3c4d", day(1)}};
    EXPECT_THAT(
        RunDirectories::namesToDelete(entries, std::nullopt, {"Documents", "Ostrella-1a2b3c4d"}, 0),
        IsEmpty());
}

TEST(RunDirectories, ofUnknownAgeAreTheFirstToGo) {
    const FileAttributes complete{false, true, day(3), day(5)};
    const FileAttributes withoutCreation{false, true, std::nullopt, day(5)};
    const FileAttributes without{false, true, std::nullopt, std::nullopt};
    EXPECT_EQ(complete.age(), day(3));
    EXPECT_EQ(withoutCreation.age(), day(5));
    EXPECT_EQ(without.age(), Date::min());
    const std::vector<Entry> entries{{D, without.age()}, {A, Date()}};
    EXPECT_THAT(RunDirectories::namesToDelete(entries, std::nullopt, {}, 1), ElementsAre(D));
}

/// Real directories, in a directory with a blank and a letter beyond ASCII in its name.
class RunDirectoriesOnDisk : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(parent); }

    /// Makes a run directory that is measurably newer than all others.
    fs::path makeNewer(const std::string& name) const {
        Date newest = Date::min();
        for (const Entry& entry : RunDirectories::entries(parent)) {
            newest = std::max(newest, entry.created);
        }
        while (true) {
            fs::create_directory(parent / name);
            if (FileAttributes::read(parent / name)->age() > newest) {
                return parent / name;
            }
            fs::remove(parent / name);
        }
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const fs::directory_entry& item : fs::directory_iterator(parent)) {
            all.push_back(item.path().filename().string());
        }
        return all;
    }

    const test::TemporaryDirectory directory;
    const fs::path parent = directory.path() / "süd west";
};

TEST_F(RunDirectoriesOnDisk, areMadeWithTheFoldersThatLeadToThem) {
    const fs::path made = RunDirectories::create(parent / "deeper" / "still");
    EXPECT_TRUE(fs::is_directory(made));
    EXPECT_EQ(made.parent_path(), parent / "deeper" / "still");
    EXPECT_TRUE(RunDirectories::isRunDirectoryName(made.filename().string()));
    EXPECT_NE(RunDirectories::create(parent / "deeper" / "still"), made);
}

TEST_F(RunDirectoriesOnDisk, saysWhyOneCannotBeMade) {
    test::writeFile(parent / "file", "");
    try {
        RunDirectories::create(parent / "file");
        ADD_FAILURE() << "made below a file";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::not_a_directory);
        EXPECT_EQ(error.what(),
            "Cannot make a run directory in " + (parent / "file").string() + ": Not a directory");
    }
}

TEST_F(RunDirectoriesOnDisk, areListedButNoFilesLinksOrOtherNames) {
    makeNewer(A);
    fs::create_directory(parent / "Ostrella-0000000a");
    fs::create_directory(parent / "Documents");
    test::writeFile(parent / B, "a file");
    fs::create_directory_symlink(parent / "Documents", parent / C);
    fs::create_symlink(parent / "nowhere", parent / D);
    const std::vector<Entry> found = RunDirectories::entries(parent);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, A);
    const auto age = std::chrono::system_clock::now() - found[0].created;
    EXPECT_GE(age, std::chrono::seconds(-1));
    EXPECT_LT(age, std::chrono::minutes(5));
}

TEST_F(RunDirectoriesOnDisk, areNoneWhereNothingCanBeListed) {
    EXPECT_THAT(RunDirectories::entries(parent / "missing"), IsEmpty());
    test::writeFile(parent / "file", "");
    EXPECT_THAT(RunDirectories::entries(parent / "file"), IsEmpty());
}

TEST_F(RunDirectoriesOnDisk, arePruned) {
    for (const std::string& name : {D, C, B, A}) {
        test::writeFile(makeNewer(name) / "deep" / "mesh.su2", "mesh");
    }
    fs::create_directory(parent / "Documents");
    // From oldest to newest: D, C, B, A.
    EXPECT_THAT(RunDirectories::prune(parent, parent / D, {}, 2), ElementsAre(parent / C));
    EXPECT_THAT(names(), UnorderedElementsAre(A, B, D, "Documents"));
    EXPECT_THAT(
        RunDirectories::prune(parent, parent / D, {parent / A}, 2), ElementsAre(parent / A));
    EXPECT_THAT(RunDirectories::prune(parent, std::nullopt, {}, 2), IsEmpty());
    EXPECT_THAT(names(), UnorderedElementsAre(B, D, "Documents"));
}

TEST_F(RunDirectoriesOnDisk, arePrunedWithoutRegardToLocationsElsewhere) {
    makeNewer(A);
    EXPECT_THAT(RunDirectories::prune(parent, std::nullopt, {directory.path() / "other" / A}, 2),
        IsEmpty());
    EXPECT_THAT(RunDirectories::prune(parent, directory.path() / "other" / A, {}, 0),
        ElementsAre(parent / A));
}

TEST_F(RunDirectoriesOnDisk, areRemovedOnlyIfTheyAreDirectoriesOfThatName) {
    test::writeFile(parent / "Documents" / "letter", "dear all");
    test::writeFile(parent / B, "a file");
    fs::create_directory_symlink(parent / "Documents", parent / C);
    fs::create_directory(parent / "Ostrella-0000000a");
    for (const std::string& name : {B, C, D, std::string("Documents"),
             std::string("Ostrella-0000000a"), std::string("."), std::string("../süd west")}) {
        EXPECT_EQ(RunDirectories::remove(name, parent), std::nullopt) << name;
    }
    EXPECT_THAT(names(), UnorderedElementsAre("Documents", B, C, "Ostrella-0000000a"));
    EXPECT_EQ(test::readFile(parent / "Documents" / "letter"), "dear all");
}

TEST_F(RunDirectoriesOnDisk, areRemovedWithoutFollowingLinksInThem) {
    test::writeFile(parent / "Documents" / "letter", "dear all");
    fs::create_directory_symlink(parent / "Documents", makeNewer(A) / "link");
    EXPECT_EQ(RunDirectories::remove(A, parent), parent / A);
    EXPECT_THAT(names(), ElementsAre("Documents"));
    EXPECT_EQ(test::readFile(parent / "Documents" / "letter"), "dear all");
}

TEST_F(RunDirectoriesOnDisk, areNamedOnlyWithinTheirDirectory) {
    makeNewer(A);
    EXPECT_EQ(RunDirectories::name(parent / A, parent), A);
    EXPECT_EQ(RunDirectories::name(parent / A / "", parent / ""), A);
    EXPECT_EQ(RunDirectories::name(parent / "gone", parent), "gone");
    EXPECT_EQ(RunDirectories::name(parent / "." / "x" / ".." / A, parent), A);
    EXPECT_EQ(RunDirectories::name(std::nullopt, parent), std::nullopt);
    EXPECT_EQ(RunDirectories::name(directory.path() / A, parent), std::nullopt);
    EXPECT_EQ(RunDirectories::name(parent / "deeper" / A, parent), std::nullopt);
    EXPECT_EQ(RunDirectories::name(parent, parent), std::nullopt);
}

TEST_F(RunDirectoriesOnDisk, areNamedThroughAliasesOfTheDirectory) {
    makeNewer(A);
    const fs::path alias = directory.path() / "alias";
    fs::create_directory_symlink(parent, alias);
    EXPECT_EQ(RunDirectories::name(alias / A, parent), A);
    EXPECT_EQ(RunDirectories::name(parent / A, alias), A);
    EXPECT_THAT(RunDirectories::prune(alias, parent / A, {}, 0), IsEmpty());
    EXPECT_THAT(RunDirectories::prune(alias, std::nullopt, {}, 0), ElementsAre(alias / A));
}

} // namespace
} // namespace ostrella
