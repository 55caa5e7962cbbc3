#include "Update/UpdateArchive.h"

#include "Update/CopyMaker.h"
#include "Update/UpdateRefusal.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using Kind = ArchiveEntry::Kind;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

class UpdateArchiveTest : public testing::Test {
protected:
    UpdateArchiveTest() { fs::create_directories(folder_); }

    void unpack(const UpdateArchive::Limits& limits = {}, const CancellationToken& token = {}) {
        UpdateArchive::unpack(archive_, folder_, limits, token);
    }

    /// The line of the log with which the archive is refused; empty if it is not.
    std::string refusal(const UpdateArchive::Limits& limits = {}) {
        try {
            unpack(limits);
        } catch (const UpdateRefusal& error) {
            return error.what();
        }
        return "";
    }

    std::string refusalOf(const std::vector<ArchiveEntry>& entries) {
        makeArchive(archive_, entries);
        return refusal();
    }

    /// Nothing but the archive and the folder lies where both lie.
    void expectNothingOutside() const {
        EXPECT_EQ(namesIn(directory_.path()), (std::set<std::string>{"archive", "inside"}));
    }

    TemporaryDirectory directory_;
    fs::path archive_ = directory_.path() / "archive";
    fs::path folder_ = directory_.path() / "inside";
};

/// Bytes that no packer makes smaller.
std::string noise(std::size_t count) {
    std::mt19937 generator(7);
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(generator()); });
    return bytes;
}

std::string nameOf(const testing::TestParamInfo<ArchiveForm>& form) {
    constexpr std::array names{"TarGzip", "TarXZ", "TarZstd", "Zip"};
    return names[static_cast<std::size_t>(form.param)];
}

class EveryFormTest : public UpdateArchiveTest, public testing::WithParamInterface<ArchiveForm> {};

INSTANTIATE_TEST_SUITE_P(Forms, EveryFormTest,
    testing::Values(
        ArchiveForm::tarGzip, ArchiveForm::tarXZ, ArchiveForm::tarZstd, ArchiveForm::zip),
    nameOf);

