#pragma once

#include "Update/AppcastUpdater.h"
#include "Update/CopyMaker.h"
#include "Update/UpdaterDelegate.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/SigningKey.h"
#include "support/Wait.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella::test {

/// A delegate as the gate is one: it keeps updates back while `isRunning`.
class RecordingDelegate final : public UpdaterDelegate {
public:
    bool isRunning = false;
    std::vector<std::string> calls;
    std::function<void()> postponed;
    /// What is installed at quit.
    std::string readyVersion;

    void didFindValidUpdate(const AppcastItem& item) override { note("found " + item.version); }
    bool shouldPostponeRelaunch(const AppcastItem&, std::function<void()> install) override {
        if (isRunning) {
            postponed = std::move(install);
        }
        return isRunning;
    }
    bool supportsGentleScheduledUpdateReminders() const override { return true; }
    bool shouldHandleShowingScheduledUpdate(const AppcastItem&, bool) override {
        return !isRunning;
    }
    void willHandleShowingUpdate(bool handleShowingUpdate, const AppcastItem&) override {
        note(handleShowingUpdate ? "show" : "hold");
    }
    void willFinishUpdateSession() override { note("finish"); }
    void readyUpdateChanged(const AppcastItem* ready) override {
        readyVersion = ready ? ready->version : "";
    }

private:
    void note(const std::string& call) { calls.push_back(call); }
};

/// Version 1.0.0 in a folder of its own, with a feed beside it that is a file.
class UpdaterFixture : public testing::Test {
protected:
    using Stage = UpdateSession::Stage;
    using Lines = std::vector<std::string>;

    UpdaterFixture() {
        makeCopy(root_, "1.0.0");
        information_ = {{"CFBundleShortVersionString", "1.0.0"},
            {"SUFeedURL", "file://" + feed_.string()}, {"SUPublicEDKey", key_.publicKey()}};
    }

    ~UpdaterFixture() override { updater_.reset(); }

    AppcastUpdater::Surroundings surroundings() {
        return {.root = root_,
            .information = information_,
            .preferences = preferences_,
            .cache = directory_.path() / "cache",
            .report = [this](const std::string& text, LogStore::Level) { log_.push_back(text); },
            .quit = [this] { ++quits_; },
            .timers = timers_,
            .clock = clock_,
            .allowsFileAddresses = true};
    }

    /// A fresh one, as a start of the application makes it.
    AppcastUpdater& make() {
        updater_ = std::make_unique<AppcastUpdater>(surroundings());
        updater_->setDelegate(&delegate_);
        return *updater_;
    }

    AppcastUpdater& started() {
        make();
        EXPECT_EQ(updater_->startUpdater(), std::nullopt);
        return *updater_;
    }

    /// Publishes an archive, signed by the right key.
    AppcastItem publish(const std::string& version, const std::vector<ArchiveEntry>& entries) {
        makeArchive(archive_, entries);
        return itemOf(version, readFile(archive_));
    }

    AppcastItem itemOf(const std::string& version, const std::string& archive) const {
        AppcastItem item;
        item.version = version;
        item.archiveAddress = "file://" + archive_.string();
        item.archiveLength = static_cast<std::int64_t>(archive.size());
        item.signature = key_.sign(archive);
        return item;
    }

    static std::string feedText(const std::vector<AppcastItem>& items) {
        std::string text =
            R"(<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>)";
        for (const AppcastItem& item : items) {
            text += fmt::format("<item><sparkle:version>{}</sparkle:version>", item.version);
            if (!item.archiveAddress.empty()) {
                text += fmt::format(R"(<enclosure url="{}" length="{}" sparkle:os="linux" )"
                                    R"(sparkle:edSignature="{}"/>)",
                    item.archiveAddress, item.archiveLength, item.signature);
            } else {
                text += "<link>https://example.org/news</link>";
            }
            text += "</item>";
        }
        return text + "</channel></rss>";
    }

    void writeFeed(const std::vector<AppcastItem>& items) const {
        writeFile(feed_, feedText(items));
    }

    /// Publishes version 1.1.0 in the feed.
    void offerNext() { writeFeed({publish("1.1.0", copyEntries("1.1.0"))}); }

    bool comesTo(Stage stage) {
        return waitUntil([&] { return updater_->session().stage == stage; });
    }

    /// Lets the scheduled check come, and waits for its end or for what it shows.
    void scheduledCheck() {
        const auto before = checks();
        ASSERT_FALSE(timers_.pending().empty());
        timers_.advance(timers_.pending().front());
        ASSERT_TRUE(waitUntil([&] { return checks() != before; }));
        // What is decided then comes in the same turn of the loop as the note of the check.
    }

    std::optional<PreferenceValue> checks() const {
        return preferences_.value("Ostrella.updates.lastCheck");
    }

    void search(Stage expected) {
        updater_->checkForUpdates();
        ASSERT_TRUE(comesTo(expected))
            << "it is in stage " << static_cast<int>(updater_->session().stage) << ": "
            << updater_->session().text;
    }

    /// Up to the moment where an update lies ready.
    void prepareNext() {
        search(Stage::found);
        updater_->install();
        ASSERT_TRUE(comesTo(Stage::ready)) << updater_->session().text;
    }

    std::string installed() const { return UpdateInstaller::version(root_); }

    void expectNothingInstalled() const {
        EXPECT_EQ(installed(), "1.0.0");
        EXPECT_EQ(namesIn(root_.parent_path()), std::set<std::string>{"ostrella"});
    }

    TemporaryDirectory directory_;
    std::filesystem::path root_ = directory_.path() / "place" / "ostrella";
    std::filesystem::path feed_ = directory_.path() / "feed.xml";
    std::filesystem::path archive_ = directory_.path() / "archive";
    SigningKey key_;
    InformationDictionary information_;
    MemoryPreferences preferences_;
    ManualTimers timers_;
    ManualClock clock_;
    RecordingDelegate delegate_;
    Lines log_;
    int quits_ = 0;
    std::unique_ptr<AppcastUpdater> updater_;
};

} // namespace ostrella::test
