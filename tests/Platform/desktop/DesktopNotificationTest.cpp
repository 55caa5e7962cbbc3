#include "Platform/DesktopNotification.h"

#include "Platform/desktop/DesktopBench.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using test::startService;
using test::waitUntil;
using testing::ElementsAre;

class DesktopNotificationTest : public testing::Test {
protected:
    /// Who shows notes.
    void startDesk(const char* mode) {
        desk_ = startService(QStringLiteral("notifications"), {QString::fromLatin1(mode)});
    }

    void start() {
        notification_.emplace();
        QObject::connect(&*notification_, &DesktopNotification::activated,
            [this](const QString& token) { activations_.append(token); });
    }

    /// All calls until now, once there are so many.
    QStringList calls(qsizetype count) {
        EXPECT_TRUE(waitUntil([&] { return desk_->lines().size() > count; }));
        return desk_->lines().mid(1);
    }

    /// Shows a note and waits until it has its number, which is 41 for the first.
    void showFirst() {
        startDesk("rich");
        start();
        notification_->show("Run finished", "sphere");
        ASSERT_TRUE(desk_->waitForLine(QStringLiteral("Notify")));
        // The answer to the note comes before what is said of it.
        desk_->say(QStringLiteral("click 41"));
        ASSERT_TRUE(waitUntil([&] { return activations_.size() == 1; }));
        activations_.clear();
    }

    test::PrivateBus bus_;
    std::unique_ptr<test::TalkingProgram> desk_;
    std::optional<DesktopNotification> notification_;
    QStringList activations_;
};

TEST_F(DesktopNotificationTest, ShowsPlainTextWhereMarkupIsRead) {
    startDesk("rich");
    start();
    notification_->show("Run finished", "a < b & c · \"d\"");
    EXPECT_EQ(calls(2).at(1), QStringLiteral("Notify|Ostrella|0|org.ostrella.Ostrella|Run finished|"
                                             "a &lt; b &amp; c · &quot;d&quot;|default,|"
                                             "desktop-entry=org.ostrella.Ostrella|-1"));
}

TEST_F(DesktopNotificationTest, ShowsItAsItIsWhereItIsNot) {
    startDesk("plain");
    start();
    notification_->show("Run finished", "a < b & c");
    EXPECT_EQ(calls(2).at(1), QStringLiteral("Notify|Ostrella|0|org.ostrella.Ostrella|Run finished|"
                                             "a < b & c||"
                                             "desktop-entry=org.ostrella.Ostrella|-1"));
}

TEST_F(DesktopNotificationTest, TheNextTakesThePlaceOfTheLast) {
    showFirst();
    notification_->show("Run failed", "wing");
    EXPECT_TRUE(calls(3).at(2).startsWith(
        QStringLiteral("Notify|Ostrella|41|org.ostrella.Ostrella|Run failed|wing|")));
}

TEST_F(DesktopNotificationTest, OfSeveralInOneTurnTheLastIsShown) {
    startDesk("rich");
    start();
    notification_->show("one", "");
    notification_->show("two", "");
    notification_->show("three", "");
    EXPECT_TRUE(calls(2).at(1).contains(QLatin1String("|three|")));
    notification_->withdraw();
    EXPECT_EQ(calls(3).at(2), QStringLiteral("CloseNotification|41"));
}

TEST_F(DesktopNotificationTest, AClickIsToldWithWhatTheDesktopGivesAlong) {
    showFirst();
    desk_->say(QStringLiteral("token 41 abc"));
    desk_->say(QStringLiteral("click 41"));
    desk_->say(QStringLiteral("click 41"));
    EXPECT_TRUE(waitUntil([&] { return activations_.size() == 2; }));
    EXPECT_THAT(activations_, ElementsAre(QStringLiteral("abc"), QString()));
}

TEST_F(DesktopNotificationTest, AClickThatComesBeforeTheAnswerIsNotLost) {
    startDesk("hasty");
    start();
    notification_->show("Run finished", "sphere");
    EXPECT_TRUE(waitUntil([&] { return activations_.size() == 1; }));
}

TEST_F(DesktopNotificationTest, WhatIsNotOursIsNotTold) {
    showFirst();
    desk_->say(QStringLiteral("click 7"));
    desk_->say(QStringLiteral("token 7 theirs"));
    desk_->say(QStringLiteral("press 41 other"));
    desk_->say(QStringLiteral("token 41 ours"));
    desk_->say(QStringLiteral("click 41"));
    EXPECT_TRUE(waitUntil([&] { return !activations_.isEmpty(); }));
    EXPECT_THAT(activations_, ElementsAre(QStringLiteral("ours")));
}

TEST_F(DesktopNotificationTest, OneThatTheUserClosedIsGone) {
    showFirst();
    desk_->say(QStringLiteral("close 41"));
    desk_->say(QStringLiteral("click 41"));
    // The next one takes no place; by then the click has been heard too, for it came behind.
    ASSERT_TRUE(waitUntil([&] {
        notification_->show("again", "");
        return desk_->lines().constLast().startsWith(QLatin1String("Notify|Ostrella|0|"));
    }));
    EXPECT_EQ(activations_.size(), 0);
}

TEST_F(DesktopNotificationTest, ADeskThatComesAnewKnowsNoNote) {
    showFirst();
    desk_->kill();
    startDesk("plain");
    const QString anew = QStringLiteral("Notify|Ostrella|0|org.ostrella.Ostrella|again|<b>||");
    EXPECT_TRUE(waitUntil([&] {
        notification_->show("again", "<b>");
        return desk_->lines().constLast().startsWith(anew);
    }));
    EXPECT_TRUE(desk_->lines().contains(QStringLiteral("GetCapabilities")));
}

TEST_F(DesktopNotificationTest, OfRefusalsAndNonsenseNothingComes) {
    startDesk("refuse");
    start();
    notification_->show("one", "");
    EXPECT_TRUE(desk_->waitForLine(QStringLiteral("GetCapabilities")));
    notification_.reset();
    desk_.reset();
    startDesk("nonsense");
    start();
    notification_->show("two", "");
    EXPECT_TRUE(desk_->waitForLine(QStringLiteral("Notify")));
    desk_->say(QStringLiteral("click 0"));
    notification_->withdraw();
    notification_->show("three", "");
    EXPECT_TRUE(
        waitUntil([&] { return desk_->lines().constLast().contains(QLatin1String("|three|")); }));
    EXPECT_EQ(activations_.size(), 0);
}

TEST_F(DesktopNotificationTest, AHangingDeskHoldsNobodyUp) {
    startDesk("hang");
    start();
    notification_->show("one", "");
    EXPECT_TRUE(desk_->waitForLine(QStringLiteral("GetCapabilities")));
    notification_->show("two", "");
    notification_->withdraw();
    notification_.reset();
    EXPECT_EQ(desk_->lines().size(), 2);
}

TEST(DesktopNotificationWithoutBusTest, IsSilent) {
    const test::TemporaryDirectory directory;
    const test::EnvironmentVariable runtime(
        "XDG_RUNTIME_DIR", QByteArray::fromStdString(directory.path().string()));
    const test::EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    DesktopNotification notification;
    int activations = 0;
    QObject::connect(&notification, &DesktopNotification::activated, [&] { ++activations; });
    notification.show("one", "");
    notification.withdraw();
    EXPECT_EQ(activations, 0);
}

} // namespace
} // namespace ostrella
