#include "Update/InstallerFixture.h"

#include <atomic>
#include <csignal>
#include <thread>

#include <sys/resource.h>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using Kind = ArchiveEntry::Kind;
using testing::StartsWith;
namespace fs = std::filesystem;

class UpdateInstallerTest : public InstallerFixture {
protected:
    void expectUntouched() const {
        EXPECT_EQ(beside(), Names{"ostrella"});
        EXPECT_EQ(installed(), "1.0.0");
        EXPECT_EQ(readFile(root_ / "libexec/ostrella/SU2_CFD"), "a solver");
    }

    static std::vector<ArchiveEntry> without(
        std::vector<ArchiveEntry> entries, const std::string& path) {
        std::erase_if(entries, [&](const ArchiveEntry& entry) { return entry.path == path; });
        return entries;
    }
};

TEST_F(UpdateInstallerTest, AStagedVersionLiesBesideUntilItIsPutInPlace) {
    UpdateInstaller subject = installer();
    EXPECT_FALSE(subject.isStaged());
    stage(subject);
    EXPECT_TRUE(subject.isStaged());
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_EQ(beside(), (Names{"ostrella", ".ostrella.ostrella-update"}));

    subject.exchange();
    EXPECT_FALSE(subject.isStaged());
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_EQ(UpdateInstaller::version(previous_), "1.0.0");

    subject.confirmStarted("1.1.0");
    subject.removePrevious();
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_EQ(beside(), Names{"ostrella"});
}

TEST_F(UpdateInstallerTest, TheFoldersMayLieInOneFolderOfTheArchive) {
    std::vector<ArchiveEntry> entries;
    for (ArchiveEntry entry : copyEntries("1.1.0")) {
        entry.path = "ostrella-1.1.0/" + entry.path;
        entries.push_back(entry);
    }
    makeArchive(archive_, entries, ArchiveForm::zip);
    UpdateInstaller subject = installer();
    subject.stage(archive_, item("1.1.0"), "1.0.0");
    subject.exchange();
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_TRUE(fs::exists(root_ / "libexec/ostrella/SU2_CFD"));
}

TEST_F(UpdateInstallerTest, ALinkThatLeadsOutOfThatOneFolderIsRefused) {
    std::vector<ArchiveEntry> entries{{"top/lib/libthing.so", Kind::link, "../../outside"}};
    for (ArchiveEntry entry : copyEntries("1.1.0")) {
        entry.path = "top/" + entry.path;
        entries.push_back(entry);
    }
    EXPECT_EQ(refusalToStage(entries),
        "Update refused · The archive holds a link that leads out, lib/libthing.so.");
    expectUntouched();
}

TEST_F(UpdateInstallerTest, TheBuildIsTheVersionWhereThereIsOne) {
    makeArchive(
        archive_, {{"bin/ostrella", Kind::program, "#!/bin/sh\nexit 0\n"},
                      {"share/ostrella/Info.json", Kind::file,
                          R"({"CFBundleShortVersionString": "1.1.0", "CFBundleVersion": "345"})"}});
    UpdateInstaller subject = installer();
    EXPECT_EQ(refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); }),
        "Update refused · The archive holds version 345 and not 1.1.0.");
    subject.stage(archive_, item("345"), "344");
    EXPECT_TRUE(subject.isStaged());
}

TEST_F(UpdateInstallerTest, AnotherVersionThanStatedIsRefused) {
    EXPECT_EQ(refusalToStage(copyEntries("1.2.0")),
        "Update refused · The archive holds version 1.2.0 and not 1.1.0.");
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AnOlderVersionAndTheSameAreRefused) {
    for (const std::string version : {"0.9.0", "1.0.0", "1.0"}) {
        makeArchive(archive_, copyEntries(version));
        UpdateInstaller subject = installer();
        EXPECT_EQ(refusal([&] { subject.stage(archive_, item(version), "1.0.0"); }),
            "Update refused · Version " + version + " is not newer than 1.0.0.");
        expectUntouched();
    }
}

TEST_F(UpdateInstallerTest, WithoutAProgramItIsRefused) {
    EXPECT_EQ(refusalToStage(without(copyEntries("1.1.0"), "bin/ostrella")),
        "Update refused · The archive holds no bin/ostrella.");
    auto entries = without(copyEntries("1.1.0"), "bin/ostrella");
    entries.push_back({"bin/ostrella", Kind::file, "text"});
    EXPECT_EQ(
        refusalToStage(entries), "Update refused · The archive's bin/ostrella is no program.");
    entries.back() = {"bin/ostrella", Kind::link, "../libexec/ostrella/SU2_CFD"};
    EXPECT_EQ(refusalToStage(entries), "Update refused · The archive holds no bin/ostrella.");
    expectUntouched();
}

