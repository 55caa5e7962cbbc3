#include "Update/fetch/DownloadBench.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>

#include <sys/resource.h>

namespace ostrella {
namespace {

using test::HTTPSServer;
using test::waitUntil;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class ArchiveDownloadTest : public test::DownloadBench {
protected:
    ArchiveDownloadTest() {
        for (int i = 0; i < 30'000; ++i) {
            bytes += std::to_string(i * 7919 % 10'007) + '\n';
        }
        half = bytes.substr(0, bytes.size() / 2);
        item.archiveLength = static_cast<std::int64_t>(bytes.size());
        server.answer(
            [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    }

    /// The first half comes, then the connection is cut.
    void fetchHalf(std::vector<std::pair<std::string, std::string>> headers = {{"ETag", "\"a\""}}) {
        server.answer(Answer{.headers = std::move(headers),
            .body = half,
            .length = static_cast<std::int64_t>(bytes.size())});
        const auto outcome = archive();
        EXPECT_THAT(outcome.refusal,
            StartsWith(fmt::format("Update refused · Only {} of {} bytes of the update archive "
                                   "came. The update archive cannot be fetched: ",
                half.size(), bytes.size())));
        EXPECT_EQ(outcome.arrived, std::nullopt);
    }

    const Request& lastRequest() const { return server.requests().back(); }

    /// Names in the folder of archives.
    std::vector<std::string> kept() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(cache)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::string bytes;
    std::string half;
};

TEST_F(ArchiveDownloadTest, AnArchiveArrives) {
    const auto outcome = archive();
    EXPECT_EQ(outcome.refusal, "");
    EXPECT_EQ(outcome.arrived, bytes);
    EXPECT_EQ(lastRequest().path, "/2.tar.gz");
    EXPECT_EQ(lastRequest().header("range"), "");
    EXPECT_EQ(lastRequest().header("accept-encoding"), "identity");
    EXPECT_EQ(outcome.path.parent_path(), cache);
    EXPECT_EQ(std::filesystem::status(outcome.path).permissions(),
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, ProgressIsToldOf) {
    bytes.resize(8 << 20, 'x');
    item.archiveLength = static_cast<std::int64_t>(bytes.size());
    const auto outcome = archive();
    ASSERT_GE(outcome.progress.size(), 2u);
    EXPECT_TRUE(std::is_sorted(outcome.progress.begin(), outcome.progress.end()));
    for (const auto& [received, expected] : outcome.progress) {
        EXPECT_GT(received, 0);
        EXPECT_EQ(expected, item.archiveLength);
    }
    EXPECT_EQ(outcome.arrived, bytes);
}

TEST_F(ArchiveDownloadTest, TheAddressMayBeRelativeToTheFeed) {
    feedAddress = server.address("/releases/feed.xml");
    item.archiveAddress = "2.0/linux.tar.gz";
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().path, "/releases/2.0/linux.tar.gz");
}

TEST_F(ArchiveDownloadTest, WhatIsHereIsNotFetchedAgain) {
    const auto first = archive();
    makeDownload();
    const auto second = archive();
    EXPECT_EQ(second.arrived, bytes);
    EXPECT_EQ(second.path, first.path);
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(ArchiveDownloadTest, ACutArchiveIsContinued) {
    fetchHalf();
    makeDownload(); // as after the next start of the program
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    const auto outcome = archive();
    EXPECT_EQ(outcome.arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), fmt::format("bytes={}-", half.size()));
    EXPECT_EQ(lastRequest().header("if-range"), "\"a\"");
    EXPECT_EQ(server.sent(), item.archiveLength);
    EXPECT_GT(outcome.progress.at(0).first, static_cast<std::int64_t>(half.size()));
}

TEST_F(ArchiveDownloadTest, ACancelledArchiveIsContinued) {
    server.answer(Answer{.headers = {{"ETag", "\"a\""}},
        .body = half,
        .length = item.archiveLength,
        .end = Answer::End::silence});
    Outcome cancelled;
    askArchive(cancelled);
    const auto hasHalf = [&] {
        return !cancelled.progress.empty() &&
               cancelled.progress.back().first == static_cast<std::int64_t>(half.size());
    };
    ASSERT_TRUE(waitUntil(hasHalf));
    download->cancel();
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), fmt::format("bytes={}-", half.size()));
    EXPECT_FALSE(cancelled.isThere());
}

TEST_F(ArchiveDownloadTest, ADateOfTheFileServesAsWell) {
    const std::string date = "Sat, 21 Nov 2026 16:00:00 GMT";
    fetchHalf({{"ETag", "W/\"weak\""}, {"Last-Modified", date}});
    server.answer([&](const Request& request) {
        return HTTPSServer::part(request, bytes, date); // which as a tag is none
    });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("if-range"), date);
}

TEST_F(ArchiveDownloadTest, WhatTheServerHasNoNameForIsNotContinued) {
    fetchHalf({{"ETag", "W/\"weak\""}});
    server.answer(Answer{.body = bytes});
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), "");
}

