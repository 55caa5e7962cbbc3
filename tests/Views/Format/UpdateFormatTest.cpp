#include "Views/Format/UpdateFormat.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {
namespace {

using Answer = UpdateFormat::Answer;
using Stage = UpdateSession::Stage;

UpdateSession at(Stage stage, std::string text = {}) {
    UpdateSession session;
    session.stage = stage;
    session.item.version = "129";
    session.item.displayVersionString = "1.2.0";
    session.text = std::move(text);
    return session;
}

constexpr std::array allStages{Stage::idle, Stage::checking, Stage::upToDate, Stage::found,
    Stage::noticeOnly, Stage::downloading, Stage::preparing, Stage::ready, Stage::failed};

std::vector<std::string> texts(Stage stage) {
    std::vector<std::string> result;
    for (const auto& button : UpdateFormat::buttons(stage)) {
        result.push_back(button.text);
    }
    return result;
}

TEST(UpdateFormat, GivesSizesInUnitsOfAThousand) {
    EXPECT_EQ(UpdateFormat::size(0), "0 B");
    EXPECT_EQ(UpdateFormat::size(999), "999 B");
    EXPECT_EQ(UpdateFormat::size(1000), "1 kB");
    EXPECT_EQ(UpdateFormat::size(12'345), "12 kB");
    EXPECT_EQ(UpdateFormat::size(12'345'678), "12.3 MB");
    EXPECT_EQ(UpdateFormat::size(2'000'000'000), "2.0 GB");
    EXPECT_EQ(UpdateFormat::size(-5), "0 B");
}

TEST(UpdateFormat, TakesTheNextUnitBeforeAThousandIsShown) {
    EXPECT_EQ(UpdateFormat::size(999'499), "999 kB");
    EXPECT_EQ(UpdateFormat::size(999'960'000), "1.0 GB");
}

TEST(UpdateFormat, GivesBothSizesInTheUnitOfTheWhole) {
    EXPECT_EQ(UpdateFormat::progress(12'345'678, 45'600'000), "12.3 MB of 45.6 MB");
    EXPECT_EQ(UpdateFormat::progress(0, 45'600'000), "0.0 MB of 45.6 MB");
    EXPECT_EQ(UpdateFormat::progress(345'678, 45'600'000), "0.3 MB of 45.6 MB");
    EXPECT_EQ(UpdateFormat::progress(500, 999), "500 B of 999 B");
}

TEST(UpdateFormat, LeavesAWholeOutThatIsUnknownOrWrong) {
    EXPECT_EQ(UpdateFormat::progress(12'345'678, 0), "12.3 MB");
    EXPECT_EQ(UpdateFormat::progress(12'345'678, -1), "12.3 MB");
    EXPECT_EQ(UpdateFormat::progress(12'345'678, 1000), "12.3 MB");
}

TEST(UpdateFormat, HoldsTheFractionBetweenNoneAndAll) {
    EXPECT_EQ(UpdateFormat::fraction(25, 100), 0.25);
    EXPECT_EQ(UpdateFormat::fraction(200, 100), 1.0);
    EXPECT_EQ(UpdateFormat::fraction(-1, 100), 0.0);
    EXPECT_EQ(UpdateFormat::fraction(25, 0), std::nullopt);
}

TEST(UpdateFormat, NamesTheVersionThatPeopleRead) {
    AppcastItem item;
    item.version = "129";
    EXPECT_EQ(UpdateFormat::version(item), "129");
    item.displayVersionString = "1.2.0";
    EXPECT_EQ(UpdateFormat::version(item), "1.2.0");
}

TEST(UpdateFormat, HoldsAVersionThatNobodyWouldReadInOneLine) {
    AppcastItem item;
    item.displayVersionString = "1.2\n<b>0</b> \x1b" + std::string(1000, 'x');
    const std::string text = UpdateFormat::version(item);
    EXPECT_TRUE(text.starts_with("1.2 0 xxx")) << text;
    EXPECT_TRUE(text.ends_with("…"));
    EXPECT_LE(text.size(), 43U);
}

TEST(UpdateFormat, HasAHeadlineForEveryStageButIdle) {
    for (const Stage stage : allStages) {
        EXPECT_EQ(UpdateFormat::title(at(stage)).empty(), stage == Stage::idle);
    }
    EXPECT_EQ(UpdateFormat::title(at(Stage::checking)), "Checking for updates…");
    EXPECT_EQ(UpdateFormat::title(at(Stage::downloading)), "Downloading Ostrella 1.2.0…");
    EXPECT_EQ(UpdateFormat::title(at(Stage::ready)), "Ostrella 1.2.0 is ready to install");
}

TEST(UpdateFormat, TellsBothVersions) {
    EXPECT_EQ(UpdateFormat::detail(at(Stage::found), "1.1.0"),
        "Ostrella 1.2.0 is available. You have version 1.1.0.");
    EXPECT_EQ(UpdateFormat::detail(at(Stage::upToDate), "1.1.0"),
        "Version 1.1.0 is the newest there is.");
}

TEST(UpdateFormat, TellsWhoUpdatesACopyThatIsNotOurs) {
    EXPECT_EQ(UpdateFormat::detail(at(Stage::noticeOnly), "1.1.0"),
        "Ostrella 1.2.0 is available. You have version 1.1.0. This copy is kept up to date by your "
        "system's packages.");
    EXPECT_EQ(UpdateFormat::detail(at(Stage::noticeOnly, "The folder is not yours."), "1.1.0"),
        "Ostrella 1.2.0 is available. You have version 1.1.0. The folder is not yours.");
}

TEST(UpdateFormat, TellsWhyAnUpdateFailed) {
    EXPECT_EQ(UpdateFormat::detail(at(Stage::failed, "Disk full."), "1.1.0"), "Disk full.");
    EXPECT_EQ(UpdateFormat::detail(at(Stage::failed), "1.1.0"), "The log has the reason.");
}

TEST(UpdateFormat, OffersWhatFitsTheStage) {
    using Texts = std::vector<std::string>;
    EXPECT_EQ(texts(Stage::idle), Texts{});
    EXPECT_EQ(texts(Stage::checking), Texts{"Cancel"});
    EXPECT_EQ(texts(Stage::upToDate), Texts{"OK"});
    EXPECT_EQ(
        texts(Stage::found), (Texts{"Skip This Version", "Remind Me Later", "Install Update"}));
    EXPECT_EQ(texts(Stage::noticeOnly), Texts{"OK"});
    EXPECT_EQ(texts(Stage::downloading), Texts{"Cancel"});
    EXPECT_EQ(texts(Stage::preparing), Texts{"Cancel"});
    EXPECT_EQ(texts(Stage::ready), (Texts{"Later", "Install and Restart"}));
    EXPECT_EQ(texts(Stage::failed), Texts{"OK"});
}

TEST(UpdateFormat, GivesTheKeyboardToNoButtonThatASecondPressWouldRegret) {
    const auto first = [](Stage stage, bool userInitiated) -> std::string {
        UpdateSession session = at(stage);
        session.userInitiated = userInitiated;
        const auto index = UpdateFormat::firstButton(session);
        return index ? UpdateFormat::buttons(stage).at(*index).text : "";
    };
    for (const bool userInitiated : {true, false}) {
        for (const Stage stage :
            {Stage::idle, Stage::checking, Stage::downloading, Stage::preparing}) {
            EXPECT_EQ(first(stage, userInitiated), "");
        }
        for (const Stage stage : {Stage::upToDate, Stage::noticeOnly, Stage::failed}) {
            EXPECT_EQ(first(stage, userInitiated), "OK");
        }
        EXPECT_EQ(first(Stage::ready, userInitiated), "Later");
    }
    EXPECT_EQ(first(Stage::found, true), "Install Update");
    EXPECT_EQ(first(Stage::found, false), "Remind Me Later");
}

TEST(UpdateFormat, IsBusyOnlyWhereNoNumberIsKnown) {
    UpdateSession session = at(Stage::downloading);
    EXPECT_TRUE(UpdateFormat::isBusy(session));
    session.expected = 100;
    EXPECT_FALSE(UpdateFormat::isBusy(session));
    for (const Stage stage : allStages) {
        if (stage != Stage::downloading) {
            EXPECT_EQ(UpdateFormat::isBusy(at(stage)),
                stage == Stage::checking || stage == Stage::preparing);
        }
    }
}

TEST(UpdateFormat, ShowsWhatIsNewFromTheOfferToTheRestart) {
    for (const Stage stage : allStages) {
        EXPECT_EQ(UpdateFormat::showsNotes(stage),
            stage == Stage::found || stage == Stage::noticeOnly || stage == Stage::downloading ||
                stage == Stage::preparing || stage == Stage::ready);
        EXPECT_EQ(UpdateFormat::showsProgress(stage),
            stage == Stage::downloading || stage == Stage::preparing);
    }
}

TEST(UpdateFormat, ClosingInstallsAndSkipsNothing) {
    for (const Stage stage : allStages) {
        const auto answer = UpdateFormat::closing(stage);
        EXPECT_EQ(answer.has_value(), stage != Stage::idle);
        EXPECT_NE(answer, Answer::install);
        EXPECT_NE(answer, Answer::installAndRestart);
        EXPECT_NE(answer, Answer::skipVersion);
        // It is one of the answers that a button gives too.
        const auto buttons = UpdateFormat::buttons(stage);
        EXPECT_EQ(std::any_of(buttons.begin(), buttons.end(),
                      [&](const auto& button) { return button.answer == answer; }),
            stage != Stage::idle);
    }
}

TEST(UpdateFormat, OpensNothingButPagesOverHTTPS) {
    EXPECT_TRUE(UpdateFormat::mayOpen("https://ostrella.example/notes"));
    EXPECT_TRUE(UpdateFormat::mayOpen("HTTPS://ostrella.example"));
    EXPECT_FALSE(UpdateFormat::mayOpen(""));
    EXPECT_FALSE(UpdateFormat::mayOpen("https://"));
    EXPECT_FALSE(UpdateFormat::mayOpen("http://ostrella.example"));
    EXPECT_FALSE(UpdateFormat::mayOpen("file:///etc/passwd"));
    EXPECT_FALSE(UpdateFormat::mayOpen("javascript:alert(1)"));
    EXPECT_FALSE(UpdateFormat::mayOpen("https://a b"));
    EXPECT_FALSE(UpdateFormat::mayOpen("https://a\nb"));
}

} // namespace
} // namespace ostrella
