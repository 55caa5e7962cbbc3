#pragma once

#include "Update/UpdateDownload.h"
#include "support/HTTPSServer.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella::test {

/// A download that trusts a server of the test's, with time that stands still.
class DownloadBench : public testing::Test {
protected:
    /// How a fetch ended.
    struct Outcome {
        /// The feed's text, or the archive's bytes.
        std::optional<std::string> arrived;
        std::string refusal;
        std::vector<std::pair<std::int64_t, std::int64_t>> progress;
        std::filesystem::path path;

        bool isThere() const { return arrived || !refusal.empty(); }
    };
    using Answer = HTTPSServer::Answer;
    using Request = HTTPSServer::Request;

    DownloadBench() {
        item.version = "2";
        item.archiveAddress = server.address("/2.tar.gz");
        item.signature = "signed";
        makeDownload();
    }

    UpdateDownload::Setup setup() {
        return {.timers = timers,
            .tls = server.trust(),
            .folder = cache,
            .allowsFiles = false,
            .limits = limits};
    }

    /// A new one, as after a start of the program.
    void makeDownload() {
        download.reset();
        download = std::make_unique<UpdateDownload>(setup());
    }

    void askFeed(Outcome& outcome, const std::string& address) {
        download->fetchFeed(
            address, [&outcome](const std::string& text) { outcome.arrived = text; },
            [&outcome](const std::string& text) { outcome.refusal = text; });
    }

    Outcome feed(const std::string& address) {
        Outcome outcome;
        askFeed(outcome, address);
        EXPECT_TRUE(waitUntil([&] { return outcome.isThere(); }));
        return outcome;
    }
    Outcome feed() { return feed(server.address("/feed.xml")); }

    void askArchive(Outcome& outcome) {
        download->fetchArchive(
            feedAddress, item,
            [&outcome](std::int64_t received, std::int64_t expected) {
                outcome.progress.emplace_back(received, expected);
            },
            [&outcome](const std::filesystem::path& path) {
                outcome.arrived = readFile(path);
                outcome.path = path;
            },
            [&outcome](const std::string& text) { outcome.refusal = text; });
    }

    Outcome archive() {
        Outcome outcome;
        askArchive(outcome);
        EXPECT_TRUE(waitUntil([&] { return outcome.isThere(); }));
        return outcome;
    }

    const TemporaryDirectory folder;
    const std::filesystem::path cache = folder.path() / "cache" / "updates";
    HTTPSServer server;
    ManualTimers timers;
    UpdateDownload::Limits limits;
    std::unique_ptr<UpdateDownload> download;

    std::string feedAddress = server.address("/feed.xml");
    AppcastItem item;
};

} // namespace ostrella::test
