// What is checked is what is unpacked: nobody changes an archive in between.

#include "Update/PartialArchive.h"
#include "Update/UpdateRefusal.h"
#include "Update/fetch/DownloadBench.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;

using test::HTTPSServer;
using testing::StartsWith;

constexpr auto forTheUser = fs::perms::owner_all;
constexpr auto forAll = fs::perms::all;

class PrivateArchiveTest : public test::DownloadBench {
protected:
    PrivateArchiveTest() {
        item.archiveLength = static_cast<std::int64_t>(bytes.size());
        server.answer(
            [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    }

    static fs::perms modeOf(const fs::path& path) { return fs::status(path).permissions(); }

    static std::string refusal(const fs::path& archive) {
        try {
            PartialArchive::hold(archive);
        } catch (const UpdateRefusal& refused) {
            return refused.what();
        }
        return {};
    }

    const std::string bytes = std::string(1000, 'x');
};

TEST_F(PrivateArchiveTest, TheFolderIsTheUsersAlone) {
    archive();
    EXPECT_EQ(modeOf(cache), forTheUser);
}

TEST_F(PrivateArchiveTest, WhatOthersCouldHavePutThereIsFetchedAgain) {
    const auto path = archive().path;
    test::writeFile(path, std::string(1000, 'y'));
    fs::permissions(cache, forAll);
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(modeOf(cache), forTheUser);
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(PrivateArchiveTest, AFileThatOthersCanWriteIsFetchedAgain) {
    const auto path = archive().path;
    fs::permissions(path, forAll);
    EXPECT_NE(refusal(path), "");
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(modeOf(path), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(refusal(path), "");
}

TEST_F(PrivateArchiveTest, AFileOfASecondNameIsFetchedAgain) {
    const auto path = archive().path;
    const auto other = folder.path() / "other";
    fs::create_hard_link(path, other);
    EXPECT_NE(refusal(path), "");
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(fs::hard_link_count(other), 1U);
}

TEST_F(PrivateArchiveTest, ALinkInTheFoldersPlaceIsNotFollowed) {
    const auto elsewhere = folder.path() / "elsewhere";
    fs::create_directories(elsewhere);
    fs::create_directories(cache.parent_path());
    fs::create_directory_symlink(elsewhere, cache);
    EXPECT_THAT(
        archive().refusal, StartsWith("Update refused · The update archive cannot be kept: "));
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(PrivateArchiveTest, WhatIsHeldIsNeitherRemovedNorWritten) {
    const auto path = archive().path;
    std::optional<FileDescriptor> held = PartialArchive::hold(path);
    PartialArchive::clear(cache);
    EXPECT_EQ(archive().arrived, bytes) << "it can be held by another, too";
    EXPECT_EQ(server.requests().size(), 1U);
    item.archiveLength += 1;
    item.version = "3";
    static_cast<void>(archive());
    EXPECT_EQ(test::readFile(path), bytes);
    held.reset();
    PartialArchive::clear(cache);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(PrivateArchiveTest, WhatIsBeingFetchedIsNotHeld) {
    server.answer(Answer{.body = "x", .length = item.archiveLength, .end = Answer::End::silence});
    Outcome first;
    askArchive(first);
    ASSERT_TRUE(test::waitUntil([&] { return !first.progress.empty(); }));
    for (const auto& entry : fs::directory_iterator(cache)) {
        if (entry.path().extension() == ".archive") {
            EXPECT_THAT(refusal(entry.path()),
                StartsWith("Update refused · The update archive cannot be read: "));
        }
    }
}

} // namespace
} // namespace ostrella
