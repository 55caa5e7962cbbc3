#include "PanelWindow.h"

#include <QAccessible>

namespace ostrella::test {
namespace {

class LogScrolling : public PanelWindow {};

TEST_F(LogScrolling, beginsAtTheTopWhileEverythingFits) {
    logLines(1);
    settle();
    EXPECT_EQ(log().scroll().visible().front().top, 8);
    EXPECT_TRUE(panel.isFollowingLog());
}

TEST_F(LogScrolling, followsNewLinesToTheEnd) {
    logLines(100);
    settle();
    EXPECT_TRUE(isAtEnd());
    EXPECT_EQ(bottomText(), "line 99");
    this->PanelBench::log("newest");
    settle();
    EXPECT_EQ(bottomText(), "newest");
    EXPECT_TRUE(isAtEnd());
}

TEST_F(LogScrolling, staysWhereTheWheelTookIt) {
    logLines(100);
    settle();
    user->moveTo(inLog({300, 80}));
    user->wheel(4); // twelve lines
    EXPECT_FALSE(panel.isFollowingLog());
    const std::string where = bottomText();
    EXPECT_EQ(where, "line 88");
    logLines(1000);
    settle();
    EXPECT_EQ(bottomText(), where);
    EXPECT_FALSE(panel.isFollowingLog());
    EXPECT_EQ(panel.rightText().toStdString(), "1\u00A0102 lines");
}

TEST_F(LogScrolling, followsAgainFromTheNextToLastLineOn) {
    logLines(100);
    settle();
    user->moveTo(inLog({300, 80}));
    user->wheel(4);
    ASSERT_FALSE(panel.isFollowingLog());
    user->wheel(-4);
    EXPECT_TRUE(panel.isFollowingLog());
    EXPECT_TRUE(isAtEnd());
}

TEST_F(LogScrolling, stillFollowsOneLineAboveTheEndButNotTwo) {
    logLines(100);
    settle();
    user->click(inLog({300, 80}));
    user->type(Qt::Key_Up);
    user->type(Qt::Key_Up);
    EXPECT_EQ(bottomText(), "line 98");
    EXPECT_TRUE(panel.isFollowingLog());
    user->type(Qt::Key_Up);
    EXPECT_EQ(bottomText(), "line 97");
    EXPECT_FALSE(panel.isFollowingLog());
}

TEST_F(LogScrolling, keepsUpWithTheLogOnTheLastLineThoughItWasToldNotToFollow) {
    logLines(100);
    settle();
    panel.setFollowingLog(false);
    this->PanelBench::log("newest");
    settle();
    EXPECT_EQ(bottomText(), "newest");
    EXPECT_TRUE(panel.isFollowingLog());
}

TEST_F(LogScrolling, goesToTheEndWhenToldToFollow) {
    logLines(100);
    settle();
    user->moveTo(inLog({300, 80}));
    user->wheel(10);
    ASSERT_FALSE(panel.isFollowingLog());
    panel.setFollowingLog(true);
    EXPECT_TRUE(isAtEnd());
}

TEST_F(LogScrolling, goesByKeysPageByPageAndToTheEnds) {
    logLines(200);
    settle();
    user->click(inLog({300, 80}));
    user->type(Qt::Key_Home);
    EXPECT_EQ(log().scroll().visible().front().row, 0U);
    EXPECT_EQ(log().scroll().visible().front().top, 8);
    EXPECT_FALSE(panel.isFollowingLog());
    const std::size_t before = *log().scroll().bottomRow();
    user->type(Qt::Key_PageDown);
    EXPECT_NEAR(static_cast<double>(*log().scroll().bottomRow() - before),
        (log().height() - 16) / 19, 1.01);
    user->type(Qt::Key_PageUp);
    EXPECT_EQ(*log().scroll().bottomRow(), before);
    user->type(Qt::Key_End);
    EXPECT_TRUE(isAtEnd());
    EXPECT_TRUE(panel.isFollowingLog());
}

TEST_F(LogScrolling, movesWithATrackpadPointByPoint) {
    logLines(100);
    settle();
    const double before = log().scroll().visible().back().top;
    user->moveTo(inLog({300, 80}));
    user->scroll({0, 5});
    EXPECT_NEAR(log().scroll().visible().back().top, before + 5, 0.01);
}

TEST_F(LogScrolling, goesWhereItsBarIsDragged) {
    logLines(2000);
    settle();
    const QPointF bar = inLog({log().width() - 6, log().height() - 6});
    user->drag(bar, bar - QPointF(0, (log().height() - 12) / 2), {.steps = 8});
    EXPECT_FALSE(panel.isFollowingLog());
    EXPECT_NEAR(static_cast<double>(*log().scroll().bottomRow()), 1000, 120);
    user->drag(inLog({log().width() - 6, log().height() / 2}),
        inLog({log().width() - 6, log().height() + 40}), {.steps = 8});
    EXPECT_TRUE(isAtEnd());
    EXPECT_TRUE(panel.isFollowingLog());
}

TEST_F(LogScrolling, wrapsLongLinesAndCutsNothing) {
    this->PanelBench::log(std::string(1000, 'x'), Level::warn);
    settle();
    const LogScroll::Row row = log().scroll().visible().back();
    // 512 points for letters of 7.2: 71 to a line, 15 lines of 16, and 3 around them.
    EXPECT_NEAR(row.height, 243, 0.01);
    view->resize(500, 228);
    ASSERT_TRUE(waitUntil([this] { return log().width() == 500; }));
    settle();
    EXPECT_GT(log().scroll().visible().back().height, 300);
    EXPECT_TRUE(panel.isFollowingLog());
}

TEST_F(LogScrolling, keepsItsPlaceWhileTheChartsAreShown) {
    logLines(100);
    settle();
    user->moveTo(inLog({300, 80}));
    user->wheel(5);
    const std::string where = bottomText();
    panel.chooseTab(1);
    logLines(500);
    settle();
    panel.chooseTab(0);
    settle();
    EXPECT_EQ(bottomText(), where);
}

TEST_F(LogScrolling, showsNoRowsOfAnEmptyFilterAndComesBackToTheEnd) {
    logLines(100);
    settle();
    user->click(middleOf(QStringLiteral("err")));
    settle();
    EXPECT_TRUE(log().scroll().visible().empty());
    EXPECT_EQ(panel.rightText().toStdString(), "0 lines · auto-scroll");
    this->PanelBench::log("broken", Level::error);
    settle();
    EXPECT_EQ(bottomText(), "broken");
    user->click(middleOf(QStringLiteral("all")));
    settle();
    EXPECT_TRUE(isAtEnd());
    EXPECT_EQ(log().lines()->size(), 103U);
}

TEST_F(LogScrolling, bringsEachFilterToItsEndThoughTheUserHadScrolledAway) {
    for (int i = 0; i < 300; ++i) {
        this->PanelBench::log("w" + std::to_string(i), i % 3 == 0 ? Level::warn : Level::su2);
    }
    settle();
    user->moveTo(inLog({300, 80}));
    user->wheel(20);
    ASSERT_FALSE(panel.isFollowingLog());
    user->click(middleOf(QStringLiteral("warn")));
    settle();
    EXPECT_TRUE(panel.isFollowingLog());
    EXPECT_TRUE(isAtEnd());
    EXPECT_EQ(bottomText(), "w297");
    EXPECT_TRUE(panel.isReadingIssue());
}

TEST_F(LogScrolling, staysAtTheEndWhileTheWindowIsResized) {
    logLines(100);
    settle();
    for (const int height : {380, 160, 300}) {
        view->resize(680, height);
        ASSERT_TRUE(waitUntil([&] { return view->rootObject()->height() == height; }));
        settle();
        EXPECT_TRUE(isAtEnd()) << height;
        EXPECT_TRUE(panel.isFollowingLog());
    }
}

} // namespace
} // namespace ostrella::test
