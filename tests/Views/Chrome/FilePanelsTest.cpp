#include "Views/Chrome/FilePanels.h"

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

    FilePanels files;
    std::vector<Place> answers;
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

} // namespace
} // namespace ostrella
