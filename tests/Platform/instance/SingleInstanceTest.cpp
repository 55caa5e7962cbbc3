#include "Platform/SingleInstance.h"

#include "Platform/desktop/DesktopBench.h"

#include <QLocalSocket>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {
namespace {

using test::waitUntil;

class SingleInstanceTest : public testing::Test {
protected:
    /// A process that is started with these documents, and willing to wait so long.
    std::unique_ptr<test::TalkingProgram> startProcess(
        const QStringList& documents = {}, int patience = 20000) const {
        return std::make_unique<test::TalkingProgram>(QStringLiteral(OSTRELLA_INSTANCE_PROGRAM),
            QStringList{QString::fromStdString(socket_.string()), QString::number(patience)} +
                documents);
    }

    /// Connects as anybody could; greeted.
    std::unique_ptr<QLocalSocket> visit() const {
        auto visitor = std::make_unique<QLocalSocket>();
        visitor->connectToServer(QString::fromStdString(socket_.string()));
        EXPECT_TRUE(waitUntil([&] { return visitor->bytesAvailable() >= 16; }));
        EXPECT_EQ(visitor->readAll(), QByteArray("ostrella-here 1\n"));
        return visitor;
    }

    static bool isSentAway(QLocalSocket& visitor) {
        return waitUntil([&] { return visitor.state() == QLocalSocket::UnconnectedState; });
    }

    void signal(test::TalkingProgram& program, int number) const {
        ::kill(static_cast<pid_t>(program.process().processId()), number);
    }