TEST_F(ArchiveDownloadTest, AServerThatKnowsNoRangesSendsAll) {
    fetchHalf();
    server.answer(Answer{.headers = {{"ETag", "\"a\""}}, .body = bytes});
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_NE(lastRequest().header("range"), "");
}

TEST_F(ArchiveDownloadTest, AChangedFileIsFetchedWhole) {
    fetchHalf();
    std::reverse(bytes.begin(), bytes.end());
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"b\""); });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_NE(lastRequest().header("range"), "");
}

TEST_F(ArchiveDownloadTest, WrongAnswersToARangeLeadToTheWhole) {
    const auto wrong = [&](int status, const std::string& range, const std::string& tag) {
        return Answer{.status = status,
            .headers = {{"ETag", tag}, {"Content-Range", range}},
            .body = bytes.substr(half.size())};
    };
    const auto total = bytes.size();
    const auto right = fmt::format("bytes {}-{}/{}", half.size(), total - 1, total);
    for (const auto& answer : {wrong(416, fmt::format("bytes */{}", total), "\"a\""),
             wrong(206, right, "\"b\""), wrong(206, fmt::format("bytes 0-9/{}", total), "\"a\""),
             wrong(206, fmt::format("bytes {}-{}/{}", half.size(), total, total + 1), "\"a\""),
             wrong(206, "", "\"a\""), wrong(206, "bytes -", "\"a\""),
             wrong(206, "items 1-2/3", "\"a\""), wrong(206, "bytes x-y/z", "\"a\"")}) {
        download->discardArchives();
        fetchHalf();
        server.answer([&](const Request& request) {
            return request.header("range").empty() ? HTTPSServer::part(request, bytes, "\"a\"")
                                                   : answer;
        });
        EXPECT_EQ(archive().arrived, bytes);
        EXPECT_EQ(lastRequest().header("range"), "");
    }
}

TEST_F(ArchiveDownloadTest, WhatWasNotAskedForInPartsIsNotTakenInParts) {
    server.answer(Answer{.status = 206,
        .headers = {{"Content-Range", fmt::format("bytes 0-{0}/{0}", bytes.size())}},
        .body = bytes});
    EXPECT_EQ(archive().refusal,
        "Update refused · The server answered 206 (Said) instead of the update archive.");
}

TEST_F(ArchiveDownloadTest, ShorterThanStated) {
    server.answer(Answer{.body = half});
    EXPECT_EQ(archive().refusal,
        fmt::format("Update refused · The update archive has {} bytes, where the feed states {}.",
            half.size(), bytes.size()));
    EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, ShorterThanStatedWithoutALength) {
    server.answer(Answer{.body = half, .length = -1});
    EXPECT_EQ(archive().refusal,
        fmt::format("Update refused · Only {} of {} bytes of the update archive came.", half.size(),
            bytes.size()));
}

TEST_F(ArchiveDownloadTest, LongerThanStated) {
    server.answer(Answer{.body = bytes + "x"});
    EXPECT_EQ(archive().refusal,
        fmt::format("Update refused · The update archive has {} bytes, where the feed states {}.",
            bytes.size() + 1, bytes.size()));
    EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, WithoutEnd) {
    server.answer(Answer{.body = bytes, .end = Answer::End::never});
    EXPECT_EQ(archive().refusal,
        fmt::format("Update refused · The update archive has more than the {} bytes that the feed "
                    "states.",
            bytes.size()));
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_TRUE(waitUntil([&] { return server.connections() == 0; }));
}