TEST_P(EveryFormTest, FilesFoldersProgramsAndLinksComeOut) {
    makeArchive(archive_,
        {{"bin", Kind::folder}, {"bin/ostrella", Kind::program, "program"},
            {"lib/libthing.so.1", Kind::file, "library"},
            {"lib/libthing.so", Kind::link, "libthing.so.1"},
            {"share/ostrella/tool", Kind::link, "../../bin/ostrella"},
            {"./share/large", Kind::file, noise(300'000)}},
        GetParam());
    unpack();
    EXPECT_EQ(readFile(folder_ / "bin/ostrella"), "program");
    EXPECT_EQ(readFile(folder_ / "lib/libthing.so"), "library");
    EXPECT_EQ(readFile(folder_ / "share/ostrella/tool"), "program");
    EXPECT_EQ(readFile(folder_ / "share/large"), noise(300'000));
    EXPECT_TRUE(fs::is_symlink(folder_ / "lib/libthing.so"));
    EXPECT_NE(fs::status(folder_ / "bin/ostrella").permissions() & fs::perms::owner_exec,
        fs::perms::none);
    EXPECT_EQ(
        fs::status(folder_ / "share/large").permissions() & fs::perms::owner_exec, fs::perms::none);
    expectNothingOutside();
}

TEST_P(EveryFormTest, AnArchiveThatEndsTooSoonIsRefused) {
    makeArchive(
        archive_, {{"one", Kind::file, noise(100'000)}, {"two", Kind::file, "end"}}, GetParam());
    const std::string whole = readFile(archive_);
    for (const double part : {0.0, 0.001, 0.25, 0.5, 0.75, 0.95}) {
        writeFile(archive_, whole.substr(0, static_cast<std::size_t>(part * whole.size())));
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        EXPECT_THAT(refusal(), StartsWith("Update refused · The archive cannot be read: "))
            << part << " of the archive";
    }
}

TEST_P(EveryFormTest, WhatUnpacksToFarMoreThanItIsIsRefused) {
    makeArchive(archive_, {{"bomb", Kind::file, "", 64 << 20}}, GetParam());
    ASSERT_LT(fs::file_size(archive_), 1U << 20);
    EXPECT_EQ(refusal({.mostBytes = 1 << 20}),
        "Update refused · The archive unpacks to more than 1048576 bytes.");
    EXPECT_LE(fs::file_size(folder_ / "bomb"), 1U << 20);
}

TEST_P(EveryFormTest, NamesThatLeadOutAreRefused) {
    for (const std::string name :
        {"../evil", "share/../../evil", "share/..", "/evil", "//evil", "./../evil"}) {
        makeArchive(archive_, {{name, Kind::file, "evil"}}, GetParam());
        EXPECT_THAT(refusal(), StartsWith("Update refused · The archive ")) << name;
        expectNothingOutside();
    }
}

TEST_P(EveryFormTest, LinksThatLeadOutAreRefused) {
    for (const std::string target : {"/etc/passwd", "../..", "../../evil", "sub/../../../evil",
             "../share/../..", "sub/../file"}) {
        makeArchive(archive_, {{"share/link", Kind::link, target}}, GetParam());
        EXPECT_EQ(
            refusal(), "Update refused · The archive holds a link that leads out, share/link.")
            << target;
        expectNothingOutside();
    }
}

TEST_F(UpdateArchiveTest, NothingIsWrittenThroughALink) {
    EXPECT_THAT(refusalOf({{"share", Kind::folder}, {"lib", Kind::link, "share"},
                    {"lib/file", Kind::file, "text"}}),
        StartsWith("Update refused · "));
    EXPECT_FALSE(fs::exists(folder_ / "share/file"));
    expectNothingOutside();
}

TEST_F(UpdateArchiveTest, ASecondNameOfAFileStaysInside) {
    makeArchive(archive_, {{"bin/ostrella", Kind::program, "program"},
                              {"bin/same", Kind::secondName, "bin/ostrella"}});
    unpack();
    EXPECT_EQ(readFile(folder_ / "bin/same"), "program");
}

TEST_F(UpdateArchiveTest, ASecondNameOfSomethingElseIsRefused) {
    writeFile(directory_.path() / "archive", "");
    for (const std::string first : {"../archive", "/etc/passwd", "nothing", "link"}) {
        EXPECT_THAT(refusalOf({{"link", Kind::link, "other"}, {"name", Kind::secondName, first}}),
            StartsWith("Update refused · The archive "))
            << first;
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
}

TEST_F(UpdateArchiveTest, DevicesAreRefused) {
    EXPECT_EQ(refusalOf({{"null", Kind::device}}),
        "Update refused · The archive holds what is no file or folder, null.");
}

TEST_F(UpdateArchiveTest, TwoThingsOfOneNameAreRefused) {
    EXPECT_THAT(refusalOf({{"a", Kind::file, "1"}, {"a", Kind::file, "2"}}),
        StartsWith("Update refused · Cannot unpack a: "));
    EXPECT_THAT(refusalOf({{"b", Kind::file, "1"}, {"b/c", Kind::file, "2"}}),
        StartsWith("Update refused · The archive holds two things named b"));
    EXPECT_THAT(refusalOf({{"d", Kind::link, "e"}, {"d", Kind::file, "2"}}),
        StartsWith("Update refused · Cannot unpack d: "));
    EXPECT_EQ(readFile(folder_ / "a"), "1");
}

TEST_F(UpdateArchiveTest, TheFolderItselfCanBeAnEntryButNoFile) {
    EXPECT_EQ(refusalOf({{"./", Kind::folder}, {"a", Kind::file, "1"}}), "");
    EXPECT_THAT(refusalOf({{"./.", Kind::file, "1"}}), HasSubstr("a file without a name"));
}

TEST_F(UpdateArchiveTest, MoreFilesThanSoundAreRefused) {
    std::vector<ArchiveEntry> entries;
    for (int i = 0; i < 11; ++i) {
        entries.push_back({std::to_string(i), Kind::file});
    }
    makeArchive(archive_, entries);
    EXPECT_EQ(
        refusal({.mostEntries = 10}), "Update refused · The archive holds more than 10 files.");
    EXPECT_EQ(namesIn(folder_).size(), 10U);
}

TEST_F(UpdateArchiveTest, WhatIsNoArchiveIsRefused) {
    writeFile(archive_, noise(5000));
    EXPECT_THAT(refusal(), StartsWith("Update refused · The archive cannot be read: "));
    writeFile(archive_, "<html>Not found</html>");
    EXPECT_THAT(refusal(), StartsWith("Update refused · The archive cannot be read: "));
    fs::remove(archive_);
    EXPECT_THAT(refusal(), StartsWith("Update refused · The archive cannot be read: "));
}

TEST_F(UpdateArchiveTest, ATarWithoutAPackerIsRefusedSinceItsEndCouldBeMissing) {
    makeArchive(archive_, {{"a", Kind::file, "1"}}, ArchiveForm::tar);
    EXPECT_EQ(refusal(), "Update refused · The archive is of no kind that is known.");
}

TEST_F(UpdateArchiveTest, AnEmptyArchiveHoldsNothing) {
    EXPECT_EQ(refusalOf({}), "");
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(UpdateArchiveTest, NobodyElseMayWriteWhatWasUnpacked) {
    const mode_t before = ::umask(0);
    makeArchive(archive_, {{"bin/ostrella", Kind::program, "program"}});
    unpack();
    ::umask(before);
    for (const fs::path place : {"bin", "bin/ostrella"}) {
        EXPECT_EQ(fs::status(folder_ / place).permissions() &
                      (fs::perms::group_write | fs::perms::others_write | fs::perms::set_uid),
            fs::perms::none)
            << place;
    }
}

/// A limit of the process stands in for a disk that is full: writing fails in the same way.
TEST_F(UpdateArchiveTest, AFileThatCannotBeWrittenIsARefusal) {
    makeArchive(archive_, {{"large", Kind::file, noise(300'000)}});
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{.rlim_cur = 4096, .rlim_max = before.rlim_max};
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string line = refusal();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_THAT(line, StartsWith("Update refused · Cannot unpack large: "));
}

TEST_F(UpdateArchiveTest, ItStopsWhenToldTo) {
    makeArchive(archive_, {{"a", Kind::file, "1"}});
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(unpack({}, source.token()), CancellationError);
    EXPECT_TRUE(fs::is_empty(folder_));
}

} // namespace