    test::EnvironmentVariable noToken_{"XDG_ACTIVATION_TOKEN", std::nullopt};
    test::EnvironmentVariable noID_{"DESKTOP_STARTUP_ID", std::nullopt};
    test::TemporaryDirectory directory_;
    std::filesystem::path socket_ = directory_.path() / "own" / "instance.socket";
};

TEST_F(SingleInstanceTest, TheSecondStartHandsItsDocumentsToTheFirst) {
    const auto first = startProcess({QStringLiteral("/one.stl")});
    EXPECT_EQ(first->waitForLine({}), QStringLiteral("first||/one.stl"));
    const test::EnvironmentVariable token("XDG_ACTIVATION_TOKEN", "abc");
    const auto second =
        startProcess({QStringLiteral("/two.stl"), QStringLiteral("/three × 4.stl")});
    EXPECT_EQ(second->waitForLine({}), QStringLiteral("second|abc|/two.stl|/three × 4.stl"));
    EXPECT_EQ(first->waitForLine(QStringLiteral("handed")),
        QStringLiteral("handed|abc|/two.stl|/three × 4.stl"));
}

TEST_F(SingleInstanceTest, AStartWithoutDocumentsOnlyAsksForTheWindow) {
    const auto first = startProcess();
    ASSERT_TRUE(first->waitForLine(QStringLiteral("first")));
    EXPECT_EQ(startProcess()->waitForLine({}), QStringLiteral("second|"));
    EXPECT_EQ(first->waitForLine(QStringLiteral("handed")), QStringLiteral("handed|"));
}

TEST_F(SingleInstanceTest, OfManyStartsAtOnceExactlyOneIsTheFirst) {
    constexpr int count = 8;
    std::vector<std::unique_ptr<test::TalkingProgram>> starts;
    for (int i = 0; i < count; ++i) {
        starts.push_back(startProcess({QStringLiteral("/%1.stl").arg(i)}));
    }
    test::TalkingProgram* first = nullptr;
    for (const auto& start : starts) {
        const QString role = start->waitForLine({}).value_or(QString());
        if (role.startsWith(QLatin1String("first"))) {
            EXPECT_EQ(first, nullptr);
            first = start.get();
        } else {
            EXPECT_TRUE(role.startsWith(QLatin1String("second"))) << role.toStdString();
        }
    }
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(waitUntil([&] { return first->lines().size() == count; }));
}

TEST_F(SingleInstanceTest, AfterACrashTheNextStartIsTheFirst) {
    auto crashed = startProcess();
    ASSERT_TRUE(crashed->waitForLine(QStringLiteral("first")));
    crashed->kill();
    ASSERT_TRUE(std::filesystem::exists(socket_)) << "a crash sweeps nothing away";
    const auto first = startProcess();
    EXPECT_EQ(first->waitForLine({}), QStringLiteral("first|"));
    EXPECT_EQ(startProcess()->waitForLine({}), QStringLiteral("second|"));
}

TEST_F(SingleInstanceTest, AfterAnOrderlyEndNothingIsLeftToConnectTo) {
    const auto first = startProcess();
    ASSERT_TRUE(first->waitForLine(QStringLiteral("first")));
    first->process().closeWriteChannel();
    ASSERT_TRUE(first->process().waitForFinished());
    EXPECT_FALSE(std::filesystem::exists(socket_));
    EXPECT_EQ(startProcess()->waitForLine({}), QStringLiteral("first|"));
}

TEST_F(SingleInstanceTest, WhatIsInTheSocketsPlaceIsSweptAway) {
    test::writeFile(socket_, "what is this?");
    const auto first = startProcess();
    EXPECT_EQ(first->waitForLine({}), QStringLiteral("first|"));
    EXPECT_EQ(startProcess()->waitForLine({}), QStringLiteral("second|"));
}

TEST_F(SingleInstanceTest, AFirstOneThatHangsIsLeftAloneAndDoesNotOpenTheSameLater) {
    const auto first = startProcess();
    ASSERT_TRUE(first->waitForLine(QStringLiteral("first")));
    signal(*first, SIGSTOP);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(startProcess({QStringLiteral("/a.stl")}, 300)->waitForLine({}),
        QStringLiteral("alone||/a.stl"));
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
    signal(*first, SIGCONT);
    EXPECT_EQ(startProcess({QStringLiteral("/b.stl")})->waitForLine({}),
        QStringLiteral("second||/b.stl"));
    EXPECT_EQ(first->waitForLine(QStringLiteral("handed")), QStringLiteral("handed||/b.stl"));
    EXPECT_EQ(first->lines().size(), 2) << "nothing of what was opened elsewhere";
}

TEST_F(SingleInstanceTest, HostileWordsAreRefused) {
    SingleInstance first(socket_);
    std::vector<HandOver> received;
    QObject::connect(
        &first, &SingleInstance::handedOver, [&](const HandOver& h) { received.push_back(h); });
    ASSERT_EQ(first.start({}), SingleInstance::Role::first);
    for (const QByteArray& words :
        {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray("ostrella-open 4294967295\n"),
            QByteArray("ostrella-open 10\n\0relative\0", 27), QByteArray(64, '\0'),
            QByteArray("ostrella-open 1\n\0 and more", 26), QByteArray(3 << 20, 'x')}) {
        const auto visitor = visit();
        visitor->write(words);
        EXPECT_TRUE(isSentAway(*visitor)) << words.left(30).constData();
        EXPECT_EQ(visitor->bytesAvailable(), 0) << "no receipt";
    }
    EXPECT_TRUE(received.empty());
    // A message in small pieces is one all the same.
    const auto visitor = visit();
    const std::string message = HandOver{{"/a.stl"}, ""}.encoded().value();
    for (const char c : message) {
        visitor->write(&c, 1);
        visitor->flush();
    }
    EXPECT_TRUE(waitUntil([&] { return !received.empty(); }));
    EXPECT_THAT(received, testing::ElementsAre(HandOver{{"/a.stl"}, ""}));
}

TEST_F(SingleInstanceTest, SilentVisitorsAreSentAwayAndKeepNobodyOut) {
    const auto first = startProcess();
    ASSERT_TRUE(first->waitForLine(QStringLiteral("first")));
    std::vector<std::unique_ptr<QLocalSocket>> silent;
    for (int i = 0; i < SingleInstance::mostVisitors; ++i) {
        silent.push_back(visit());
    }
    QLocalSocket tooMany;
    tooMany.connectToServer(QString::fromStdString(socket_.string()));
    EXPECT_TRUE(isSentAway(tooMany));
    EXPECT_EQ(tooMany.readAll(), QByteArray());
    // The others go when their time is over, and then there is room again.
    EXPECT_EQ(startProcess()->waitForLine({}), QStringLiteral("second|"));
    for (const auto& visitor : silent) {
        EXPECT_TRUE(isSentAway(*visitor));
    }
}

TEST_F(SingleInstanceTest, OthersCanNeitherConnectNorPutThingsThere) {
    SingleInstance first(socket_);
    ASSERT_EQ(first.start({}), SingleInstance::Role::first);
    struct stat facts {};
    ASSERT_EQ(stat(socket_.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700U);
    ASSERT_EQ(stat(socket_.parent_path().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700U);

    const auto open = directory_.path() / "open";
    std::filesystem::create_directory(open);
    std::filesystem::permissions(open, std::filesystem::perms::all);
    EXPECT_EQ(SingleInstance(open / "socket").start({}), SingleInstance::Role::alone);
    const auto link = directory_.path() / "link";
    std::filesystem::create_directory_symlink(socket_.parent_path(), link);
    EXPECT_EQ(SingleInstance(link / "socket").start({}), SingleInstance::Role::alone);
    EXPECT_EQ(SingleInstance(directory_.path() / "no" / "such" / "socket").start({}),
        SingleInstance::Role::alone);
}

TEST_F(SingleInstanceTest, APlaceThatIsTooLongForASocketKeepsNobodyWaiting) {
    const auto place = directory_.path() / std::string(200, 'x');
    SingleInstance one(place);
    SingleInstance two(place);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(one.start({}), SingleInstance::Role::alone);
    EXPECT_EQ(two.start({}), SingleInstance::Role::alone);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
}

TEST(SingleInstancePlaceTest, IsTheUsersAndTheDisplays) {
    const test::EnvironmentVariable runtime("XDG_RUNTIME_DIR", "/run/user/7");
    const test::EnvironmentVariable wayland("WAYLAND_DISPLAY", std::nullopt);
    const test::EnvironmentVariable display("DISPLAY", ":0");
    const auto place = SingleInstance::usualSocket();
    EXPECT_EQ(place.parent_path(), "/run/user/7");
    {
        const test::EnvironmentVariable other("DISPLAY", ":1");
        EXPECT_NE(SingleInstance::usualSocket(), place);
    }
    EXPECT_EQ(SingleInstance::usualSocket(), place);
    const test::EnvironmentVariable none("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(SingleInstance::usualSocket().parent_path().filename(),
        "ostrella-" + std::to_string(geteuid()));
}

} // namespace
} // namespace ostrella