TEST_F(ArchiveDownloadTest, WithoutAStatedLengthNothingIsFetched) {
    item.archiveLength = 0;
    EXPECT_EQ(archive().refusal,
        "Update refused · The feed does not state how long the update archive is.");
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, MoreThanIsEverTakenIsNotBegun) {
    item.archiveLength = (std::int64_t{2} << 30) + 1;
    EXPECT_EQ(archive().refusal, "Update refused · The feed states an update archive of 2147483649 "
                                 "bytes, more than 2 GiB.");
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, NotThere) {
    for (const int status : {404, 500}) {
        server.answer(Answer{.status = status, .body = bytes});
        EXPECT_EQ(archive().refusal,
            fmt::format("Update refused · The server answered {} (Said) instead of the update "
                        "archive.",
                status));
    }
}

/// A server in trouble for a while costs nothing of what has come already.
TEST_F(ArchiveDownloadTest, TroubleInBetweenKeepsTheFirstHalf) {
    fetchHalf();
    server.answer(Answer{.status = 503});
    EXPECT_THAT(archive().refusal, StartsWith("Update refused · The server answered 503"));
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), fmt::format("bytes={}-", half.size()));
}

TEST_F(ArchiveDownloadTest, AServerThatFallsSilentKeepsTheFirstHalf) {
    server.answer(Answer{.headers = {{"ETag", "\"a\""}},
        .body = half,
        .length = item.archiveLength,
        .end = Answer::End::silence});
    Outcome outcome;
    askArchive(outcome);
    ASSERT_TRUE(waitUntil([&] {
        return !outcome.progress.empty() &&
               outcome.progress.back().first == static_cast<std::int64_t>(half.size());
    }));
    timers.advance(30);
    ASSERT_TRUE(waitUntil([&] { return outcome.isThere(); }));
    EXPECT_EQ(outcome.refusal,
        "Update refused · The server sent nothing of the update archive for 30 s.");
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), fmt::format("bytes={}-", half.size()));
}

TEST_F(ArchiveDownloadTest, TheRangeIsAskedForWhereTheServerSendsItOn) {
    fetchHalf();
    server.answer([this](const Request& request) {
        return request.path == "/store"
                   ? HTTPSServer::part(request, bytes, "\"a\"")
                   : Answer{.status = 302, .headers = {{"Location", "/store"}}};
    });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().path, "/store");
    EXPECT_EQ(lastRequest().header("range"), fmt::format("bytes={}-", half.size()));
}

TEST_F(ArchiveDownloadTest, NotSentOnToPlainHTTP) {
    server.answer(Answer{.status = 302, .headers = {{"Location", "http://127.0.0.1/2.tar.gz"}}});
    EXPECT_EQ(archive().refusal,
        "Update refused · The server sends on for the update archive to an "
        "address that is not HTTPS: http://127.0.0.1/2.tar.gz");
}

TEST_F(ArchiveDownloadTest, PlainHTTPIsNotAsked) {
    item.archiveAddress = "http://127.0.0.1/2.tar.gz";
    EXPECT_EQ(archive().refusal, "Update refused · The address of the update archive is not HTTPS: "
                                 "http://127.0.0.1/2.tar.gz");
}

TEST_F(ArchiveDownloadTest, FilesComeOnlyFromFeedsThatAreFiles) {
    const auto place = folder.path() / "releases";
    test::writeFile(place / "2.tar.gz", bytes);
    auto means = setup();
    means.allowsFiles = true;
    download = std::make_unique<UpdateDownload>(means);
    item.archiveAddress = "file://" + (place / "2.tar.gz").string();
    EXPECT_THAT(archive().refusal,
        StartsWith("Update refused · The address of the update archive is not HTTPS: file:///"));
    feedAddress = "file://" + (place / "feed.xml").string();
    EXPECT_EQ(archive().arrived, bytes);
    item.archiveAddress = "2.tar.gz";
    const auto outcome = archive();
    EXPECT_EQ(outcome.arrived, bytes);
    EXPECT_EQ(outcome.path.parent_path(), cache); // a copy, which nobody else changes
    item.archiveAddress = server.address("/2.tar.gz");
    EXPECT_EQ(archive().arrived, bytes);
}

