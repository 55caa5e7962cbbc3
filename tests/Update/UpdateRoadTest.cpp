// The whole road: from a feed over HTTPS to a new version that runs, and back where it does not.

#include "Update/UpdateRestart.h"
#include "Update/UpdaterFixture.h"
#include "support/HTTPSServer.h"

#include <algorithm>
#include <chrono>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using namespace std::chrono_literals;
using Kind = ArchiveEntry::Kind;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
namespace fs = std::filesystem;

class UpdateRoadTest : public UpdaterFixture {
protected:
    UpdateRoadTest() {
        fs::copy_file(OSTRELLA_UPDATE_SAMPLE, program(), fs::copy_options::overwrite_existing);
        information_["SUFeedURL"] = server_.address("/feed.xml");
        server_.answer([this](const HTTPSServer::Request& request) { return reply(request); });
    }

    fs::path program() const { return root_ / "bin" / "ostrella"; }
    fs::path starts() const { return root_.parent_path() / "starts.txt"; }

    HTTPSServer::Answer reply(const HTTPSServer::Request& request) const {
        if (request.path == "/feed.xml") {
            return {.body = feedBody_};
        }
        if (request.path == "/next.tar.zst") {
            return archiveReply_ ? archiveReply_(request)
                                 : HTTPSServer::part(request, archiveBytes_, "\"1\"");
        }
        return {.status = 404};
    }

    AppcastUpdater& startedOverNetwork(std::chrono::milliseconds patience = 60s) {
        auto all = surroundings();
        all.allowsFileAddresses = false;
        all.trust = server_.trust();
        all.patience = patience;
        updater_ = std::make_unique<AppcastUpdater>(all);
        updater_->setDelegate(&delegate_);
        EXPECT_EQ(updater_->startUpdater(), std::nullopt);
        return *updater_;
    }

    /// Offers version 1.1.0 whose program behaves so.
    void offer(const std::string& behaviour, std::string signature = {}) {
        auto entries = copyEntries("1.1.0", readFile(OSTRELLA_UPDATE_SAMPLE));
        entries.push_back({"share/ostrella/behaviour.txt", Kind::file, behaviour});
        makeArchive(archive_, entries, ArchiveForm::tarZstd);
        archiveBytes_ = readFile(archive_);
        AppcastItem item = itemOf("1.1.0", archiveBytes_);
        item.archiveAddress = server_.address("/next.tar.zst");
        if (!signature.empty()) {
            item.signature = std::move(signature);
        }
        feedBody_ = feedText({item});
    }

    /// What the programs that were started have told, once the last one has told this.
    testing::AssertionResult startsComeTo(const std::string& expected) const {
        const bool did =
            waitUntil([&] { return fs::exists(starts()) && readFile(starts()) == expected; });
        return (did ? testing::AssertionSuccess() : testing::AssertionFailure())
               << (fs::exists(starts()) ? readFile(starts()) : "nothing was started");
    }

    /// Nothing of the version before is left, nor of the update.
    bool isTidy() const {
        return waitUntil([this] {
            return namesIn(root_.parent_path()) == std::set<std::string>{"ostrella", "starts.txt"};
        });
    }

    HTTPSServer server_;
    std::string feedBody_;
    std::string archiveBytes_;
    std::function<HTTPSServer::Answer(const HTTPSServer::Request&)> archiveReply_;
};

