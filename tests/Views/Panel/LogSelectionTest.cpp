#include "Views/Panel/LogSelection.h"
#include "Views/Panel/LogCopy.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrella {
namespace {

constexpr qsizetype end = std::numeric_limits<qsizetype>::max();

TEST(LogSelection, isEmptyUntilItIsDrawnOut) {
    LogSelection selection;
    EXPECT_TRUE(selection.empty());
    selection.begin({4, 2});
    EXPECT_TRUE(selection.empty());
    EXPECT_TRUE(selection.within(4, 10).empty());
    selection.extend({4, 5});
    EXPECT_FALSE(selection.empty());
    selection.clear();
    EXPECT_TRUE(selection.empty());
}

TEST(LogSelection, holdsWhatLiesBetweenItsEndsInEitherOrder) {
    LogSelection selection;
    selection.begin({7, 3});
    selection.extend({5, 2});
    EXPECT_EQ(selection.from(), (LogPlace{5, 2}));
    EXPECT_EQ(selection.to(), (LogPlace{7, 3}));
    EXPECT_TRUE(selection.within(4, 10).empty());
    const LogRow::Span first = selection.within(5, 10);
    EXPECT_EQ(first.from, 2);
    EXPECT_EQ(first.to, 10);
    EXPECT_TRUE(first.goesOn);
    const LogRow::Span middle = selection.within(6, 10);
    EXPECT_EQ(middle.from, 0);
    EXPECT_EQ(middle.to, 10);
    EXPECT_TRUE(middle.goesOn);
    const LogRow::Span last = selection.within(7, 10);
    EXPECT_EQ(last.from, 0);
    EXPECT_EQ(last.to, 3);
    EXPECT_FALSE(last.goesOn);
    EXPECT_TRUE(selection.within(8, 10).empty());
}

TEST(LogSelection, endsWithTheLineWhereItReachesBeyond) {
    LogSelection selection;
    selection.set({1, 0}, {1, end});
    EXPECT_EQ(selection.within(1, 12).to, 12);
    EXPECT_FALSE(selection.within(1, 12).goesOn);
}

class LogCopyOf : public testing::Test {
protected:
    LogCopyOf() {
        QObject::connect(
            &copy, &LogCopy::finished, &copy, [this](const QString& text) { copied = text; });
    }

    std::string line(std::size_t number) const { return LogRow::plainText(log.lines()[number]); }

    LogStore log;
    LogLines lines{log};
    LogCopy copy{lines};
    std::optional<QString> copied;
};

TEST_F(LogCopyOf, givesAFewLinesAtOnce) {
    log.append("first", LogStore::Level::ok);
    log.append("second ≤ ü", LogStore::Level::warn);
    LogSelection selection;
    selection.set({0, 5}, {1, end});
    copy.start(selection);
    ASSERT_TRUE(copied);
    EXPECT_EQ(copied->toStdString(), line(0).substr(5) + "\n" + line(1));
    EXPECT_EQ(line(0).substr(0, 5), "[OK] ");
    EXPECT_TRUE(line(0).ends_with(" first"));
}

TEST_F(LogCopyOf, leavesOutWhatTheFilterHoldsBack) {
    log.append("a", LogStore::Level::su2);
    log.append("b", LogStore::Level::warn);
    log.append("c", LogStore::Level::su2);
    lines.setFilter(LogFilter::su2);
    LogSelection selection;
    selection.set({0, 0}, {2, end});
    copy.start(selection);
    EXPECT_EQ(copied->toStdString(), line(0) + "\n" + line(2));
}

TEST_F(LogCopyOf, givesNothingOfNothing) {
    copy.start({});
    EXPECT_FALSE(copied);
}

TEST_F(LogCopyOf, letsTheMainThreadGoOnMeanwhile) {
    for (int i = 0; i < 200'000; ++i) {
        log.append("a line of the usual length, more or less, as solvers write them", {});
    }
    lines.takeIn();
    LogSelection selection;
    selection.set({0, 0}, {199'999, end});
    copy.start(selection);
    EXPECT_FALSE(copied) << "this takes longer than one turn";
    ASSERT_TRUE(test::waitUntil([this] { return copied.has_value(); }));
    EXPECT_EQ(copied->count(QLatin1Char('\n')), 199'999);
}

} // namespace
} // namespace ostrella
