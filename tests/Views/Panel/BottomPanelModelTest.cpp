#include "PanelBench.h"

#include <QVariantMap>

namespace ostrella::test {
namespace {

using Tab = BottomPanelModel::Tab;
using Level = LogStore::Level;

class BottomPanelModelOf : public testing::Test, protected PanelBench {};

TEST_F(BottomPanelModelOf, beginsWithTheWholeLogFollowed) {
    EXPECT_EQ(panel.tab(), Tab::log);
    EXPECT_EQ(panel.filter(), LogFilter::all);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(panel.isFollowingLog());
    EXPECT_FALSE(panel.isReadingIssue());
}

TEST_F(BottomPanelModelOf, turnsToTheChartsWhenARunGivesData) {
    flushHistory(3);
    EXPECT_EQ(panel.tab(), Tab::convergence);
}

TEST_F(BottomPanelModelOf, turnsOnceForEachRunAndNotWithEachFlush) {
    flushHistory(3);
    panel.chooseTab(static_cast<int>(Tab::log));
    flushHistory(4);
    EXPECT_EQ(panel.tab(), Tab::log);
    app.historyStore.reset();
    EXPECT_EQ(panel.tab(), Tab::log);
    flushHistory(1);
    EXPECT_EQ(panel.tab(), Tab::convergence);
}

TEST_F(BottomPanelModelOf, staysWithAnErrorUntilTheNextRunHasBegun) {
    panel.showLog(Level::error);
    EXPECT_EQ(panel.filter(), LogFilter::err);
    EXPECT_TRUE(panel.isReadingIssue());
    flushHistory(3);
    EXPECT_EQ(panel.tab(), Tab::log);

    setPhase(RunPhase::meshing());
    EXPECT_FALSE(panel.isReadingIssue());
    app.historyStore.reset();
    flushHistory(1);
    EXPECT_EQ(panel.tab(), Tab::convergence);
}

TEST_F(BottomPanelModelOf, forgetsTheIssueAtTheStartOfARunOnly) {
    setPhase(RunPhase::meshing());
    panel.setFilter(LogFilter::warn);
    setPhase(RunPhase::solving());
    setPhase(RunPhase::postProcessing());
    EXPECT_TRUE(panel.isReadingIssue());
    setPhase(RunPhase::finished(true));
    EXPECT_TRUE(panel.isReadingIssue());
    setPhase(RunPhase::solving());
    EXPECT_FALSE(panel.isReadingIssue());
}

TEST_F(BottomPanelModelOf, readsAnIssueWithTheFiltersOfWarningsAndErrorsAndGoesOnReading) {
    for (const LogFilter filter : {LogFilter::all, LogFilter::info, LogFilter::su2}) {
        panel.setFilter(filter);
        EXPECT_FALSE(panel.isReadingIssue());
    }
    panel.setFilter(LogFilter::warn);
    EXPECT_TRUE(panel.isReadingIssue());
    panel.setFilter(LogFilter::all);
    EXPECT_TRUE(panel.isReadingIssue());
}

TEST_F(BottomPanelModelOf, followsTheLogAgainWithEveryFilter) {
    for (const LogFilter filter : allLogFilters) {
        panel.setFollowingLog(false);
        panel.setFilter(filter);
        EXPECT_TRUE(panel.isFollowingLog());
    }
    panel.setFollowingLog(false);
    panel.setFilter(panel.filter());
    EXPECT_TRUE(panel.isFollowingLog()) << "the same one chosen again";
}

TEST_F(BottomPanelModelOf, showsTheLogOfALevelWhereverItWas) {
    const std::vector<std::pair<std::optional<Level>, LogFilter>> expected{
        {Level::info, LogFilter::info}, {Level::ok, LogFilter::info},
        {Level::warn, LogFilter::warn}, {Level::error, LogFilter::err},
        {Level::su2, LogFilter::su2}, {std::nullopt, LogFilter::all}};
    for (const auto& [level, filter] : expected) {
        panel.chooseTab(static_cast<int>(Tab::convergence));
        panel.setVisible(false);
        panel.setFollowingLog(false);
        ASSERT_FALSE(panel.isReadingIssue());
        panel.showLog(level);
        EXPECT_EQ(panel.filter(), filter);
        EXPECT_EQ(panel.tab(), Tab::log);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_TRUE(panel.isFollowingLog());
        EXPECT_TRUE(panel.isReadingIssue()) << "whatever the level";
    }
}

TEST_F(BottomPanelModelOf, endsTheReadingWhenTheUserChoosesTheCharts) {
    panel.showLog(Level::error);
    panel.chooseTab(static_cast<int>(Tab::log));
    EXPECT_TRUE(panel.isReadingIssue());
    panel.chooseTab(static_cast<int>(Tab::convergence));
    EXPECT_FALSE(panel.isReadingIssue());
    EXPECT_EQ(panel.tab(), Tab::convergence);
}

TEST_F(BottomPanelModelOf, ignoresAFilterThatThereIsNot) {
    panel.chooseFilter(99);
    EXPECT_EQ(panel.filter(), LogFilter::all);
}

TEST_F(BottomPanelModelOf, countsTheLinesOfTheFilterInItsHeader) {
    logLines(1234);
    panel.setFilter(LogFilter::su2);
    EXPECT_EQ(panel.rightText().toStdString(), "1\u00A0234 lines · auto-scroll");
    panel.setFollowingLog(false);
    EXPECT_EQ(panel.rightText().toStdString(), "1\u00A0234 lines");
    panel.setFilter(LogFilter::err);
    EXPECT_EQ(panel.rightText().toStdString(), "0 lines · auto-scroll");
}

TEST_F(BottomPanelModelOf, tellsHowFarTheRunIsBesideTheCharts) {
    panel.chooseTab(static_cast<int>(Tab::convergence));
    EXPECT_EQ(panel.rightText().toStdString(), "");
    setPhase(RunPhase::solving());
    EXPECT_EQ(panel.rightText().toStdString(), "");
    flushHistory(118);
    EXPECT_EQ(panel.rightText().toStdString(), "118 iter · solving");
    setSummary(1200);
    setPhase(RunPhase::finished(false));
    EXPECT_EQ(panel.rightText().toStdString(), "1\u00A0200 iter · not converged");
    setSummary(std::nullopt);
    EXPECT_EQ(panel.rightText().toStdString(), "118 iter · not converged");
}

TEST_F(BottomPanelModelOf, tellsOfItsHeaderOnceForAThousandLines) {
    int count = 0;
    QObject::connect(&panel, &BottomPanelModel::rightTextChanged, &panel, [&count] { ++count; });
    for (int i = 0; i < 1000; ++i) {
        log("line", Level::su2);
    }
    ASSERT_TRUE(waitUntil([&count] { return count > 0; }));
    EXPECT_EQ(count, 1);
}

TEST_F(BottomPanelModelOf, namesItsTabsAndFilters) {
    std::vector<std::string> titles;
    for (const QVariant& tab : panel.tabs()) {
        titles.push_back(tab.toMap()[QStringLiteral("title")].toString().toStdString());
    }
    EXPECT_THAT(titles, testing::ElementsAre("Log", "Convergence"));
    std::vector<std::pair<std::string, std::string>> chips;
    for (const QVariant& filter : panel.filters()) {
        const QVariantMap map = filter.toMap();
        chips.emplace_back(map[QStringLiteral("title")].toString().toStdString(),
            map[QStringLiteral("help")].toString().toStdString());
    }
    EXPECT_THAT(chips, testing::ElementsAre(testing::Pair("all", "Show every line"),
                           testing::Pair("info", "Show only info lines"),
                           testing::Pair("warn", "Show only warn lines"),
                           testing::Pair("err", "Show only err lines"),
                           testing::Pair("su2", "Show only su2 lines")));
}

} // namespace
} // namespace ostrella::test