TEST_F(UpdateInstallerTest, WithoutAVersionItIsRefused) {
    const std::string text = "Update refused · The archive does not tell which version it holds.";
    auto entries = without(copyEntries("1.1.0"), "share/ostrella/Info.json");
    EXPECT_EQ(refusalToStage(entries), text);
    for (const std::string rubbish : {"", "rubbish", "[]", R"({"CFBundleVersion": 3})"}) {
        auto more = entries;
        more.push_back({"share/ostrella/Info.json", Kind::file, rubbish});
        EXPECT_EQ(refusalToStage(more), text) << rubbish;
    }
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AVersionOfSeveralWordsIsRefused) {
    for (const std::string version : {"1.1.0 beta", "1.1.0\\n1.2.0", " 1.1.0", "1.1.0\\u007f"}) {
        EXPECT_EQ(refusalToStage(copyEntries(version)),
            "Update refused · The archive's version is not a single word.")
            << version;
    }
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AProgramThatDoesNotStartHereIsRefused) {
    EXPECT_EQ(refusalToStage(copyEntries("1.1.0", "#!/bin/sh\nexit 3\n")),
        "Update refused · The new version does not start on this machine: status 3.");
    EXPECT_THAT(refusalToStage(copyEntries("1.1.0", "\x7f"
                                                    "ELF of another machine")),
        StartsWith("Update refused · The new version does not start on this machine: "));
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AProgramThatHangsAtItsVersionIsRefused) {
    makeArchive(archive_, copyEntries("1.1.0", "#!/bin/sh\nwhile :; do read x </dev/zero; done\n"));
    UpdateInstaller subject = installer();
    std::string line;
    std::atomic<bool> isDone = false;
    std::thread worker([&] {
        line = refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); });
        isDone = true;
    });
    EXPECT_TRUE(waitUntil([&] { return !timers_.pending().empty() || isDone; }));
    timers_.advance(10);
    worker.join();
    EXPECT_THAT(
        line, StartsWith("Update refused · The new version does not start on this machine"));
    expectUntouched();
}

TEST_F(UpdateInstallerTest, NothingStaysOfARefusedArchive) {
    EXPECT_THAT(refusalToStage({{"../evil", Kind::file, "evil"}}), StartsWith("Update refused · "));
    expectUntouched();
    EXPECT_EQ(namesIn(directory_.path()), (Names{"archive", "place"}));

    makeArchive(archive_, copyEntries("1.1.0"));
    fs::resize_file(archive_, fs::file_size(archive_) / 2);
    UpdateInstaller subject = installer();
    EXPECT_THAT(refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); }),
        StartsWith("Update refused · "));
    EXPECT_FALSE(subject.isStaged());
    expectUntouched();
}

TEST_F(UpdateInstallerTest, NothingStaysOfABomb) {
    auto entries = copyEntries("1.1.0");
    entries.push_back({"share/bomb", Kind::file, "", 8 << 20});
    makeArchive(archive_, entries);
    UpdateInstaller subject = installer({.limits = {.mostBytes = 1 << 20}});
    EXPECT_EQ(refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); }),
        "Update refused · The archive unpacks to more than 1048576 bytes.");
    expectUntouched();
}

/// A limit of the process stands in for a disk that is full: writing fails in the same way.
TEST_F(UpdateInstallerTest, NothingStaysWhereTheDiskIsFull) {
    auto entries = copyEntries("1.1.0");
    entries.push_back({"share/large", Kind::file, "", 1 << 20});
    makeArchive(archive_, entries);
    UpdateInstaller subject = installer();
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{.rlim_cur = 4096, .rlim_max = before.rlim_max};
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string line = refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_THAT(line, StartsWith("Update refused · Cannot unpack share/large: "));
    expectUntouched();
}

TEST_F(UpdateInstallerTest, NothingStaysOfWhatWasCancelled) {
    makeArchive(archive_, copyEntries("1.1.0"));
    UpdateInstaller subject = installer();
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(
        subject.stage(archive_, item("1.1.0"), "1.0.0", source.token()), CancellationError);
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AProgramThatIsTriedIsLeftAtOnce) {
    makeArchive(archive_, copyEntries("1.1.0", "#!/bin/sh\nwhile :; do read x </dev/zero; done\n"));
    UpdateInstaller subject = installer();
    const CancellationSource source;
    std::thread worker([&] {
        EXPECT_THROW(
            subject.stage(archive_, item("1.1.0"), "1.0.0", source.token()), CancellationError);
    });
    EXPECT_TRUE(waitUntil([&] { return !timers_.pending().empty(); }));
    source.cancel();
    worker.join();
    expectUntouched();
}

TEST_F(UpdateInstallerTest, AFolderThatIsNotWritableIsRefused) {
    makeArchive(archive_, copyEntries("1.1.0"));
    const OrdinaryUser user(root_.parent_path());
    fs::permissions(root_.parent_path(), fs::perms(0555));
    UpdateInstaller subject = installer();
    EXPECT_THAT(refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); }),
        StartsWith("Update refused · Cannot write beside " + root_.string()));
    fs::permissions(root_.parent_path(), fs::perms(0755));
    expectUntouched();
}

