#include "Views/Chrome/FilePanels.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <vector>

namespace ostrella {
namespace {

using Place = std::optional<std::filesystem::path>;

class FilePanelsTest : public testing::Test {
protected:
    FilePanels::Answer keep() {
        return [this](const Place& place) { answers.push_back(place); };
    }
    static QUrl local(const char* path) { return QUrl::fromLocalFile(QString::fromUtf8(path)); }

    /// The user has chosen a picture that is there already, in a panel that does not ask.
    QUrl choosePicture() {
        const auto file = directory_.path() / "a.png";
        test::writeFile(file, "a picture");
        files.askForPicture("x.png", keep());
        const QUrl place = QUrl::fromLocalFile(QString::fromStdString(file.string()));
        files.accept(place, false);
        return place;
    }

    std::vector<std::string> questions;
    std::function<void(bool)> answerToReplace;
    FilePanels files{[this](const ReplaceQuestion& question, std::function<void(bool)> mayReplace) {
        questions.push_back(question.title);
        answerToReplace = std::move(mayReplace);
    }};
    std::vector<Place> answers;

private:
    test::TemporaryDirectory directory_;
};

TEST_F(FilePanelsTest, AtFirstNothingIsAsked) {
    EXPECT_EQ(files.kind(), FilePanels::Kind::None);
    files.accept(local("/d/a.stl"));
    files.dismiss();
    EXPECT_TRUE(answers.empty());
}

TEST_F(FilePanelsTest, AsksForAModel) {
    files.askForModel(keep());
    EXPECT_EQ(files.kind(), FilePanels::Kind::Model);
    EXPECT_EQ(files.title().toStdString(), "Load STL");
    EXPECT_TRUE(files.message().isEmpty());
    EXPECT_TRUE(files.prompt().isEmpty());
    files.accept(local("/d/Flügel 1.stl"));
    EXPECT_EQ(answers, std::vector<Place>{"/d/Flügel 1.stl"});
    EXPECT_EQ(files.kind(), FilePanels::Kind::None);
}

TEST_F(FilePanelsTest, AsksForAFolder) {
    files.askForExportFolder(keep());
    EXPECT_EQ(files.title().toStdString(), "Export Results");
    EXPECT_EQ(files.message().toStdString(), "Choose a folder for the result files.");
    EXPECT_EQ(files.prompt().toStdString(), "Export");
    files.dismiss();
    EXPECT_EQ(answers, std::vector<Place>{std::nullopt});
}

TEST_F(FilePanelsTest, APictureGetsItsEnding) {
    files.askForPicture("wing · 2026-03-09 14.05.png", keep());
    EXPECT_EQ(files.suggestedName().toStdString(), "wing · 2026-03-09 14.05.png");
    files.accept(local("/d/a"));
    files.askForPicture("x", keep());
    files.accept(local("/d/b.PNG"));
    files.askForPicture("x", keep());
    files.accept(local("/d/c.jpg"));
    EXPECT_EQ(answers, (std::vector<Place>{"/d/a.png", "/d/b.PNG", "/d/c.jpg.png"}));
    EXPECT_TRUE(files.suggestedName().isEmpty());
}

TEST_F(FilePanelsTest, ANewQuestionEndsTheOneBeforeWithoutAnAnswer) {
    files.askForModel(keep());
    files.askForExportFolder(keep());
    EXPECT_EQ(answers, std::vector<Place>{std::nullopt});
    EXPECT_EQ(files.kind(), FilePanels::Kind::Folder);
}

TEST_F(FilePanelsTest, WhatIsElsewhereIsNoChoice) {
    files.askForModel(keep());
    files.accept(QUrl(QStringLiteral("https://example.org/a.stl")));
    EXPECT_EQ(answers, std::vector<Place>{std::nullopt});
}

TEST_F(FilePanelsTest, AnAnswerMayAskTheNextQuestion) {
    files.askForModel([this](const Place&) { files.askForExportFolder(keep()); });
    files.accept(local("/d/a.stl"));
    EXPECT_EQ(files.kind(), FilePanels::Kind::Folder);
    files.accept(local("/d"));
    EXPECT_EQ(answers, std::vector<Place>{"/d"});
}

TEST_F(FilePanelsTest, TellsEachChangeOnce) {
    int changes = 0;
    QObject::connect(&files, &FilePanels::changed, [&changes] { ++changes; });
    files.askForModel(keep());
    EXPECT_EQ(changes, 1);
    files.dismiss();
    files.dismiss();
    EXPECT_EQ(changes, 2);
}

TEST_F(FilePanelsTest, APictureThatIsThereIsReplacedOnlyWhenTheUserSaysSo) {
    const QUrl place = choosePicture();
    EXPECT_EQ(
        questions, std::vector<std::string>{"“a.png” already exists. Do you want to replace it?"});
    EXPECT_TRUE(answers.empty());
    answerToReplace(true);
    EXPECT_EQ(answers, std::vector<Place>{place.toLocalFile().toStdString()});
    EXPECT_EQ(files.kind(), FilePanels::Kind::None);
}

TEST_F(FilePanelsTest, IfItIsToStayThePanelComesAgain) {
    const QUrl place = choosePicture();
    int changes = 0;
    QObject::connect(&files, &FilePanels::changed, [&changes] { ++changes; });
    answerToReplace(false);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(files.kind(), FilePanels::Kind::Picture);
    EXPECT_EQ(files.suggestedName().toStdString(), "a.png");
    EXPECT_EQ(files.folder(), place.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash));
    EXPECT_TRUE(answers.empty());
}

TEST_F(FilePanelsTest, TheEndingCountsForWhatIsReplaced) {
    QUrl place = choosePicture();
    answerToReplace(true);
    place.setPath(place.path().chopped(4));
    files.askForPicture("x.png", keep());
    files.accept(place, false);
    EXPECT_EQ(questions.size(), 2U);
}

TEST_F(FilePanelsTest, ADesktopsPanelHasAskedAlready) {
    const QUrl place = choosePicture();
    answerToReplace(true);
    files.askForPicture("x.png", keep());
    files.accept(place, true);
    EXPECT_EQ(questions.size(), 1U);
    EXPECT_EQ(answers.size(), 2U);
}

TEST_F(FilePanelsTest, TheAnswerToAnOldQuestionCountsForNothing) {
    choosePicture();
    files.askForPicture("y.png", keep());
    EXPECT_EQ(answers, std::vector<Place>{std::nullopt});
    answerToReplace(true);
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_EQ(files.suggestedName().toStdString(), "y.png");
}

} // namespace
} // namespace ostrella