/// Each piece of a file, which is there at once, is told of in a turn of its own.
TEST_F(ArchiveDownloadTest, AFileIsCopiedInPieces) {
    bytes.resize((5 << 20) + 1, 'x');
    test::writeFile(folder.path() / "2.tar.gz", bytes);
    item.archiveLength = static_cast<std::int64_t>(bytes.size());
    item.archiveAddress = "2.tar.gz";
    feedAddress = "file://" + (folder.path() / "feed.xml").string();
    auto means = setup();
    means.allowsFiles = true;
    download = std::make_unique<UpdateDownload>(means);
    const auto outcome = archive();
    EXPECT_EQ(outcome.arrived, bytes);
    std::int64_t before = 0;
    for (const auto& [received, expected] : outcome.progress) {
        EXPECT_LE(received - before, 2 << 20);
        before = received;
    }
    EXPECT_GE(before, 4 << 20);
}

/// The bytes are those that were signed, even if a server says that they are packed.
TEST_F(ArchiveDownloadTest, NothingIsUnpackedOnTheWay) {
    server.answer(Answer{.headers = {{"Content-Encoding", "gzip"}}, .body = bytes});
    EXPECT_EQ(archive().arrived, bytes);
}

TEST_F(ArchiveDownloadTest, ArchivesOfOtherReleasesGo) {
    fetchHalf();
    test::writeFile(cache / "notes.txt", "not ours");
    const auto before = kept();
    EXPECT_THAT(before, SizeIs(3));
    item.version = "3";
    item.signature = "signed again";
    server.answer(
        [this](const Request& request) { return HTTPSServer::part(request, bytes, "\"a\""); });
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_EQ(lastRequest().header("range"), "");
    const auto after = kept();
    EXPECT_THAT(after, SizeIs(3));
    EXPECT_NE(after, before);
    EXPECT_TRUE(std::filesystem::exists(cache / "notes.txt"));
}

TEST_F(ArchiveDownloadTest, DiscardedArchivesAreGone) {
    EXPECT_EQ(archive().arrived, bytes);
    download->discardArchives();
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_EQ(archive().arrived, bytes);
    EXPECT_THAT(server.requests(), SizeIs(2));
}

TEST_F(ArchiveDownloadTest, DiscardingWhereNothingIsDoesNothing) {
    download->discardArchives();
    EXPECT_FALSE(std::filesystem::exists(cache));
}

TEST_F(ArchiveDownloadTest, TwoCopiesDoNotWriteTheSameArchive) {
    server.answer(Answer{.body = half, .length = item.archiveLength, .end = Answer::End::silence});
    Outcome first;
    askArchive(first);
    ASSERT_TRUE(waitUntil([&] { return !first.progress.empty(); }));
    const auto other = std::exchange(download, std::make_unique<UpdateDownload>(setup()));
    EXPECT_EQ(
        archive().refusal, "Update refused · Another copy of Ostrella is fetching this update.");
}

TEST_F(ArchiveDownloadTest, AFolderThatCannotBe) {
    test::writeFile(folder.path() / "cache", "a file");
    EXPECT_EQ(
        archive().refusal, "Update refused · The update archive cannot be kept: Not a directory.");
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(ArchiveDownloadTest, ALinkInItsPlaceIsNotFollowed) {
    const auto path = archive().path;
    const auto precious = folder.path() / "precious";
    test::writeFile(precious, "untouched");
    std::filesystem::remove(path);
    std::filesystem::create_symlink(precious, path);
    EXPECT_THAT(
        archive().refusal, StartsWith("Update refused · The update archive cannot be kept: "));
    EXPECT_EQ(test::readFile(precious), "untouched");
}

/// Files of this process may not grow beyond a size; a full disk fails in the same place.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST_F(ArchiveDownloadTest, AFullDiskIsGivenBackWhatCame) {
    const FileSizeLimit limit(50'000);
    EXPECT_EQ(
        archive().refusal, "Update refused · The update archive cannot be kept: File too large.");
    EXPECT_THAT(kept(), IsEmpty());
}

} // namespace
} // namespace ostrella
