#include "Views/Updates/UpdateWindowModel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using Answer = UpdateFormat::Answer;
using Stage = UpdateSession::Stage;

class UpdateWindowModelTest : public testing::Test {
protected:
    UpdateWindowModelTest() {
        QObject::connect(
            &model, &UpdateWindowModel::stageChanged, &model, [this] { ++stageChanges; });
        QObject::connect(
            &model, &UpdateWindowModel::progressChanged, &model, [this] { ++progressChanges; });
    }

    void tell() { model.setSession(session); }
    void tell(Stage stage) {
        session.stage = stage;
        tell();
    }

    static UpdateSession offer() {
        UpdateSession session;
        session.item.version = "129";
        session.item.displayVersionString = "1.2.0";
        session.item.notes = "<h2>Faster</h2><ul><li>meshes</li></ul>";
        session.item.notesAddress = "https://ostrella.example/notes";
        session.item.infoAddress = "https://ostrella.example/download";
        return session;
    }

    UpdateSession session = offer();
    std::vector<Answer> answers;
    std::vector<std::string> opened;
    int stageChanges = 0;
    int progressChanges = 0;
    UpdateWindowModel model{{"1.1.0", [this](Answer answer) { answers.push_back(answer); },
        [this](const std::string& address) { opened.push_back(address); }}};
};

TEST_F(UpdateWindowModelTest, ShowsNothingAtFirst) {
    EXPECT_FALSE(model.isShown());
    EXPECT_EQ(model.title(), QString());
    EXPECT_TRUE(model.buttons().isEmpty());
    EXPECT_EQ(model.firstButton(), -1);
    model.close();
    model.press(0);
    EXPECT_TRUE(answers.empty());
}

TEST_F(UpdateWindowModelTest, OffersWhatWasFound) {
    tell(Stage::found);
    EXPECT_TRUE(model.isShown());
    EXPECT_EQ(model.detail().toStdString(), "Ostrella 1.2.0 is available. You have version 1.1.0.");
    EXPECT_EQ(model.notes().toStdString(), "Faster\n\n• meshes");
    EXPECT_EQ(model.notesLink().toStdString(), "Read the release notes");
    EXPECT_EQ(model.pageLink(), QString());
    const QVariantList buttons = model.buttons();
    ASSERT_EQ(buttons.size(), 3);
    EXPECT_EQ(buttons.at(0).toMap().value(QStringLiteral("text")).toString().toStdString(),
        "Skip This Version");
    EXPECT_TRUE(buttons.at(0).toMap().value(QStringLiteral("isApart")).toBool());
    EXPECT_TRUE(buttons.at(2).toMap().value(QStringLiteral("isPrimary")).toBool());
}

TEST_F(UpdateWindowModelTest, HandsOnWhatIsPressed) {
    tell(Stage::found);
    for (int i = 0; i < 3; ++i) {
        model.press(i);
    }
    model.press(3);
    model.press(-1);
    EXPECT_EQ(answers, (std::vector{Answer::skipVersion, Answer::remindLater, Answer::install}));
    answers.clear();
    tell(Stage::ready);
    model.press(1);
    model.press(2);
    EXPECT_EQ(answers, std::vector{Answer::installAndRestart});
}

TEST_F(UpdateWindowModelTest, ClosingIsAnAnswerToo) {
    tell(Stage::downloading);
    model.close();
    tell(Stage::ready);
    model.close();
    tell(Stage::failed);
    model.close();
    EXPECT_EQ(answers, (std::vector{Answer::cancel, Answer::remindLater, Answer::acknowledge}));
}

TEST_F(UpdateWindowModelTest, FollowsTheDownload) {
    tell(Stage::downloading);
    EXPECT_TRUE(model.showsProgress());
    EXPECT_TRUE(model.isBusy()) << "the whole is not known yet";
    EXPECT_EQ(model.fraction(), 0);
    session.expected = 45'600'000;
    session.received = 11'400'000;
    stageChanges = 0;
    tell();
    EXPECT_FALSE(model.isBusy());
    EXPECT_EQ(model.fraction(), 0.25);
    EXPECT_EQ(model.progress().toStdString(), "11.4 MB of 45.6 MB");
    EXPECT_EQ(stageChanges, 0) << "the buttons stay the same ones";
    tell(Stage::preparing);
    EXPECT_EQ(model.fraction(), 1);
    EXPECT_EQ(model.progress().toStdString(), "The download is checked and unpacked.");
}

TEST_F(UpdateWindowModelTest, TellsOfChangesOnly) {
    tell(Stage::downloading);
    stageChanges = 0;
    progressChanges = 0;
    tell();
    EXPECT_EQ(stageChanges, 0);
    EXPECT_EQ(progressChanges, 0);
    session.received = 1'000'000;
    tell();
    EXPECT_EQ(progressChanges, 1);
    EXPECT_EQ(stageChanges, 0);
    tell(Stage::ready);
    EXPECT_EQ(stageChanges, 1);
}

TEST_F(UpdateWindowModelTest, ReadsTheNotesWhileTheyAreOfUse) {
    tell(Stage::downloading);
    EXPECT_NE(model.notes(), QString());
    tell(Stage::ready);
    EXPECT_NE(model.notes(), QString());
    tell(Stage::failed);
    EXPECT_EQ(model.notes(), QString());
    session.item.notes = "Other notes";
    tell(Stage::found);
    EXPECT_EQ(model.notes().toStdString(), "Other notes");
}

TEST_F(UpdateWindowModelTest, OpensPagesOfTheRelease) {
    tell(Stage::noticeOnly);
    model.openNotes();
    model.openPage();
    EXPECT_EQ(opened, (std::vector<std::string>{
                          "https://ostrella.example/notes", "https://ostrella.example/download"}));
}

TEST_F(UpdateWindowModelTest, OpensNothingThatIsNoPage) {
    session.item.notesAddress = "file:///etc/passwd";
    session.item.infoAddress = "javascript:alert(1)";
    tell(Stage::noticeOnly);
    EXPECT_EQ(model.notesLink(), QString());
    EXPECT_EQ(model.pageLink(), QString());
    model.openNotes();
    model.openPage();
    EXPECT_TRUE(opened.empty());
}

TEST_F(UpdateWindowModelTest, TellsWhyItFailed) {
    session.text = "The archive's signature is wrong.";
    tell(Stage::failed);
    EXPECT_TRUE(model.isFailure());
    EXPECT_EQ(model.symbol().toStdString(), "exclamationmark.triangle");
    EXPECT_EQ(model.detail().toStdString(), "The archive's signature is wrong.");
    EXPECT_EQ(model.pageLink().toStdString(), "Open the download page");
}

} // namespace
} // namespace ostrella