TEST_F(UpdateRoadTest, ByRestart) {
    offer("confirms");
    startedOverNetwork();
    std::vector<std::int64_t> received;
    QObject::connect(updater_.get(), &AppcastUpdater::sessionChanged, updater_.get(), [&] {
        if (updater_->session().stage == Stage::downloading) {
            received.push_back(updater_->session().received);
        }
    });
    prepareNext();
    const auto length = static_cast<std::int64_t>(archiveBytes_.size());
    EXPECT_EQ(received.back(), length);
    EXPECT_TRUE(std::is_sorted(received.begin(), received.end()));
    EXPECT_EQ(updater_->session().expected, length);

    updater_->installAndRestart();
    EXPECT_EQ(quits_, 1);
    updater_->installAtQuit();
    EXPECT_TRUE(startsComeTo("1.1.0 watched\n"));
    EXPECT_TRUE(isTidy());
    EXPECT_EQ(installed(), "1.1.0");
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(UpdateRoadTest, AtQuit) {
    offer("confirms");
    startedOverNetwork();
    prepareNext();
    updater_->remindLater();
    updater_->installAtQuit();
    EXPECT_FALSE(fs::exists(starts())) << "nobody asked for a start";
    updater_.reset();

    ASSERT_TRUE(UpdateRestart::start(program()));
    EXPECT_TRUE(startsComeTo("1.1.0 alone\n"));
    EXPECT_TRUE(isTidy());
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(UpdateRoadTest, ANewVersionThatEndsAtOnceIsTakenBack) {
    offer("ends");
    startedOverNetwork();
    prepareNext();
    updater_->installAndRestart();
    EXPECT_EQ(installed(), "1.1.0");
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_TRUE(startsComeTo("1.1.0 watched\n1.0.0 alone 1.1.0\n"));
}

TEST_F(UpdateRoadTest, ANewVersionThatNeverConfirmsIsTakenBack) {
    offer("hangs");
    startedOverNetwork(1s);
    prepareNext();
    updater_->installAndRestart();
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.0.0");
    ASSERT_TRUE(waitUntil([this] {
        return fs::exists(starts()) && readFile(starts()).ends_with("1.0.0 alone 1.1.0\n");
    }));
}

TEST_F(UpdateRoadTest, ANewVersionThatNeverComesUpAfterAQuitIsTakenBackAtItsSecondStart) {
    offer("ends");
    startedOverNetwork();
    prepareNext();
    updater_->remindLater();
    updater_->installAtQuit();
    updater_.reset();

    ASSERT_TRUE(UpdateRestart::start(program()));
    ASSERT_TRUE(startsComeTo("1.1.0 alone\n"));
    ASSERT_TRUE(UpdateRestart::start(program()));
    EXPECT_TRUE(startsComeTo("1.1.0 alone\n1.0.0 alone 1.1.0\n"));
    EXPECT_EQ(installed(), "1.0.0");
    EXPECT_FALSE(fs::exists(root_.parent_path() / "ostrella.previous"));
}

TEST_F(UpdateRoadTest, AWrongSignatureInstallsNothing) {
    offer("confirms", SigningKey().sign("something else"));
    startedOverNetwork();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::failed));
    EXPECT_THAT(
        log_, ElementsAre("Update refused · The signature of the update archive is wrong."));
    updater_->installAtQuit();
    expectNothingInstalled();
}

TEST_F(UpdateRoadTest, ADownloadThatWasCutGoesOnWhereItEnded) {
    offer("confirms");
    int requests = 0;
    archiveReply_ = [&](const HTTPSServer::Request& request) {
        HTTPSServer::Answer answer = HTTPSServer::part(request, archiveBytes_, "\"1\"");
        if (++requests == 1) {
            answer.length = static_cast<std::int64_t>(answer.body.size());
            answer.body.resize(answer.body.size() / 2);
        }
        return answer;
    };
    startedOverNetwork();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(comesTo(Stage::failed));
    EXPECT_THAT(log_, SizeIs(1));
    updater_->acknowledge();
    expectNothingInstalled();

    prepareNext();
    EXPECT_EQ(requests, 2);
    EXPECT_NE(server_.requests().back().header("range"), "");
    updater_->installAtQuit();
    EXPECT_EQ(installed(), "1.1.0");
}

TEST_F(UpdateRoadTest, ADownloadCanBeLeft) {
    offer("confirms");
    archiveReply_ = [&](const HTTPSServer::Request&) {
        return HTTPSServer::Answer{.body = archiveBytes_.substr(0, archiveBytes_.size() / 2),
            .length = static_cast<std::int64_t>(archiveBytes_.size()),
            .end = HTTPSServer::Answer::End::silence};
    };
    startedOverNetwork();
    search(Stage::found);
    updater_->install();
    ASSERT_TRUE(waitUntil([this] { return updater_->session().received > 0; }));
    updater_->cancel();
    EXPECT_FALSE(updater_->sessionInProgress());
    EXPECT_TRUE(waitUntil([this] { return server_.connections() == 0; }));
    updater_->installAtQuit();
    expectNothingInstalled();
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(UpdateRoadTest, WhereNobodyAnswersItIsOneLine) {
    {
        const HTTPSServer gone;
        information_["SUFeedURL"] = gone.address("/feed.xml");
    }
    startedOverNetwork();
    search(Stage::failed);
    EXPECT_THAT(log_, SizeIs(1));
    expectNothingInstalled();
}

TEST_F(UpdateRoadTest, AServerThatNobodyVouchesForIsRefused) {
    offer("confirms");
    const HTTPSServer other(ServerCertificate::make("IP:127.0.0.1"));
    auto all = surroundings();
    all.allowsFileAddresses = false;
    all.trust = other.trust();
    updater_ = std::make_unique<AppcastUpdater>(all);
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    search(Stage::failed);
    EXPECT_THAT(log_, SizeIs(1));
    EXPECT_THAT(server_.requests(), IsEmpty());
}

} // namespace
