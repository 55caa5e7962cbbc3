#include "PanelWindow.h"

#include <QAccessible>

namespace ostrella::test {
namespace {

class PanelHeader : public PanelWindow {
protected:
    static QString q(const char* text) { return QString::fromUtf8(text); }
};

TEST_F(PanelHeader, choosesATabByClick) {
    user->click(middleOf(q("Convergence")));
    EXPECT_FALSE(panel.showsLog());
    EXPECT_FALSE(log().isVisible());
    user->click(middleOf(q("Log")));
    EXPECT_TRUE(panel.showsLog());
}

TEST_F(PanelHeader, choosesAFilterByClickAndByKey) {
    user->click(middleOf(q("warn")));
    EXPECT_EQ(panel.filter(), LogFilter::warn);
    user->type(Qt::Key_Tab);
    user->type(Qt::Key_Space);
    EXPECT_EQ(panel.filter(), LogFilter::err);
}

TEST_F(PanelHeader, isReachedByTabFromTheTabsOverTheFiltersToTheLog) {
    user->click(middleOf(q("Log")));
    for (int i = 0; i < 6; ++i) {
        user->type(Qt::Key_Tab);
    }
    EXPECT_TRUE(log().hasActiveFocus());
    EXPECT_TRUE(log().showsFocus());
    user->click(inLog({300, 50}));
    EXPECT_TRUE(log().hasActiveFocus());
}

TEST_F(PanelHeader, tellsNamesAndStates) {
    QAccessibleInterface* warn = accessible(q("warn"));
    ASSERT_TRUE(warn);
    EXPECT_FALSE(warn->state().checked);
    panel.setFilter(LogFilter::warn);
    EXPECT_TRUE(warn->state().checked);
    QAccessibleInterface* tab = accessible(q("Convergence"));
    ASSERT_TRUE(tab);
}

TEST_F(PanelHeader, readsOutTheRowsInView) {
    logLines(100);
    settle();
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&log());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), q("Log"));
    ASSERT_EQ(list->childCount(), static_cast<int>(log().scroll().visible().size()));
    QAccessibleInterface* last = list->child(list->childCount() - 1);
    EXPECT_EQ(last->role(), QAccessible::ListItem);
    EXPECT_EQ(last->text(QAccessible::Name).toStdString(),
        LogRow::plainText((*log().lines())[log().lines()->size() - 1]));
    EXPECT_GT(last->rect().height(), 15);
}

TEST_F(PanelHeader, hasChartsThatAreReadOut) {
    flushHistory(50);
    settle();
    EXPECT_FALSE(panel.showsLog());
    QAccessibleInterface* chart = accessible(q("Residuals"));
    ASSERT_TRUE(chart);
    EXPECT_EQ(chart->role(), QAccessible::Chart);
    EXPECT_EQ(chart->text(QAccessible::Description), q("P -1.0490, Iter 49; U -2.0980, Iter 49"));
    EXPECT_TRUE(accessible(q("log10(rms)")));
    QAccessibleInterface* series = accessible(q("Series"));
    ASSERT_TRUE(series);
    ASSERT_EQ(series->childCount(), 2);
    EXPECT_EQ(series->child(1)->text(QAccessible::Name), q("U"));
}

TEST_F(PanelHeader, tellsWhatWillStandWhereThereAreNoDataYet) {
    panel.chooseTab(1);
    settle();
    const QString text =
        q("Residuals and force coefficients appear here once a simulation starts.");
    ASSERT_TRUE(accessible(text));
    EXPECT_FALSE(accessible(text)->state().invisible);
    flushHistory(3);
    settle();
    EXPECT_TRUE(!accessible(text) || accessible(text)->state().invisible);
}

} // namespace
} // namespace ostrella::test
