#include "Views/Updates/window/UpdateBench.h"

#include "support/Wait.h"

#include <QGuiApplication>
#include <QScreen>

#include <gmock/gmock.h>

#include <iterator>
#include <utility>

namespace ostrella::test {
namespace {

using testing::ElementsAre;

class UpdateWindowTest : public UpdateBench {
protected:
    using Names = std::vector<std::string>;

    /// What is cut by the window, lies on something else, or makes the window too large.
    std::string misplaced() const {
        const QRectF all(QPointF(), window().size());
        std::vector<std::pair<std::string, QRectF>> frames;
        for (const auto role :
            {QAccessible::Button, QAccessible::StaticText, QAccessible::AlertMessage}) {
            for (const std::string& name : names(role)) {
                frames.emplace_back(name, frame(item(name, role)));
                if (!all.contains(frames.back().second)) {
                    return name + " is cut";
                }
            }
        }
        for (auto one = frames.begin(); one != frames.end(); ++one) {
            for (auto other = std::next(one); other != frames.end(); ++other) {
                if (one->second.intersects(other->second)) {
                    return one->first + " lies on " + other->first;
                }
            }
        }
        const QRect room = window().screen()->availableGeometry();
        return room.contains(window().geometry()) ? "" : "the window leaves the screen";
    }
    /// Once the layout has settled.
    void expectAllInPlace() const {
        EXPECT_TRUE(waitUntil([this] { return misplaced().empty(); })) << misplaced();
    }
};

TEST_F(UpdateWindowTest, IsNotMadeBeforeThereIsSomethingToTell) {
    EXPECT_EQ(shown->window(), nullptr);
    shown->bringToFront();
    EXPECT_EQ(shown->window(), nullptr);
}

TEST_F(UpdateWindowTest, StandsOverTheMiddleOfTheMainWindow) {
    ask(Stage::checking);
    EXPECT_EQ(window().title(), QStringLiteral("Software Update"));
    const QPoint middle = mainWindow.geometry().center();
    EXPECT_LE(std::abs(window().geometry().center().x() - middle.x()), 2);
    EXPECT_LE(std::abs(window().geometry().center().y() - middle.y()), 2);
    EXPECT_TRUE(waitUntil([this] { return window().isActive(); }));
}

TEST_F(UpdateWindowTest, OffersTheAnswersOfEachStage) {
    const std::vector<std::pair<Stage, Names>> stages{
        {Stage::checking, {"Cancel"}},
        {Stage::found, {"Skip This Version", "Remind Me Later", "Install Update"}},
        {Stage::downloading, {"Cancel"}},
        {Stage::preparing, {"Cancel"}},
        {Stage::ready, {"Later", "Install and Restart"}},
        {Stage::upToDate, {"OK"}},
        {Stage::noticeOnly, {"Open the download page", "OK"}},
        {Stage::failed, {"Open the download page", "OK"}},
    };
    for (const auto& [stage, buttons] : stages) {
        ask(stage);
        EXPECT_EQ(names(QAccessible::Button), buttons);
        expectAllInPlace();
    }
}

TEST_F(UpdateWindowTest, AnswersToClicks) {
    ask(Stage::found);
    click("Skip This Version");
    click("Remind Me Later");
    click("Install Update");
    EXPECT_THAT(answers, ElementsAre(Answer::skipVersion, Answer::remindLater, Answer::install));
}

TEST_F(UpdateWindowTest, ASecondHalfOfADoubleClickAnswersNothing) {
    ask(Stage::found);
    user->doubleClick(frame(item("Install Update")).center());
    settle();
    EXPECT_THAT(answers, ElementsAre(Answer::install));
}

TEST_F(UpdateWindowTest, TheKeyboardGoesThroughTheAnswers) {
    ask(Stage::found);
    EXPECT_EQ(focus(), "Install Update");
    key(Qt::Key_Tab);
    EXPECT_EQ(focus(), "Skip This Version");
    key(Qt::Key_Tab);
    EXPECT_EQ(focus(), "Remind Me Later");
    key(Qt::Key_Space);
    key(Qt::Key_Tab);
    EXPECT_EQ(focus(), "Install Update");
    key(Qt::Key_Return);
    EXPECT_THAT(answers, ElementsAre(Answer::remindLater, Answer::install));
}

TEST_F(UpdateWindowTest, WhatNobodyAskedForIsNotInstalledByAKeyOnItsWayElsewhere) {
    tell(Stage::found);
    EXPECT_EQ(focus(), "Remind Me Later");
    tell(Stage::ready);
    EXPECT_EQ(focus(), "Later");
}

TEST_F(UpdateWindowTest, AKeyPressedTwiceDoesNotEndWhatItBegan) {
    ask(Stage::found);
    key(Qt::Key_Return);
    tell(Stage::downloading);
    key(Qt::Key_Return);
    key(Qt::Key_Space);
    EXPECT_THAT(answers, ElementsAre(Answer::install));
    key(Qt::Key_Tab);
    EXPECT_EQ(focus(), "Cancel");
    key(Qt::Key_Return);
    EXPECT_THAT(answers, ElementsAre(Answer::install, Answer::cancel));
}

TEST_F(UpdateWindowTest, EscapeClosesIt) {
    ask(Stage::found);
    closeBy(Qt::Key_Escape);
    EXPECT_THAT(answers, ElementsAre(Answer::remindLater));
}

TEST_F(UpdateWindowTest, ControlWClosesIt) {
    ask(Stage::downloading);
    closeBy(Qt::Key_W, Qt::ControlModifier);
    EXPECT_THAT(answers, ElementsAre(Answer::cancel));
}

TEST_F(UpdateWindowTest, GoesWithTheSession) {
    ask(Stage::checking);
    tell(Stage::idle);
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(answers.empty());
    tell(Stage::upToDate);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(UpdateWindowTest, StaysClosedUntilTheUserAsks) {
    ask(Stage::preparing);
    closeBy(Qt::Key_Escape);
    session.stage = Stage::failed;
    model->setSession(session);
    QCoreApplication::processEvents();
    EXPECT_FALSE(window().isVisible());
    shown->bringToFront();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(names(QAccessible::AlertMessage), Names{"Ostrella could not be updated"});
}

TEST_F(UpdateWindowTest, AScheduledOneWaitsUntilTheApplicationIsInFront) {
    mainWindow.hide();
    ASSERT_TRUE(waitUntil([] { return QGuiApplication::focusWindow() == nullptr; }));
    session.stage = Stage::found;
    model->setSession(session);
    QCoreApplication::processEvents();
    EXPECT_EQ(shown->window(), nullptr);
    mainWindow.show();
    mainWindow.requestActivate();
    EXPECT_TRUE(waitUntil([this] { return isOpen(); }));
}

TEST_F(UpdateWindowTest, OneThatWasAskedForComesAtOnce) {
    mainWindow.hide();
    ASSERT_TRUE(waitUntil([] { return QGuiApplication::focusWindow() == nullptr; }));
    session.userInitiated = true;
    session.stage = Stage::checking;
    model->setSession(session);
    EXPECT_TRUE(isOpen());
}

TEST_F(UpdateWindowTest, AScheduledOneComesToTheFrontWhenItIsAskedFor) {
    tell(Stage::found);
    mainWindow.requestActivate();
    ASSERT_TRUE(waitUntil([this] { return mainWindow.isActive(); }));
    session.received = 1;
    model->setSession(session);
    EXPECT_FALSE(waitUntil([this] { return window().isActive(); }, std::chrono::milliseconds(0)));
    session.userInitiated = true;
    model->setSession(session);
    EXPECT_TRUE(waitUntil([this] { return window().isActive(); }));
}

TEST_F(UpdateWindowTest, TheBarFollowsTheDownload) {
    ask(Stage::downloading);
    const QQuickItem& bar = item("Downloading Ostrella 1.2.0…", QAccessible::ProgressBar);
    EXPECT_EQ(bar.property("filledFraction").toDouble(), 0);
    session.received = 11'400'000;
    tell(Stage::downloading);
    EXPECT_EQ(bar.property("filledFraction").toDouble(), 0.25);
    QAccessibleInterface* said =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(&bar));
    EXPECT_EQ(said->text(QAccessible::Description).toStdString(), "11.4 MB of 45.6 MB");
}

TEST_F(UpdateWindowTest, NoSpinnerTurnsWhereANumberIsKnown) {
    ask(Stage::downloading);
    EXPECT_EQ(find("Busy"), nullptr);
    session.expected = 0;
    tell(Stage::downloading);
    EXPECT_NE(find("Busy"), nullptr);
    tell(Stage::checking);
    EXPECT_NE(find("Busy"), nullptr);
    tell(Stage::upToDate);
    EXPECT_EQ(find("Busy"), nullptr);
}

TEST_F(UpdateWindowTest, KeepsItsPlaceAndSizeFromTheOfferToTheEndOfTheDownload) {
    ask(Stage::found);
    const QRect before = window().geometry();
    for (const Stage stage : {Stage::downloading, Stage::preparing}) {
        tell(stage);
        EXPECT_EQ(window().geometry(), before);
    }
}

TEST_F(UpdateWindowTest, StaysOnTheScreenWhenItGrows) {
    const QSize room = mainWindow.screen()->availableGeometry().size();
    mainWindow.setGeometry(0, room.height() - 200, 400, 200);
    ASSERT_TRUE(waitUntil([&] { return mainWindow.y() == room.height() - 200; }));
    ask(Stage::checking);
    expectAllInPlace();
    const int before = window().y();
    session.item.notes = "What\nis\nnew\nis\nin\nthese\nlines\nof\ntext.";
    ask(Stage::found);
    expectAllInPlace();
    EXPECT_LT(window().y(), before);
}

TEST_F(UpdateWindowTest, LongNotesAreScrolledByKeysAndWheel) {
    session.item.notes.clear();
    for (int i = 0; i < 400; ++i) {
        session.item.notes += "Line " + std::to_string(i) + " tells of something new.\n";
    }
    ask(Stage::found);
    expectAllInPlace();
    QQuickItem& notes = item(model->notes().toStdString());
    const auto at = [&notes] { return notes.property("contentY").toDouble(); };
    while (window().activeFocusItem() != &notes) {
        const QQuickItem* before = window().activeFocusItem();
        key(Qt::Key_Tab);
        ASSERT_NE(window().activeFocusItem(), before);
        ASSERT_NE(focus(), "Install Update") << "once around without the notes";
    }
    key(Qt::Key_Down);
    EXPECT_NEAR(at(), 18, 0.5);
    key(Qt::Key_PageDown);
    const double page = at();
    EXPECT_GT(page, 100);
    key(Qt::Key_PageUp);
    EXPECT_LT(at(), page);
    key(Qt::Key_End);
    EXPECT_GT(at(), 390 * 18);
    key(Qt::Key_Home);
    EXPECT_EQ(at(), 0);
    user->moveTo(frame(notes).center());
    user->wheel(-1);
    EXPECT_TRUE(waitUntil([&] { return at() > 0; }));
}

TEST_F(UpdateWindowTest, ShortNotesTakeNoKeys) {
    ask(Stage::found);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NE(focus(), "") << "each stop is a button";
        key(Qt::Key_Tab);
    }
}

TEST_F(UpdateWindowTest, AnErrorOfAnyLengthCanBeRead) {
    session.text = "The archive cannot be unpacked: ";
    for (int i = 0; i < 500; ++i) {
        session.text += "/a/long/path/without/any/blank/";
    }
    ask(Stage::failed);
    expectAllInPlace();
    QQuickItem& text = item(session.text);
    EXPECT_GE(text.height(), 100);
    while (window().activeFocusItem() != &text) {
        key(Qt::Key_Tab);
        ASSERT_NE(focus(), "OK");
    }
    key(Qt::Key_End);
    EXPECT_GT(text.property("contentY").toDouble(), 500);
}

TEST_F(UpdateWindowTest, AVersionNobodyWouldReadMakesNoRoomForItself) {
    session.item.displayVersionString = std::string(5000, '9');
    ask(Stage::found);
    expectAllInPlace();
    tell(Stage::downloading);
    expectAllInPlace();
}

TEST_F(UpdateWindowTest, HasRoomForLargeTexts) {
    session.item.notesAddress = "https://ostrella.example/notes";
    // The larger ones leave no room for notes where the screen is small, too.
    for (const auto& [scale, notes] : {std::pair(1.5, "New things."), std::pair(2.0, "")}) {
        Theme::shared().setTextScale(scale);
        session.item.notes = notes;
        for (const Stage stage :
            {Stage::found, Stage::downloading, Stage::noticeOnly, Stage::failed}) {
            ask(stage);
            expectAllInPlace();
        }
    }
}

TEST_F(UpdateWindowTest, LinksOpenPages) {
    session.item.notesAddress = "https://ostrella.example/notes";
    ask(Stage::noticeOnly);
    click("Read the release notes");
    click("Open the download page");
    EXPECT_THAT(
        opened, ElementsAre("https://ostrella.example/notes", "https://ostrella.example/download"));
}

TEST_F(UpdateWindowTest, FollowsTheAppearance) {
    ask(Stage::found);
    const auto ground = [this] {
        settle();
        return window().grabWindow().pixelColor(3, 3);
    };
    EXPECT_EQ(ground(), Theme::shared().surfaceBase());
    const QColor dark = ground();
    Theme::shared().setDark(false);
    EXPECT_EQ(ground(), Theme::shared().surfaceBase());
    EXPECT_NE(ground(), dark);
}

TEST_F(UpdateWindowTest, ReadersHearWhatItIsAbout) {
    ask(Stage::found);
    EXPECT_NE(find("There is a new version of Ostrella", QAccessible::StaticText), nullptr);
    EXPECT_NE(find("Ostrella 1.2.0 is available. You have version 1.1.0.", QAccessible::StaticText),
        nullptr);
    EXPECT_NE(find("Meshes are made faster.", QAccessible::StaticText), nullptr);
}

} // namespace
} // namespace ostrella::test