TEST_F(UpdateInstallerTest, WhatIsInTheWayIsNotOurs) {
    writeFile(previous_ / "mine.txt", "mine");
    EXPECT_EQ(refusalToStage(copyEntries("1.1.0")),
        "Update refused · " + previous_.string() + " is in the way.");
    EXPECT_EQ(readFile(previous_ / "mine.txt"), "mine");
    EXPECT_EQ(beside(), (Names{"ostrella", "ostrella.previous"}));
}

TEST_F(UpdateInstallerTest, TwoDoNotUpdateOneFolder) {
    UpdateInstaller first = installer();
    stage(first);
    EXPECT_EQ(refusalToStage(copyEntries("1.1.0")),
        "Update refused · Another Ostrella of this folder is updating it already.");
    installer().discard();
    EXPECT_TRUE(first.isStaged());
    first.exchange();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(UpdateInstallerTest, ANewerVersionTakesThePlaceOfTheStagedOne) {
    UpdateInstaller subject = installer();
    stage(subject);
    makeArchive(archive_, copyEntries("1.2.0"));
    subject.stage(archive_, item("1.2.0"), "1.0.0");
    subject.exchange();
    EXPECT_EQ(installed(), "1.2.0");
}

TEST_F(UpdateInstallerTest, WhatIsStagedStaysUntilTheNextOneIsWhole) {
    UpdateInstaller subject = installer();
    stage(subject);
    EXPECT_EQ(refusal([&] {
        makeArchive(archive_, copyEntries("1.2.0", "#!/bin/sh\nexit 3\n"));
        subject.stage(archive_, item("1.2.0"), "1.0.0");
    }),
        "Update refused · The new version does not start on this machine: status 3.");
    EXPECT_TRUE(subject.isStaged());
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(
        subject.stage(archive_, item("1.2.0"), "1.0.0", source.token()), CancellationError);
    EXPECT_EQ(namesIn(work_), (Names{"lock", "ready"}));
    subject.exchange();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(UpdateInstallerTest, AFolderThatSomethingElseHasComeIntoIsNotPreparedFor) {
    writeFile(root_ / "mine.csv", "mine");
    EXPECT_EQ(refusalToStage(copyEntries("1.1.0")),
        "Update refused · Cannot replace " + root_.string() + ": it shares its folder with " +
            (root_ / "mine.csv").string() + ".");
    expectUntouched();
}

TEST_F(UpdateInstallerTest, NothingIsPreparedWhereOthersCanWrite) {
    fs::create_directory(work_);
    for (const unsigned rights : {0777U, 0770U, 0722U}) {
        fs::permissions(work_, fs::perms(rights));
        EXPECT_EQ(refusalToStage(copyEntries("1.1.0")),
            "Update refused · Others can write " + work_.string() + ".");
    }
    installer().discard();
    EXPECT_TRUE(fs::exists(work_)) << "it is not ours";
    fs::remove(work_);
    const fs::path elsewhere = directory_.path() / "elsewhere";
    fs::create_directory(elsewhere);
    fs::create_directory_symlink(elsewhere, work_);
    EXPECT_EQ(refusalToStage(copyEntries("1.1.0")),
        "Update refused · Others can write " + work_.string() + ".");
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(UpdateInstallerTest, NothingIsPreparedInAFolderOfSomebodyElse) {
    fs::create_directory(work_);
    makeArchive(archive_, copyEntries("1.1.0"));
    ASSERT_EQ(::geteuid() == 0 ? ::chown(work_.c_str(), 65534, 65534) : 0, 0);
    UpdateInstaller subject = installer();
    const std::string line = refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); });
    // Only the machine's administrator can give a folder away.
    EXPECT_EQ(
        line, ::geteuid() == 0 ? "Update refused · Others can write " + work_.string() + "." : "");
}

TEST_F(UpdateInstallerTest, WhatIsStagedCanBeGivenUp) {
    UpdateInstaller subject = installer();
    stage(subject);
    subject.discard();
    EXPECT_FALSE(subject.isStaged());
    expectUntouched();
}

TEST_F(UpdateInstallerTest, LeftoversOfAProcessThatEndedAreCleared) {
    inProcessThatEnds([this] {
        UpdateInstaller subject = installer();
        stage(subject);
        endProcess();
    });
    ASSERT_TRUE(fs::exists(work_ / "ready"));
    UpdateInstaller next = installer();
    next.recover();
    EXPECT_FALSE(next.isStaged());
    next.discard();
    expectUntouched();
}

TEST_F(UpdateInstallerTest, WhatWasTakenAwayIsNotPutInPlace) {
    UpdateInstaller subject = installer();
    stage(subject);
    fs::remove_all(work_);
    EXPECT_EQ(refusal([&] { subject.exchange(); }),
        "Update refused · The update that lay ready is not there any more.");
    expectUntouched();
}

} // namespace
